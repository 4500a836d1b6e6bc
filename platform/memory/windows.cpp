// SPDX-License-Identifier: MIT
// Windows as records. A window's procedure runs on the thread that made the window.
#include "platform/memory/memory.h"

#include <algorithm>

namespace memory
{

namespace
{

constexpr UINT WmEnable = 0xA, WmSetFocus = 7, WmKillFocus = 8, WmShowWindow = 0x18;
constexpr int ExtendedStyleIndex = -20;
constexpr DWORD ClassDoesNotExist = 1407, ClassAlreadyExists = 1410, InvalidIndex = 1413;
constexpr uintptr_t FirstWindow = 0x10010;
constexpr int UsualWidth = 240, UsualHeight = 294;
constexpr SIZE UsualCell = {6, 13};
constexpr int UsualDots = 96; // per inch

std::map<HWND, std::unique_ptr<Window>> Windows; // in the order of creation
uintptr_t NextWindow = FirstWindow;
std::map<std::wstring, WindowClass> Classes; // by name in lower case
SIZE MainClient = {UsualWidth, UsualHeight}, Cell = UsualCell;
int ScreenDots = UsualDots;
HWND LastInFront;
std::pair<UINT, UINT> LastPartings = {WM_NULL, WM_NULL};
bool OtherProgramInFront, StartMinimised;

RECT ScreenFrame(const Window& window)
{
    int x = window.x, y = window.y;
    if (const Window* parent = FindWin(window.parent)) {
        const RECT outer = ScreenFrame(*parent);
        x += outer.left;
        y += outer.top + (parent->framed ? CaptionHeight : 0);
    }
    return {x, y, x + window.width, y + window.height};
}

// The thread's window that Windows would activate when the active one is destroyed.
HWND Successor(const Thread& thread, HWND owner)
{
    const Window* window = FindWin(owner);
    if (window && window->thread == &thread && !window->destroying && IsUsable(*window)) return owner;
    HWND top = nullptr;
    for (const auto& [handle, candidate] : Windows)
        if (candidate->thread == &thread && !candidate->parent && !candidate->destroying &&
            IsUsable(*candidate))
            top = handle;
    return top;
}

void SetFocusTo(Thread& thread, HWND window)
{
    const HWND before = thread.focus;
    if (before == window) return;
    thread.focus = window;
    if (FindWin(before)) CallProcedure(before, WmKillFocus, reinterpret_cast<WPARAM>(window), 0);
    if (thread.focus == window && FindWin(window))
        CallProcedure(window, WmSetFocus, reinterpret_cast<WPARAM>(before), 0);
}

// Children and owned windows are destroyed with their window.
void DestroyDependents(HWND window)
{
    for (const HWND handle : AllWindows()) {
        Window* other = FindWin(handle);
        if (!other || other->parent || other->owner != window) continue;
        if (other->thread == &Me())
            Destroy(handle);
        else
            other->owner = nullptr; // another thread's stays
    }
}

void SendDestroy(HWND window)
{
    if (Window* found = FindWin(window)) found->destroying = true;
    CallProcedure(window, WM_DESTROY, 0, 0);
    for (const HWND child : Children(window)) SendDestroy(child);
}

void Remove(HWND window)
{
    for (const HWND child : Children(window)) Remove(child);
    Window* found = FindWin(window);
    if (!found) return;
    ForgetMessages(*found);
    FreeWindowDcs(window);
    if (found->thread->focus == window) found->thread->focus = nullptr;
    if (found->thread->active == window) found->thread->active = nullptr;
    Windows.erase(window);
}

} // namespace

Window* FindWin(HWND window)
{
    const auto found = Windows.find(window);
    return found == Windows.end() ? nullptr : found->second.get();
}

Window* NeedWindow(HWND window)
{
    Window* found = FindWin(window);
    if (!found) Fail(ERROR_INVALID_WINDOW_HANDLE);
    return found;
}

Window* FindChild(HWND parent, int id)
{
    if (!NeedWindow(parent)) return nullptr;
    for (const auto& [handle, window] : Windows)
        if (window->parent == parent && window->id == id) return window.get();
    Fail(ERROR_CONTROL_ID_NOT_FOUND);
    return nullptr;
}

std::vector<HWND> Children(HWND parent)
{
    std::vector<HWND> children;
    for (const auto& [handle, window] : Windows)
        if (window->parent == parent) children.push_back(handle);
    return children;
}

bool IsAncestor(HWND ancestor, HWND window)
{
    for (const Window* found = FindWin(window); found; found = FindWin(found->parent))
        if (found->handle == ancestor) return true;
    return false;
}

std::vector<HWND> AllWindows()
{
    std::vector<HWND> all;
    all.reserve(Windows.size());
    for (const auto& [handle, window] : Windows) all.push_back(handle);
    return all;
}

bool IsShown(const Window& window)
{
    const Window* parent = FindWin(window.parent);
    return (window.style & WS_VISIBLE) && (!parent || IsShown(*parent));
}

bool IsUsable(const Window& window)
{
    const Window* parent = FindWin(window.parent);
    return (window.style & WS_VISIBLE) && !(window.style & WS_DISABLED) && (!parent || IsUsable(*parent));
}

SIZE ClientSize(const Window& window)
{
    return {window.width, std::max(0, window.height - (window.framed ? CaptionHeight : 0))};
}

SIZE FontCell()
{
    return Cell;
}

// Moves and sizes a window with its frame; notifies it of a new client size.
void SetFrame(Window& window, int x, int y, int width, int height)
{
    const SIZE before = ClientSize(window);
    window.framed = (window.style & WS_CAPTION) == WS_CAPTION && !window.parent;
    window.x = x;
    window.y = y;
    window.width = std::max(0, width);
    window.height = std::max(0, height);
    const SIZE after = ClientSize(window);
    if (before.cx == after.cx && before.cy == after.cy) return;
    Invalidate(window, nullptr, true);
    Send(window.handle, WM_SIZE, 0, after.cx | after.cy << 16);
}

HWND MakeWindow(Kind kind, const WindowClass& windowClass, const std::wstring& text, DWORD style, HWND parent,
                int id)
{
    const HWND handle = reinterpret_cast<HWND>(NextWindow);
    NextWindow += 16;
    auto window = std::make_unique<Window>();
    window->handle = handle;
    window->thread = &Me();
    window->kind = kind;
    window->windowClass = windowClass;
    window->text = text;
    window->style = style;
    window->id = id;
    if (style & WS_CHILD)
        window->parent = parent;
    else
        window->owner = parent;
    window->framed = (style & WS_CAPTION) == WS_CAPTION && !(style & WS_CHILD);
    Windows[handle] = std::move(window);
    return handle;
}

void Destroy(HWND window)
{
    Window* found = FindWin(window);
    if (!found || found->destroying) return;
    Thread& thread = *found->thread;
    found->destroying = true;
    found->ended = true; // a dialog's or a box's loop
    DestroyDependents(window);
    const HWND owner = found->owner;
    const bool wasActive = thread.active == window, hadFocus = IsAncestor(window, thread.focus);
    SendDestroy(window);
    if (hadFocus) thread.focus = nullptr;
    Remove(window);
    if (wasActive && !thread.active) Activate(Successor(thread, owner));
}

void Activate(HWND window)
{
    Window* found = FindWin(window);
    Thread& thread = found ? *found->thread : Me();
    const HWND before = thread.active;
    if (before == window) return;
    if (&thread != &Me()) { // no procedure of another thread's window runs here
        thread.active = window;
        return;
    }
    if (Window* old = FindWin(before)) {
        if (IsAncestor(before, thread.focus)) old->savedFocus = thread.focus;
        SetFocusTo(thread, nullptr);
        CallProcedure(before, WM_ACTIVATE, WA_INACTIVE, reinterpret_cast<LPARAM>(window));
    }
    thread.active = FindWin(window) ? window : nullptr;
    if (!FindWin(window)) return;
    CallProcedure(window, WM_ACTIVATE, 1, reinterpret_cast<LPARAM>(before));
    found = FindWin(window);
    if (!found || thread.active != window) return;
    const Window* saved = FindWin(found->savedFocus);
    const bool goesBack = saved && IsUsable(*saved) && IsAncestor(window, found->savedFocus);
    SetFocusTo(thread, goesBack ? found->savedFocus : window);
}

void Focus(HWND window)
{
    Window* found = FindWin(window);
    if (!found || found->thread != &Me()) return;
    SetFocusTo(*found->thread, window);
}

// True if it was disabled before. A disabled window cannot keep the focus.
bool Enable(HWND window, bool enable)
{
    Window* found = FindWin(window);
    if (!found) return false;
    const bool wasDisabled = (found->style & WS_DISABLED) != 0;
    if (wasDisabled != enable) return wasDisabled;
    found->style = enable ? found->style & ~WS_DISABLED : found->style | WS_DISABLED;
    if (!enable && IsAncestor(window, found->thread->focus)) {
        if (!found->parent) found->savedFocus = found->thread->focus; // it gets it back with the activation
        found->thread->focus = nullptr;
    }
    if (found->kind != Kind::Plain && found->kind != Kind::Dialog) Invalidate(*found, nullptr, false);
    Send(window, WmEnable, enable, 0);
    return wasDisabled;
}

void Show(HWND window, bool show)
{
    Window* found = FindWin(window);
    if (!found || ((found->style & WS_VISIBLE) != 0) == show) return;
    Send(window, WmShowWindow, show, 0);
    found = FindWin(window);
    if (!found) return;
    found->style = show ? found->style | WS_VISIBLE : found->style & ~WS_VISIBLE;
    if (show) Invalidate(*found, nullptr, true);
    if (found->parent) return;
    Thread& thread = *found->thread;
    if (show)
        Activate(window);
    else if (thread.active == window)
        Activate(Successor(thread, found->owner));
}

void Invalidate(Window& window, const RECT* rectangle, bool erase)
{
    const SIZE size = ClientSize(window);
    const RECT all = {0, 0, size.cx, size.cy};
    const RECT& added = rectangle ? *rectangle : all;
    window.update =
        !window.invalid
            ? added
            : RECT{std::min(window.update.left, added.left), std::min(window.update.top, added.top),
                   std::max(window.update.right, added.right), std::max(window.update.bottom, added.bottom)};
    window.invalid = true;
    window.erase |= erase;
    Wake(*window.thread, WakeInput);
}

// A window of the thread that must be painted, null if there is none.
Window* InvalidWindow(const Thread& thread, HWND filter)
{
    for (const auto& [handle, window] : Windows)
        if (window->invalid && window->thread == &thread && !window->destroying && IsShown(*window) &&
            (!filter || IsAncestor(filter, handle)))
            return window.get();
    return nullptr;
}

void Validate(Window& window)
{
    window.invalid = window.erase = false;
    window.update = {};
    window.paintRequests = 0;
}

Kind KindOfClass(const std::wstring& className)
{
    static const std::map<std::wstring, Kind> kinds = {
        {L"button", Kind::Button},  {L"edit", Kind::Edit},    {L"static", Kind::Static},
        {L"combobox", Kind::Combo}, {L"listbox", Kind::List},
    };
    const auto found = kinds.find(Lower(className));
    return found == kinds.end() ? Kind::Plain : found->second;
}

HWND MainWindowOf()
{
    for (const auto& [handle, window] : Windows)
        if (!window->parent && window->kind == Kind::Plain && !window->destroying) return handle;
    return nullptr;
}

void SetMainClientSize(SIZE size)
{
    MainClient = size;
}

void SetFontCell(SIZE cell)
{
    Cell = cell;
}

void SetDotsPerInch(int dots)
{
    ScreenDots = dots;
}

HWND BroughtToFront()
{
    return LastInFront;
}

std::pair<UINT, UINT> PartingMessages()
{
    return LastPartings;
}

void PutOtherProgramInFront(bool inFront)
{
    OtherProgramInFront = inFront;
}

void MinimiseAtFirstShow()
{
    StartMinimised = true;
}

void ResetWindows()
{
    Windows.clear();
    Classes.clear();
    NextWindow = FirstWindow;
    MainClient = {UsualWidth, UsualHeight};
    Cell = UsualCell;
    ScreenDots = UsualDots;
    LastInFront = nullptr;
    LastPartings = {WM_NULL, WM_NULL};
    OtherProgramInFront = StartMinimised = false;
}

} // namespace memory

