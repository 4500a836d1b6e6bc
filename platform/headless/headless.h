// SPDX-License-Identifier: MIT
// Control of the headless platform: routines with which a test, a benchmark or a tool prepares a run of the
// program and checks the results. The calls of the platform interface itself are in system.h.
//
// Time is virtual: only when every thread waits, it moves directly to the next event. Exactly one thread runs
// at a time, in the order of the wake-up times, so every run is the same (HeadlessInterleave adds random
// switches at platform calls, repeatable by a seed).
//
// If all threads wait and nothing can end a wait (a dialog without a scripted user, a message sent to a
// thread that never serves it), the platform prints the reason of each wait and aborts the process.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/memory/looks.h"

// Sets everything to the state of a system that has just started: clock, registry, ports, files, boxes,
// windows, faults, script. All threads except the caller's must have ended.
void HeadlessReset();

// ---- Failing calls ------------------------------------------------------------------------------------

enum class FailMode : uint8_t { Once, FromHereOn };

// Makes the n-th next call (n from 1) of the named platform call fail with the error code. Calls without a
// failure result (Sleep, GetTickCount, SendMessageW) cannot be named. Several faults can be set at once.
void HeadlessFailCall(const char* call, uint32_t n, DWORD error, FailMode mode = FailMode::Once);

// Makes the n-th next call that can fail do so, whichever it is. MessageBoxW does not count: boxes show other
// failures.
void HeadlessFailAnyCall(uint32_t n, DWORD error, FailMode mode = FailMode::Once);

void HeadlessClearFaults();

// Counts the calls that can fail, from now until the faults are cleared. Returns the number for each call
// that was made, in the order in which the names are declared.
void HeadlessCountCalls();
struct HeadlessCallCount {
    std::string call;
    uint32_t count;
};
std::vector<HeadlessCallCount> HeadlessCountedCalls();

// Name of the call that failed first since the fault was set up, "" if none has.
std::string HeadlessFailedCall();

// ---- Time and threads ---------------------------------------------------------------------------------

void HeadlessSetTick(uint32_t milliseconds);       // GetTickCount from now on; it may wrap
void HeadlessSetLocalTime(const SYSTEMTIME& time); // GetLocalTime; runs with the virtual clock
uint64_t HeadlessElapsed();                        // virtual milliseconds since HeadlessReset
void HeadlessSetTimeLimit(uint64_t milliseconds);  // abort beyond it; default ten hours, 0 none
void HeadlessInterleave(uint32_t seed);            // 0: off, the default; calls take some time then
uint32_t HeadlessLiveThreads();                    // without the caller's

// ---- Serial ports -------------------------------------------------------------------------------------

// A scripted port. A port that was not added cannot be opened (ERROR_FILE_NOT_FOUND).
struct HeadlessPort : memory::LineState { // all of which a test may change before the port is opened
    // Actions of the program.
    std::string sent;                // all bytes written
    std::vector<std::string> writes; // the same, one entry per WriteFile
    std::vector<DWORD> escapes;      // function codes of EscapeCommFunction
    std::vector<DWORD> rates;        // rate of each successful SetCommState
    uint32_t opens = 0, closes = 0;
    bool isOpen = false;

    // Limits the next writes: WriteFile writes at most this many bytes and reports their number. -1: no
    // limit.
    int32_t acceptBytes = -1;

    // Called after each WriteFile with the bytes written; may queue an answer with HeadlessReceive.
    std::function<void(HeadlessPort&, std::string_view)> onWrite;

    // Queued bytes arrive only while the port has this rate; at another rate the same number of noise bytes
    // arrives (never a byte that starts a sentence or a frame). 0: the rate does not matter.
    DWORD deviceRate = 0;

    uint32_t number = 0; // n of "COMn:"
};

HeadlessPort& HeadlessAddPort(uint32_t number); // "COMn:", n 0..255
HeadlessPort& HeadlessGetPort(uint32_t number); // aborts if it was not added

// Queues bytes after those in the queue. They arrive from now on (from the opening, if the port is closed),
// `byteMicroseconds` apart (0: all at once).
void HeadlessReceive(HeadlessPort& port, std::string_view bytes, uint32_t byteMicroseconds = 0);

