// SPDX-License-Identifier: MIT
// Control of the headless platform: what a test, a benchmark or a tool sets up before it calls the program,
// and what it looks at afterwards. The calls of the platform interface itself stand in system.h.
//
// Time is virtual: it moves only when every thread waits, straight to the next moment at which something
// happens. Exactly one thread runs at a time; which one is decided by the order of wake-up times, so that a
// run is the same every time (HeadlessInterleave adds seeded random switches at platform calls).
//
// A wait that nothing can ever end (a dialog without a scripted user, a message sent to a thread that never
// serves it) prints what every thread waits for and aborts the process.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/memory/looks.h"

// Everything back to the state of a freshly started system: clock, registry, ports, files, boxes, windows,
// faults, script. Threads other than the caller's must have ended.
void HeadlessReset();

// ---- Failing calls ------------------------------------------------------------------------------------

enum class FailMode : uint8_t { Once, FromHereOn };

// Makes the n-th next call (n from 1) of the named platform call fail with the error code; calls that have
// no failure result (Sleep, GetTickCount, SendMessageW) cannot be named. Several faults add up.
void HeadlessFailCall(const char* call, uint32_t n, DWORD error, FailMode mode = FailMode::Once);

// Makes the n-th next call of any platform call that can fail do so, MessageBoxW left out: boxes show what
// else has failed.
void HeadlessFailAnyCall(uint32_t n, DWORD error, FailMode mode = FailMode::Once);

void HeadlessClearFaults();

// Counts the calls that can fail, from now until the faults are cleared: how often each was made, in the
// order of their names' declaration, those not made left out.
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
uint32_t HeadlessLiveThreads();                    // beside the caller's

// ---- Serial ports -------------------------------------------------------------------------------------

// A scripted port. A port that was not added cannot be opened (ERROR_FILE_NOT_FOUND).
struct HeadlessPort : memory::LineState { // all of which a test may change before the port is opened
    // What the program did.
    std::string sent;                // all bytes written
    std::vector<std::string> writes; // the same, one entry per WriteFile
    std::vector<DWORD> escapes;      // function codes of EscapeCommFunction
    std::vector<DWORD> rates;        // rate of each successful SetCommState
    uint32_t opens = 0, closes = 0;
    bool isOpen = false;

    // Limits the next writes: WriteFile takes at most this many bytes and reports so. -1: no limit.
    int32_t acceptBytes = -1;

    // Called after each WriteFile with the bytes written; may queue an answer with HeadlessReceive.
    std::function<void(HeadlessPort&, std::string_view)> onWrite;

    // Only while the port's rate is this do queued bytes arrive; at another rate the same number of bytes
    // of noise does (never a byte that starts a sentence or a frame). 0: the rate does not matter.
    DWORD deviceRate = 0;

    uint32_t number = 0; // n of "COMn:"
};

HeadlessPort& HeadlessAddPort(uint32_t number); // "COMn:", n 0..255
HeadlessPort& HeadlessGetPort(uint32_t number); // aborts if it was not added

// Queues bytes that arrive from now on, or from the port's opening while it is closed, `byteMicroseconds`
// apart (0: all at once), after what is queued.
void HeadlessReceive(HeadlessPort& port, std::string_view bytes, uint32_t byteMicroseconds = 0);

// The same, beginning `afterMilliseconds` from now or when the queue is empty, whichever is later.
void HeadlessReceiveAfter(HeadlessPort& port, uint32_t afterMilliseconds, std::string_view bytes,
                          uint32_t byteMicroseconds = 0);

// Repeats the bytes for ever at the given distance, as a streaming receiver does. "" stops it. What is queued
// meanwhile goes in between two repetitions; what comes while the port is closed is lost.
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

// Answer of the next save-file dialogs: the path the user ends with and the filter chosen (from 1); an empty
// path cancels. Each dialog shown is recorded.
struct HeadlessSaveDialog {
    std::wstring proposedName, filters, defaultExtension; // filters: pairs joined by '|'
    DWORD filterIndex, flags, capacity;
    HWND owner;
};
void HeadlessAnswerSaveDialog(const std::wstring& path, DWORD filterIndex);
const std::vector<HeadlessSaveDialog>& HeadlessSaveDialogs();
void HeadlessClearSaveDialogs();

// Platform type and maker's text of SystemParametersInfoW; an error other than 0 makes the query fail with
// it. Default: the type fails with ERROR_INVALID_SPI_VALUE, as on a desktop.
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

// Buttons with which the next boxes are answered, in order; without an entry a box gets its default button.
void HeadlessAnswerBox(int button);