using namespace memory;

void BringToFront(HWND window)
{
    PlatformCall();
    LastInFront = window;
}

void FitMainWindow(HWND, int, int) {} // the size is chosen before the program starts

int DotsPerInch()
{
    return ScreenDots;
}

ATOM RegisterClassW(const WNDCLASSW* windowClass)
{
    if (Fails(Call::RegisterClassW)) return 0;
    const std::wstring name = Lower(windowClass->lpszClassName);
    if (Classes.contains(name)) return Fail(ClassAlreadyExists);
    Classes[name] = {windowClass->lpfnWndProc, windowClass->hbrBackground, windowClass->lpszClassName,
                     windowClass->style, windowClass->hIcon};
    return static_cast<ATOM>(0xC000 + Classes.size());
}

HWND CreateWindowExW(DWORD extendedStyle, const wchar_t* className, const wchar_t* title, DWORD style, int x,
                     int y, int width, int height, HWND parent, HMENU menu, HINSTANCE, void*)
{
    if (Fails(Call::CreateWindowExW)) return nullptr;
    const auto registered = Classes.find(Lower(className));
    const Kind kind = KindOfClass(className);
    if (registered == Classes.end() && kind == Kind::Plain) return Fail(ClassDoesNotExist), nullptr;
    if (parent && !NeedWindow(parent)) return nullptr;
    const bool child = (style & WS_CHILD) != 0;
    std::vector<MenuEntry> entries;
    if (!child && menu && !TakeMenu(menu, entries)) return nullptr;

    const WindowClass plain = {nullptr, nullptr, className};
    const HWND handle = MakeWindow(kind, registered == Classes.end() ? plain : registered->second,
                                   title ? title : L"", style & ~WS_VISIBLE, parent,
                                   child ? static_cast<int>(reinterpret_cast<intptr_t>(menu)) : 0);
    Window* window = FindWin(handle);
    window->extendedStyle = extendedStyle;
    window->menu = std::move(entries);
    window->x = x == CW_USEDEFAULT ? 0 : x;
    window->y = x == CW_USEDEFAULT || y == CW_USEDEFAULT ? 0 : y;
    window->width = width == CW_USEDEFAULT ? MainClient.cx : std::max(0, width);
    window->height = width == CW_USEDEFAULT || height == CW_USEDEFAULT
                         ? MainClient.cy + (window->framed ? CaptionHeight : 0)
                         : std::max(0, height);
    if (CallProcedure(handle, WM_CREATE, 0, 0) == -1) {
        Destroy(handle);
        return nullptr;
    }
    window = FindWin(handle);
    if (!window) return nullptr;
    const SIZE client = ClientSize(*window);
    CallProcedure(handle, WM_SIZE, 0, client.cx | client.cy << 16);
    if (style & WS_VISIBLE) Show(handle, true);
    return FindWin(handle) ? handle : nullptr;
}