// The same, but not before `afterMilliseconds` from now, and not before the queue is empty.
void HeadlessReceiveAfter(HeadlessPort& port, uint32_t afterMilliseconds, std::string_view bytes,
                          uint32_t byteMicroseconds = 0);

// Repeats the bytes for ever at the given distance, like a receiver that sends all the time. "" stops it.
// Bytes queued meanwhile are sent between two repetitions; bytes that arrive while the port is closed are
// lost.
void HeadlessStream(HeadlessPort& port, std::string_view bytes, uint32_t byteMicroseconds);

// ---- Registry, files, system --------------------------------------------------------------------------

void HeadlessRegistrySetDword(HKEY root, const wchar_t* path, const wchar_t* name, uint32_t value);
void HeadlessRegistrySetText(HKEY root, const wchar_t* path, const wchar_t* name, const wchar_t* text);
void HeadlessRegistrySetBytes(HKEY root, const wchar_t* path, const wchar_t* name, DWORD type,
                              std::string_view bytes); // wide text in it: 16-bit little-endian units
void HeadlessRegistryCreateKey(HKEY root, const wchar_t* path);
bool HeadlessRegistryGetDword(HKEY root, const wchar_t* path, const wchar_t* name, uint32_t& value);
void HeadlessRegistryRefuseWrites(HKEY root, bool refuse); // ERROR_ACCESS_DENIED under this root
std::vector<std::wstring>
HeadlessRegistryValues(); // every value as "root\\path\\name type bytes", in order of names

bool HeadlessFileExists(const std::wstring& path);
std::string HeadlessFileContent(const std::wstring& path);
void HeadlessWriteFile(const std::wstring& path, std::string_view content);
void HeadlessDiskFullAfter(uint64_t bytes); // further WriteFile to files fail with ERROR_DISK_FULL
void HeadlessSetFolder(int folder, const std::wstring& path); // of a CSIDL_ code; "": the look-up fails

// Answer of the next save-file dialogs: the path that the user enters and the chosen filter (from 1); an
// empty path cancels. Each dialog is recorded.
struct HeadlessSaveDialog {
    std::wstring proposedName, filters, defaultExtension; // filters: pairs joined by '|'
    DWORD filterIndex, flags, capacity;
    HWND owner;
};
void HeadlessAnswerSaveDialog(const std::wstring& path, DWORD filterIndex);
const std::vector<HeadlessSaveDialog>& HeadlessSaveDialogs();
void HeadlessClearSaveDialogs();

// Platform type and maker's text of SystemParametersInfoW. With an error other than 0 the query fails with
// this error. Default: the query of the type fails with ERROR_INVALID_SPI_VALUE, as on a desktop.
void HeadlessSetPlatformType(const wchar_t* type, DWORD error = 0);
void HeadlessSetOemInfo(const wchar_t* text, DWORD error = 0);

// Makes a run-time library present, with an export by name or by number.
void HeadlessAddExport(const wchar_t* library, const wchar_t* name, FARPROC procedure);
void HeadlessAddExport(const wchar_t* library, uint32_t number, FARPROC procedure);
std::vector<std::wstring> HeadlessLoadedLibraries(); // loaded and not freed

// ---- Boxes --------------------------------------------------------------------------------------------

struct HeadlessBox {
    std::wstring text, caption;
    UINT type;
    HWND owner;
    bool onUserInterfaceThread; // the thread that called HeadlessReset
};
const std::vector<HeadlessBox>& HeadlessBoxes(); // every MessageBoxW since HeadlessReset
void HeadlessClearBoxes();

// Answers to the next boxes, in order; a box without an entry is answered by its default button.
void HeadlessAnswerBox(int button);

// While a box is shown, messages are dispatched, as in the system's own loop: those that are present when it
// opens, then those caused by each step queued with HeadlessDuringBox. Only these steps let time pass. Other
// steps of the user wait until the box is closed.
void HeadlessDuringBox(std::function<void()> step);

// ---- The user -----------------------------------------------------------------------------------------

// A step of the scripted user. Steps run one at a time on the user-interface thread, each when that thread
// waits for input in a message or dialog loop and no message is left; a step that opens a dialog returns when
// that dialog is closed, by a later step. Optional delay in virtual milliseconds before the step.
void HeadlessUser(std::function<void()> step, uint32_t delay = 0);

