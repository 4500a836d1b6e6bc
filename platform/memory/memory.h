// SPDX-License-Identifier: MIT
// Shared by the files of the system in memory, and by the platforms that use it. Exactly one thread runs at a
// time, at least in this code (RealThreads), so it needs no lock. A reference into a table must not be kept
// during a call that can run the program's own code (a window procedure, a step of the user) or another
// thread.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/memory/host.h"
#include "platform/memory/looks.h"
#include "platform/platform.h"

namespace memory
{

// ---- Calls that can fail ------------------------------------------------------------------------------

// clang-format off
#define MEMORY_FAILABLE_CALLS(CALL) \
    CALL(FormatMessageW) CALL(LocalFree) \
    CALL(CreateFileW) CALL(ReadFile) CALL(WriteFile) CALL(CloseHandle) \
    CALL(GetCommProperties) CALL(GetCommState) CALL(SetCommState) CALL(GetCommTimeouts) CALL(SetCommTimeouts) \
    CALL(ClearCommError) CALL(EscapeCommFunction) CALL(SetCommMask) \
    CALL(SHGetSpecialFolderPathW) CALL(GetSaveFileNameW) \
    CALL(CreateThread) CALL(CreateMutexW) CALL(GetExitCodeThread) CALL(MsgWaitForMultipleObjectsEx) \
    CALL(RegOpenKeyExW) CALL(RegCreateKeyExW) CALL(RegQueryValueExW) CALL(RegSetValueExW) \
    CALL(RegDeleteValueW) CALL(RegEnumKeyExW) CALL(RegCloseKey) \
    CALL(GetVersionExW) CALL(SystemParametersInfoW) CALL(LoadLibraryW) CALL(GetProcAddressW) CALL(FreeLibrary) \
    CALL(RegisterClassW) CALL(CreateWindowExW) CALL(DestroyWindow) CALL(FindWindowW) CALL(SetFocus) \
    CALL(UpdateWindow) CALL(InvalidateRect) CALL(GetClientRect) CALL(GetWindowRect) CALL(SetWindowPos) \
    CALL(GetWindowLongW) CALL(SetWindowLongW) CALL(SetWindowTextW) CALL(GetWindowTextW) \
    CALL(PostMessageW) CALL(GetMessageW) CALL(SetTimer) CALL(KillTimer) CALL(MessageBoxW) \
    CALL(CommandBar_Create) CALL(CommandBar_InsertMenubar) \
    CALL(DialogBoxParamW) CALL(EndDialog) CALL(GetDlgItem) CALL(GetDlgCtrlID) CALL(SetDlgItemTextW) \
    CALL(GetDlgItemTextW) CALL(SetDlgItemInt) CALL(SendDlgItemMessageW) \
    CALL(LoadStringW) CALL(LoadIconW) CALL(LoadCursorW) CALL(LoadBitmapW) CALL(LoadMenuW) \
    CALL(BeginPaint) CALL(GetDC) CALL(ReleaseDC) CALL(CreateCompatibleDC) CALL(DeleteDC) \
    CALL(CreateCompatibleBitmap) CALL(CreateDIBSection) CALL(SelectObject) CALL(DeleteObject) \
    CALL(GetStockObject) CALL(CreateSolidBrush) CALL(CreateFontIndirectW) CALL(SetTextColor) \
    CALL(SetBkColor) CALL(SetBkMode) CALL(BitBlt) CALL(StretchBlt) CALL(Ellipse) CALL(Rectangle) \
    CALL(FillRect) CALL(DrawTextW) CALL(ExtTextOutW)
// clang-format on

enum class Call : uint8_t {
#define MEMORY_CALL(name) name,
    MEMORY_FAILABLE_CALLS(MEMORY_CALL)
#undef MEMORY_CALL
};

// ---- Threads (scheduler.cpp) --------------------------------------------------------------------------

// Events that can end a wait before its time.
enum Wakes : unsigned { WakeSent = 1, WakeInput = 2, WakeReply = 4, WakePort = 8, WakeEnd = 16 };

struct SentMessage {
    HWND window;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    Thread* sender;
    bool done;
    LRESULT result;
};

struct PostedMessage {
    MSG message;
    wchar_t character; // that TranslateMessage makes of a key down, 0 none
};

struct Timer {
    HWND window;
    UINT_PTR id;
    uint64_t period, due; // microseconds
    TIMERPROC procedure;
};

// The reason of a thread's wait, printed if the wait never ends.
struct WaitReason {
    const char* what;
    uint64_t number = 0;
    const Thread* from = nullptr;
};

struct Thread {
    DWORD id = 0, exitCode = STILL_ACTIVE, lastError = 0;
    bool ended = false;