BOOL DestroyWindow(HWND window)
{
    if (Fails(Call::DestroyWindow)) return FALSE;
    const Window* found = NeedWindow(window);
    if (!found) return FALSE;
    if (found->thread != &Me()) return Fail(ERROR_ACCESS_DENIED);
    Destroy(window);
    return TRUE;
}

BOOL IsWindow(HWND window)
{
    PlatformCall();
    return FindWin(window) != nullptr;
}

LRESULT DefWindowProcW(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    PlatformCall();
    Window* found = NeedWindow(window);
    if (!found) return 0;
    if (message == WM_CLOSE || (message == WM_ACTIVATE && LOWORD(wParam) == WA_INACTIVE))
        LastPartings = {LastPartings.second, message};
    switch (message) {
    case WM_CLOSE: Destroy(window); return 0;
    case WM_PAINT: Validate(*found); return 0;
    case WM_ERASEBKGND:
        if (!found->windowClass.background) return 0;
        FillWindow(reinterpret_cast<HDC>(wParam), found->windowClass.background);
        return 1;
    default: return TextProcedure(*found, message, wParam, lParam);
    }
}

HWND FindWindowW(const wchar_t* className, const wchar_t* title)
{
    if (Fails(Call::FindWindowW)) return nullptr;
    for (const auto& [handle, window] : Windows)
        if (!window->parent && (!className || Lower(window->windowClass.name) == Lower(className)) &&
            (!title || window->text == title))
            return handle;
    Fail(ERROR_FILE_NOT_FOUND);
    return nullptr;
}

