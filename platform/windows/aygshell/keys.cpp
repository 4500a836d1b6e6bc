// SPDX-License-Identifier: MIT
#include "platform/windows/aygshell/keys.h"

#include "platform/windows/aygshell/menu_bar.h"
#include "platform/windows/aygshell/screen.h"

namespace
{

HHOOK MessageHook = nullptr, WindowHook = nullptr;

bool IsOfClass(HWND window, const wchar_t* name)
{
    wchar_t found[32] = L"";
    GetClassNameW(window, found, 32);
    return lstrcmpiW(found, name) == 0;
}

bool IsDialog(HWND window)
{
    return IsOfClass(window, L"#32770");
}

bool IsMenuOpen()
{
    GUITHREADINFO info = {};
    info.cbSize = sizeof info;
    return GetGUIThreadInfo(GetCurrentThreadId(), &info) && (info.flags & GUI_INMENUMODE);
}

// ---- The joystick in a dialog -------------------------------------------------------------------------

// True if a multi-line edit has a further line for its caret in that direction.
bool CaretCanMove(HWND edit, bool up)
{
    if (!IsOfClass(edit, L"Edit") || !(GetWindowLongW(edit, GWL_STYLE) & ES_MULTILINE)) return false;
    const LRESULT line = SendMessageW(edit, EM_LINEFROMCHAR, static_cast<WPARAM>(-1), 0);
    return up ? line > 0 : line < SendMessageW(edit, EM_GETLINECOUNT, 0, 0) - 1;
}

// Up and down go from field to field; left and right stay in one, for the entries of a list and the options
// of a group.
bool MoveFocus(HWND dialog, HWND focus, bool up)
{
    if (CaretCanMove(focus, up)) return false;
    HWND next = GetNextDlgTabItem(dialog, focus, up);
    if (next) SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(next), TRUE);
    return true;
}

// The action key presses what has the focus; in a field it does nothing, where a desktop's would end the
// dialog.
bool PressFocus(HWND focus)
{
    if (IsOfClass(focus, L"Button")) PostMessageW(focus, BM_CLICK, 0, 0);
    return true;
}

// True if a key on a keypad device has been handled.
bool HandleKeypadKey(HWND top, WPARAM key)
{
    HWND bar = MenuBarOf(top);
    if (key == FirstSoftKey || key == SecondSoftKey) {
        if (bar) PressSoftKey(bar, static_cast<int>(key - FirstSoftKey));
        return bar != nullptr;
    }
    if (!IsDialog(top) || !IsOnScreen(top)) return false;
    HWND focus = GetFocus();
    switch (key) {
    case VK_UP:
    case VK_DOWN: return MoveFocus(top, focus, key == VK_UP);
    case VK_RETURN: return PressFocus(focus);
    default: return false;
    }
}

// ---- Messages -----------------------------------------------------------------------------------------

bool HandleKey(const MSG& message)
{
    if ((message.message != WM_KEYDOWN && message.message != WM_KEYUP) || IsMenuOpen()) return false;
    HWND top = GetAncestor(message.hwnd, GA_ROOT);
    const bool released = message.message == WM_KEYUP;
    if (message.wParam == BackKey && IsKeyOverridden(MenuBarOf(top), BackKey)) {
        PostMessageW(top, WM_HOTKEY, 0, MAKELPARAM(released ? KeyWasReleased : 0, BackKey));
        return true;
    }
    return !released && HasKeypad() && HandleKeypadKey(top, message.wParam);
}

LRESULT CALLBACK OnMessage(int code, WPARAM wParam, LPARAM lParam)
{
    MSG* message = reinterpret_cast<MSG*>(lParam);
    if (code == HC_ACTION && wParam == PM_REMOVE && HandleKey(*message)) message->message = WM_NULL;
    return CallNextHookEx(MessageHook, code, wParam, lParam);
}

LRESULT CALLBACK OnWindow(int code, WPARAM wParam, LPARAM lParam)
{
    if (code == HCBT_ACTIVATE) {
        HWND window = reinterpret_cast<HWND>(wParam);
        if (IsOnScreen(window))
            ShowTitle(window);
        else if (IsDialog(window))
            CentreOnScreen(window);
    }
    return CallNextHookEx(WindowHook, code, wParam, lParam);
}

} // namespace

void WatchThread()
{
    if (MessageHook) return;
    InitCommonControls(); // spinners
    MessageHook = SetWindowsHookExW(WH_GETMESSAGE, OnMessage, nullptr, GetCurrentThreadId());
    WindowHook = SetWindowsHookExW(WH_CBT, OnWindow, nullptr, GetCurrentThreadId());
}

void StopWatching()
{
    if (MessageHook) UnhookWindowsHookEx(MessageHook);
    if (WindowHook) UnhookWindowsHookEx(WindowHook);
    MessageHook = WindowHook = nullptr;
}

void SendBackToFocus(LPARAM hotKey)
{
    HWND focus = GetFocus();
    const bool released = LOWORD(hotKey) & KeyWasReleased;
    if (HIWORD(hotKey) == BackKey && !released && IsOfClass(focus, L"Edit"))
        PostMessageW(focus, WM_CHAR, VK_BACK, 1);
}