// While a box is up messages are dispatched, as in the system's own loop: what is there when it opens, then
// after each step queued for it with HeadlessDuringBox what that step has caused. No time passes but what the
// steps let pass. Other steps of the user wait until the box is closed.
void HeadlessDuringBox(std::function<void()> step);

// ---- The user -----------------------------------------------------------------------------------------

// A step of the scripted user. Steps run one at a time on the user-interface thread, each when that thread
// waits for input in a message or dialog loop and no message is left; a step that opens a dialog returns when
// that dialog is closed, by a later step. Optional delay in virtual milliseconds before the step.
void HeadlessUser(std::function<void()> step, uint32_t delay = 0);

// Runs the message loop of the calling thread (GetMessageW, TranslateMessage, DispatchMessageW) until the
// script is empty and nothing is left to do, or until the quit message; returns whether it was the latter.
bool HeadlessRunMessages();

uint32_t HeadlessStepsLeft(); // of the script, that have not run

// Dispatches what is waiting, without letting time pass.
void HeadlessPumpMessages();

// Lets virtual time pass while the calling thread dispatches its messages; runs no step of the script.
void HeadlessPass(uint32_t milliseconds);

// The dialog that is open on top, null if none. Each of the following acts on a control as the user would:
// it aborts when the control does not exist, and does nothing but say so (false) when it, or the window that
// it is in, is disabled or hidden.
HWND HeadlessTopDialog();
bool HeadlessClick(HWND dialog, int control);                          // button, check box, option button
bool HeadlessType(HWND dialog, int control, const std::wstring& text); // replaces the text, caret at its end
bool HeadlessChoose(HWND dialog, int control, int index); // list entry of a combo box or list box
bool HeadlessCommand(HWND window, int command);           // menu item, or the OK of a menu bar
bool HeadlessKey(HWND window, WPARAM key,
                 wchar_t character = 0); // posted; TranslateMessage makes the character

// What a control shows.
std::wstring HeadlessText(HWND dialog, int control);
bool HeadlessEnabled(HWND dialog, int control);
UINT HeadlessCheck(HWND dialog, int control);    // BST_...
int HeadlessSelection(HWND dialog, int control); // -1 none
std::vector<std::wstring> HeadlessItems(HWND dialog, int control);
bool HeadlessHasControl(HWND dialog, int control);
int HeadlessFocus(HWND dialog); // control number, 0 none

// The lParam with which a control was last sent a message that it does not know, as those for the keypad
// devices' own controls; 0 if it was not.
LPARAM HeadlessIgnoredMessage(HWND dialog, int control, UINT message);

// ---- Windows and pictures -----------------------------------------------------------------------------

HWND HeadlessMainWindow(); // the top-level window, null before it exists
std::wstring HeadlessTitle(HWND window);
void HeadlessSetClientSize(int width, int height); // of top-level windows made from now on; default 240 x 294
void HeadlessSetScreenFont(int width, int height); // cell of every character; default 6 x 13

void HeadlessStartMinimised(); // the launcher wants it so: the first ShowWindow of a top-level window
                               // minimises it
bool HeadlessIsMinimised(HWND window);
WNDCLASSW HeadlessWindowClass(HWND window); // its style, icon and background

HWND HeadlessBroughtToFront();                  // by BringToFront, null if none was
void HeadlessOtherProgramInFront(bool inFront); // GetActiveWindow finds none while it is

// Invalidations of a window, in order, true where it asked for erasing; painted or not.
std::vector<bool> HeadlessInvalidations(HWND window);
void HeadlessClearInvalidations(HWND window);

// What the last paint of a window wrote: each text with its place, each shape as "Ellipse l t r b" and so on.
using HeadlessTextOut = memory::TextOut;
std::vector<HeadlessTextOut> HeadlessPaintedTexts(HWND window);
std::vector<std::string> HeadlessPaintedShapes(HWND window);
std::vector<uint32_t> HeadlessPixels(HWND window); // 0x00RRGGBB, row by row from the top, client area

// Menu entries of a window's menu bar in order, as "depth id text", pop-ups with id 0.
std::vector<std::wstring> HeadlessMenu(HWND window);

// Dialog template by resource number: the numbers of its controls, whether or not a dialog is open.
using HeadlessTemplateControl = memory::TemplateControl;
using HeadlessTemplate = memory::Template;
bool HeadlessFindTemplate(uint32_t number, HeadlessTemplate& found);

// ---- What the program has not given back --------------------------------------------------------------

uint32_t HeadlessOpenHandles();  // of files, ports and threads
uint32_t HeadlessOpenKeys();     // of the registry
uint32_t HeadlessUnfreedTexts(); // of FormatMessageW
uint32_t HeadlessGdiObjects();   // drawing objects and device contexts