HWND GetActiveWindow()
{
    PlatformCall();
    return OtherProgramInFront ? nullptr : Me().active;
}

HWND GetParent(HWND window)
{
    PlatformCall();
    const Window* found = NeedWindow(window);
    return found ? (found->parent ? found->parent : found->owner) : nullptr;
}

HWND GetWindow(HWND window, UINT relation)
{
    PlatformCall();
    const Window* found = NeedWindow(window);
    if (!found) return nullptr;
    const std::vector<HWND> row = Children(relation == GW_CHILD ? window : found->parent);
    auto next = row.begin();
    if (relation == GW_HWNDNEXT) next = std::upper_bound(row.begin(), row.end(), window);
    return next == row.end() ? nullptr : *next;
}

HWND SetFocus(HWND window)
{
    if (Fails(Call::SetFocus)) return nullptr;
    Thread& me = Me();
    const HWND before = me.focus;
    if (!window) {
        SetFocusTo(me, nullptr);
        return before;
    }
    const Window* found = NeedWindow(window);
    if (!found) return nullptr;
    if (found->thread != &me) return Fail(ERROR_ACCESS_DENIED), nullptr;
    HWND top = nullptr;
    for (const Window* level = found; level; level = FindWin(level->parent)) {
        if (level->style & WS_DISABLED) return Fail(ERROR_INVALID_PARAMETER), nullptr;
        top = level->handle;
    }
    if (me.active != top) Activate(top);
    SetFocusTo(me, window);
    return before;
}