// Runs the message loop of the calling thread (GetMessageW, TranslateMessage, DispatchMessageW) until the
// script is empty and nothing is left to do (false), or until the quit message (true).
bool HeadlessRunMessages();

uint32_t HeadlessStepsLeft(); // steps of the script that have not run

// Dispatches the waiting messages, without letting time pass.
void HeadlessPumpMessages();

// Lets virtual time pass while the calling thread dispatches its messages; runs no step of the script.
void HeadlessPass(uint32_t milliseconds);

// The topmost open dialog, null if none. Each of the following routines acts on a control like a user. It
// aborts when the control does not exist, and does nothing and returns false when the control or its window
// is disabled or hidden.
HWND HeadlessTopDialog();
bool HeadlessClick(HWND dialog, int control);                          // button, check box, option button
bool HeadlessType(HWND dialog, int control, const std::wstring& text); // replaces the text, caret at its end
bool HeadlessChoose(HWND dialog, int control, int index); // list entry of a combo box or list box
bool HeadlessCommand(HWND window, int command);           // menu item, or the OK of a menu bar
bool HeadlessKey(HWND window, WPARAM key,
                 wchar_t character = 0); // posted; TranslateMessage makes the character

// The text that a control shows.
std::wstring HeadlessText(HWND dialog, int control);
bool HeadlessEnabled(HWND dialog, int control);
UINT HeadlessCheck(HWND dialog, int control);    // BST_...
int HeadlessSelection(HWND dialog, int control); // -1 none
std::vector<std::wstring> HeadlessItems(HWND dialog, int control);
bool HeadlessHasControl(HWND dialog, int control);
int HeadlessFocus(HWND dialog); // control number, 0 none

// The lParam of the last message to a control that the control does not know, for example one for the special
// controls of keypad devices; 0 if there was none.
LPARAM HeadlessIgnoredMessage(HWND dialog, int control, UINT message);

// ---- Windows and pictures -----------------------------------------------------------------------------

HWND HeadlessMainWindow(); // the top-level window, null before it exists
std::wstring HeadlessTitle(HWND window);
void HeadlessSetClientSize(int width, int height); // of top-level windows made from now on; default 240 x 294
void HeadlessSetScreenFont(int width, int height); // cell of every character; default 6 x 13
void HeadlessSetDotsPerInch(int dots);             // of the screen; default 96

void HeadlessStartMinimised(); // as if the launcher had asked for it: the first ShowWindow of a top-level
                               // window minimises it
bool HeadlessIsMinimised(HWND window);
WNDCLASSW HeadlessWindowClass(HWND window); // its style, icon and background

HWND HeadlessBroughtToFront();                   // by BringToFront, null if none was
std::pair<UINT, UINT> HeadlessPartingMessages(); // the last two of WM_ACTIVATE (inactive) and WM_CLOSE that
                                                 // a window has left to the system; WM_NULL: none yet
void HeadlessOtherProgramInFront(bool inFront);  // GetActiveWindow finds none while it is

// Invalidations of a window, in order, painted or not; true if erasing was requested.
std::vector<bool> HeadlessInvalidations(HWND window);
void HeadlessClearInvalidations(HWND window);

// Output of the last paint of a window: each text with its place, each shape as "Ellipse l t r b" and so on.
using HeadlessTextOut = memory::TextOut;
std::vector<HeadlessTextOut> HeadlessPaintedTexts(HWND window);
std::vector<std::string> HeadlessPaintedShapes(HWND window);
std::vector<uint32_t> HeadlessPixels(HWND window); // 0x00RRGGBB, row by row from the top, client area

// Menu entries of a window's menu bar in order, as "depth id text"; pop-ups have id 0.
std::vector<std::wstring> HeadlessMenu(HWND window);

// The numbers of the controls in a dialog template, which is named by its resource number.
using HeadlessTemplateControl = memory::TemplateControl;
using HeadlessTemplate = memory::Template;
bool HeadlessFindTemplate(uint32_t number, HeadlessTemplate& found);

// ---- Resources that the program has not released ------------------------------------------------------

uint32_t HeadlessOpenHandles();  // of files, ports and threads
uint32_t HeadlessOpenKeys();     // of the registry
uint32_t HeadlessUnfreedTexts(); // of FormatMessageW
uint32_t HeadlessGdiObjects();   // drawing objects and device contexts