    LPTHREAD_START_ROUTINE start = nullptr; // null: the thread that started the program
    void* parameter = nullptr;

    // Its turn, and the data of its wait.
    std::shared_ptr<Turn> turn;
    bool waiting = false;
    uint64_t wakeTime = 0, ticket = 0; // the earlier ticket goes first among equal times
    unsigned wakes = 0, woken = 0;
    WaitReason reason{""};

    // Its message queue.
    std::deque<SentMessage*> sent;
    std::deque<PostedMessage> posted;
    std::vector<Timer> timers;
    bool quit = false;
    int quitCode = 0;
    wchar_t character = 0; // of the key down that was fetched last
    HWND focus = nullptr, active = nullptr;
};

Thread& Me();
Thread& UserInterfaceThread();
const std::vector<std::shared_ptr<Thread>>& Threads(); // alive; the user interface's first

// Gives the turn away until the time has come or Wake was called with one of `wakes`; returns those of the
// calls.
unsigned Wait(uint64_t until, unsigned wakes, WaitReason reason);
void Wake(Thread& thread, unsigned why);
void WakeAll(unsigned why);
void YieldTurn();                               // to the threads that can run at this moment
void GiveWay(Thread& other);                    // to a waiting thread that can run at this moment
int64_t MillisecondsOf(const SYSTEMTIME& time); // since the beginning of 1601

inline void PlatformCall()
{
    if (Interleaving) SwitchAtRandom();
}

// First statement of every platform call that can fail: true if it must fail; the last error is then set.
inline bool Fails(Call call)
{
    PlatformCall();
    return FaultsArmed && FaultHit(call);
}

bool ThreadEnded(HANDLE handle, bool& isThread);
void ResetScheduler();

// ---- Handles of files, ports and threads (handles.cpp) ------------------------------------------------

// Sets the error and returns false; used at the end of a failing call.
bool Fail(DWORD error);

struct Object {
    virtual ~Object() = default;
    virtual bool Read(void* buffer, DWORD count, DWORD& read);
    virtual bool Write(const void* buffer, DWORD count, DWORD& written);
    virtual void Close() {}
};

HANDLE NewHandle(std::shared_ptr<Object> object);
std::shared_ptr<Object> FindObject(HANDLE handle); // null and the error if there is none
void ResetHandles();

uint32_t OpenHandleCount();

uint32_t UnfreedTexts(); // of FormatMessageW
void ResetErrors();

std::wstring Lower(std::wstring_view text);

// ---- Serial ports (ports.cpp) -------------------------------------------------------------------------

// An open port, made by the platform.
struct Line : Object {
    virtual LineState& State() = 0;
    virtual bool SetState(const DCB& dcb) = 0; // false with the error
    virtual void Escape(DWORD function) = 0;   // of EscapeCommFunction
};

LineState OrdinaryLine(); // of an ordinary UART at rest
bool ParsePortName(const std::wstring& name, uint32_t& number);

// ---- Files (files.cpp) --------------------------------------------------------------------------------

HANDLE OpenFile(const std::wstring& name, DWORD access, DWORD share, DWORD disposition);
std::string* FindFileBytes(const std::wstring& path); // null if there is no such file
void WriteWholeFile(const std::wstring& path, std::string_view bytes);
void DeleteWholeFile(const std::wstring& path);
void SetFreeBytes(uint64_t bytes);                    // Never: as many as it takes
void SetFolder(int folder, const std::wstring& path); // of a CSIDL_ code; "": the look-up fails
void ResetFiles();

// ---- Registry (registry.cpp) --------------------------------------------------------------------------

void MakeKey(HKEY root, const wchar_t* path);
void SetValue(HKEY root, const wchar_t* path, const wchar_t* name, StoredValue value); // makes the key, too
const StoredValue* FindValue(HKEY root, const wchar_t* path, const wchar_t* name); // null if there is none
std::vector<std::wstring> AllValues(); // as "root\\path\\name type bytes", in order of names
void RefuseWrites(HKEY root, bool refuse);
uint32_t OpenKeyCount();
void ResetRegistry();

// ---- Libraries, the system's data about itself (libraries.cpp) ----------------------------------------

// With an error other than 0 the query fails with this error.
void SetPlatformType(const wchar_t* type, DWORD error);
void SetOemInfo(const wchar_t* text, DWORD error);
void AddExport(const wchar_t* library, const wchar_t* name, FARPROC procedure);
void AddExport(const wchar_t* library, uint32_t number, FARPROC procedure);
std::vector<std::wstring> LoadedLibraries(); // loaded and not freed
void ResetLibraries();

// ---- Resources (resources.cpp) ------------------------------------------------------------------------

inline bool IsNumber(const wchar_t* name)
{
    return (reinterpret_cast<uintptr_t>(name) >> 16) == 0;
}

struct MenuEntry {
    int depth;
    UINT id; // 0: a pop-up
    std::wstring text;
};

struct Picture {
    int width, height;
    std::vector<uint32_t> pixels; // 0x00RRGGBB from the top
};

bool FindTemplate(const wchar_t* name, Template& found);
bool FindMenu(const wchar_t* name, std::vector<MenuEntry>& found);
bool FindPicture(const wchar_t* name, Picture& found);
bool FindIcon(const wchar_t* name);
bool FindText(UINT id, std::wstring& found);

// ---- Windows (windows.cpp) ----------------------------------------------------------------------------

enum class Kind : uint8_t { Plain, Dialog, Box, CommandBar, Button, Edit, Static, Combo, List };

struct WindowClass {
    WNDPROC procedure = nullptr;
    HBRUSH background = nullptr;
    std::wstring name;
    UINT style = 0;
    HICON icon = nullptr;
};

struct Window {
    HWND handle = nullptr;
    Thread* thread = nullptr;
    Kind kind = Kind::Plain;
    WindowClass windowClass;
    std::wstring text;
    DWORD style = 0, extendedStyle = 0;
    int id = 0;
    HWND parent = nullptr;                   // of a child window
    HWND owner = nullptr;                    // of a top-level window
    int x = 0, y = 0, width = 0, height = 0; // with the frame; of a child in its parent's client area
    bool minimised = false;
    bool framed = false; // has a caption above the client area
    bool destroying = false;
    std::vector<MenuEntry> menu;