HWND GetFocus()
{
    PlatformCall();
    return Me().focus;
}

BOOL EnableWindow(HWND window, BOOL enable)
{
    PlatformCall();
    return NeedWindow(window) && Enable(window, enable != FALSE);
}

BOOL IsWindowEnabled(HWND window)
{
    PlatformCall();
    const Window* found = NeedWindow(window);
    return found && !(found->style & WS_DISABLED);
}

BOOL ShowWindow(HWND window, int command)
{
    PlatformCall();
    const Window* found = NeedWindow(window);
    if (!found) return FALSE;
    const bool wasVisible = (found->style & WS_VISIBLE) != 0;
    if (StartMinimised && !found->parent) {
        StartMinimised = false;
        FindWin(window)->minimised = true;
        Send(window, WM_SIZE, SIZE_MINIMIZED, 0);
    } else if (found->minimised && command != SW_HIDE) {
        FindWin(window)->minimised = false;
        const SIZE client = ClientSize(*found);
        Send(window, WM_SIZE, 0, client.cx | client.cy << 16);
    }
    Show(window, command != SW_HIDE);
    return wasVisible;
}

BOOL UpdateWindow(HWND window)
{
    if (Fails(Call::UpdateWindow)) return FALSE;
    const Window* found = NeedWindow(window);
    if (!found) return FALSE;
    if (found->invalid && IsShown(*found)) Send(window, WM_PAINT, 0, 0);
    for (const HWND child : Children(window)) {
        found = FindWin(child);
        if (found && found->invalid && IsShown(*found)) Send(child, WM_PAINT, 0, 0);
    }
    return TRUE;
}

BOOL InvalidateRect(HWND window, const RECT* rectangle, BOOL erase)
{
    if (Fails(Call::InvalidateRect)) return FALSE;
    if (!window) { // every window of the system
        for (const auto& [handle, other] : Windows) {
            if (KeepsInvalidations) other->invalidations.push_back(true);
            Invalidate(*other, nullptr, true);
        }
        return TRUE;
    }
    Window* found = NeedWindow(window);
    if (!found) return FALSE;
    if (KeepsInvalidations) found->invalidations.push_back(erase != FALSE);
    Invalidate(*found, rectangle, erase != FALSE);
    return TRUE;
}

BOOL GetClientRect(HWND window, RECT* rectangle)
{
    if (Fails(Call::GetClientRect)) return FALSE;
    const Window* found = NeedWindow(window);
    if (!found) return FALSE;
    const SIZE size = ClientSize(*found);
    *rectangle = {0, 0, size.cx, size.cy};
    return TRUE;
}

BOOL GetWindowRect(HWND window, RECT* rectangle)
{
    if (Fails(Call::GetWindowRect)) return FALSE;
    const Window* found = NeedWindow(window);
    if (!found) return FALSE;
    *rectangle = ScreenFrame(*found);
    return TRUE;
}

BOOL ScreenToClient(HWND window, POINT* point)
{
    PlatformCall();
    const Window* found = NeedWindow(window);
    if (!found) return FALSE;
    const RECT outer = ScreenFrame(*found);
    point->x -= outer.left;
    point->y -= outer.top + (found->framed ? CaptionHeight : 0);
    return TRUE;
}

// Here the bar does not reduce the window's width.
int SetScrollInfo(HWND window, int, const SCROLLINFO* info, BOOL)
{
    PlatformCall();
    Window* found = NeedWindow(window);
    if (!found) return 0;
    found->scroll = *info;
    return info->nPos;
}

int ScrollWindowEx(HWND window, int right, int down, const RECT*, const RECT*, void*, RECT*, UINT flags)
{
    PlatformCall();
    Window* found = NeedWindow(window);
    if (!found) return 0;
    if (flags & SW_SCROLLCHILDREN)
        for (const HWND child : Children(window)) {
            FindWin(child)->x += right;
            FindWin(child)->y += down;
        }
    if (flags & SW_INVALIDATE) Invalidate(*found, nullptr, (flags & SW_ERASE) != 0);
    return 1;
}

BOOL SetWindowPos(HWND window, HWND, int x, int y, int width, int height, UINT flags)
{
    if (Fails(Call::SetWindowPos)) return FALSE;
    Window* found = NeedWindow(window);
    if (!found) return FALSE;
    const bool move = !(flags & SWP_NOMOVE), size = !(flags & SWP_NOSIZE);
    SetFrame(*found, move ? x : found->x, move ? y : found->y, size ? width : found->width,
             size ? height : found->height);
    return TRUE;
}

LONG GetWindowLongW(HWND window, int index)
{
    if (Fails(Call::GetWindowLongW)) return 0;
    const Window* found = NeedWindow(window);
    if (!found) return 0;
    if (index == ExtendedStyleIndex) return static_cast<LONG>(found->extendedStyle);
    if (index != GWL_STYLE) return Fail(InvalidIndex);
    return static_cast<LONG>(found->style);
}

LONG SetWindowLongW(HWND window, int index, LONG value)
{
    if (Fails(Call::SetWindowLongW)) return 0;
    Window* found = NeedWindow(window);
    if (!found) return 0;
    if (index != GWL_STYLE) return Fail(InvalidIndex);
    const LONG before = static_cast<LONG>(found->style);
    found->style = static_cast<DWORD>(value); // the frame follows with SWP_FRAMECHANGED
    return before;
}

BOOL SetWindowTextW(HWND window, const wchar_t* text)
{
    if (Fails(Call::SetWindowTextW) || !NeedWindow(window)) return FALSE;
    Send(window, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
    return TRUE;
}

int GetWindowTextW(HWND window, wchar_t* text, int capacity)
{
    if (Fails(Call::GetWindowTextW) || !NeedWindow(window) || capacity <= 0) return 0;
    return static_cast<int>(
        Send(window, WM_GETTEXT, static_cast<WPARAM>(capacity), reinterpret_cast<LPARAM>(text)));
}

int GetWindowTextLengthW(HWND window)
{
    PlatformCall();
    return NeedWindow(window) ? static_cast<int>(Send(window, WM_GETTEXTLENGTH, 0, 0)) : 0;
}