    // Painting.
    bool invalid = false, erase = false;
    RECT update{};
    uint32_t paintRequests = 0; // WM_PAINT since the last BeginPaint
    std::vector<bool> invalidations;
    std::vector<TextOut> texts;
    std::vector<std::string> shapes;
    std::vector<std::wstring> drawn; // shapes and texts in their order, "Text x y ..."
    uint32_t paints = 0;             // begun
    bool copied = false;             // the last paint has copied a picture into the window
    int32_t background = -1;         // 0x00RRGGBB that the program has given a control, -1 none
    Picture picture{};

    // Dialogs.
    DLGPROC dialogProcedure = nullptr;
    INT_PTR result = 0;
    SCROLLINFO scroll{};
    bool ended = false, ownerWasEnabled = false;
    HWND savedFocus = nullptr;

    // Controls.
    UINT check = BST_UNCHECKED;
    std::vector<std::wstring> items;
    int selection = -1;
    size_t limit = 0; // characters that can be typed, 0 any
    std::map<UINT, LPARAM> ignoredMessages;
};

constexpr int CaptionHeight = 20;
constexpr int CommandBarHeight = 26;

Window* FindWin(HWND window);    // null if there is none
Window* NeedWindow(HWND window); // the same, with the error
Window* FindChild(HWND parent, int id);
std::vector<HWND> Children(HWND parent);
std::vector<HWND> AllWindows();              // in the order of creation
bool IsAncestor(HWND ancestor, HWND window); // or the same
bool IsShown(const Window& window);          // it and all its parents
bool IsUsable(const Window& window);         // shown and enabled, it and all its parents
SIZE ClientSize(const Window& window);
SIZE FontCell();
void SetFrame(Window& window, int x, int y, int width, int height);
HWND MakeWindow(Kind kind, const WindowClass& windowClass, const std::wstring& text, DWORD style, HWND parent,
                int id);
void Destroy(HWND window);
void Activate(HWND window);
void Focus(HWND window);
bool Enable(HWND window, bool enable);
void Show(HWND window, bool show);
void Invalidate(Window& window, const RECT* rectangle, bool erase);
void Validate(Window& window);
Window* InvalidWindow(const Thread& thread, HWND filter); // null if there is none
Kind KindOfClass(const std::wstring& className);
HWND MainWindowOf();               // the top-level window, null before it exists
void SetMainClientSize(SIZE size); // of top-level windows made from now on
void SetFontCell(SIZE cell);       // of every character
void SetDotsPerInch(int dots);     // of the screen
HWND BroughtToFront();             // by BringToFront, null if none was
std::pair<UINT, UINT>
PartingMessages(); // the last two of WM_ACTIVATE (inactive) and WM_CLOSE left to the system
void PutOtherProgramInFront(bool inFront);
void MinimiseAtFirstShow();
void ResetWindows();

// ---- Messages (messages.cpp) --------------------------------------------------------------------------

LRESULT Send(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CallProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
bool Post(Thread& thread, const MSG& message, wchar_t character = 0);
void ServeSent();
void ForgetMessages(const Window& window);
uint64_t NextTimer(const Thread& thread); // when it is due, Never if there is none
void Translate(const MSG& message);       // posts the character of a key down
LRESULT Dispatch(const MSG& message);

enum class Next : uint8_t { Message, Quit, Stopped };
enum class Idle : uint8_t { Wait, Return };
// The next message of the calling thread. On the user-interface thread the scripted user acts when there is
// none. Returns Stopped when `stop` is true or, if requested, when there is nothing to do except wait for the
// user.
Next NextMessage(MSG& message, HWND window, UINT first, UINT last, const std::function<bool()>& stop,
                 Idle idle);
void PumpMessages();

// ---- Controls, dialogs, menus (controls.cpp, dialogs.cpp, menus.cpp) ----------------------------------

LRESULT ControlProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT DialogProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT TextProcedure(Window& window, UINT message, WPARAM wParam, LPARAM lParam); // WM_SETTEXT and the like
LRESULT Notify(HWND control, UINT code);
bool IsEditableCombo(const Window& control);
void ClickButton(HWND button);
bool DialogKey(const MSG& message);         // Enter and Escape in a dialog
std::vector<MenuEntry> MenuOf(HWND window); // its own or its command bar's
bool TakeMenu(HMENU menu, std::vector<MenuEntry>& entries);
void ResetMenus();
HWND TopDialog(); // the topmost open dialog, null if none

// A modal window of the system (boxes.cpp): its owner is disabled until `during` returns. False if the window
// was destroyed meanwhile, together with its owner.
bool ShowModal(HWND owner, const std::wstring& caption, const std::function<void(HWND)>& during);

// ---- The user's hands (user.cpp) ----------------------------------------------------------------------

// Each does nothing and returns false when the control or its window is disabled or hidden.
bool Press(HWND control);                          // button, check box, option button, label that notifies
bool Type(HWND control, const std::wstring& text); // replaces the text, caret at its end
bool Choose(HWND control, int index);              // list entry
bool ChooseCommand(HWND window, UINT command);     // of its menu
bool PressKey(HWND window, WPARAM key, wchar_t character); // posted; TranslateMessage makes the character
bool TakesText(const Window& control);
bool HasEntry(const Window& control, int index);
bool HasCommand(HWND window, UINT command); // or no menu at all

// ---- Drawing (drawing.cpp) ----------------------------------------------------------------------------

HDC NewWindowDc(HWND window);
void FreeDc(HDC dc);
void FreeWindowDcs(HWND window);
void FillWindow(HDC dc, HBRUSH brush);
void PaintControl(HWND control);
uint32_t GdiObjectCount();             // drawing objects and device contexts
const Picture& PictureOf(HWND window); // of the client area
void ResetDrawing();

// Sets everything except the threads to the state of a system that has just started (reset.cpp).
void ResetSystem();

} // namespace memory
