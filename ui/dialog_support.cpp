// SPDX-License-Identifier: MIT
#include "ui/dialog_support.h"

#include "resources/resource_ids.h"
#include "text/copy.h"
#include "text/numbers.h"
#include "ui/active_dialog.h"
#include "ui/dialog_scrolling.h"
#include "ui/shell_libraries.h"

HINSTANCE ProgramInstance = nullptr;

namespace
{

constexpr ListMessageTable ListBoxMessages = {LB_ADDSTRING, LB_INSERTSTRING, LB_DELETESTRING, LB_SETCURSEL,
                                              LB_GETCURSEL, LB_GETTEXT,      LB_GETTEXTLEN};
constexpr ListMessageTable ComboBoxMessages = {CB_ADDSTRING, CB_INSERTSTRING, CB_DELETESTRING, CB_SETCURSEL,
                                               CB_GETCURSEL, CB_GETLBTEXT,    CB_GETLBTEXTLEN};

constexpr uint16_t ListError = 65535; // of each list message, in its low 16 bits
constexpr uint32_t ListTextCapacity = 256;
constexpr WPARAM BackKey = 27;

uint32_t CurrentLayoutOffset = 0;

constexpr UINT PlatformTypeCapacity = 256;

bool QueryPlatformType(wchar_t (&type)[PlatformTypeCapacity])
{
    type[0] = 0;
    // The size in characters. A system that takes it as bytes uses a part of the buffer only.
    const bool known = SystemParametersInfoW(SPI_GETPLATFORMTYPE, PlatformTypeCapacity, type, 0);
    type[PlatformTypeCapacity - 1] = 0;
    return known;
}

// A caption with the button that closes the dialog. The frame of the templates has room for a caption
// already.
void AddCaption(HWND dialog)
{
    const LONG style = GetWindowLongW(dialog, GWL_STYLE);
    SetWindowLongW(dialog, GWL_STYLE, style | static_cast<LONG>(WS_CAPTION | WS_SYSMENU));
    SetWindowPos(dialog, nullptr, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
    // A caption shows an icon. Without one of ours it is the system's for any program.
    SendMessageW(dialog, WM_SETICON, ICON_SMALL,
                 reinterpret_cast<LPARAM>(LoadIconW(ProgramInstance, MAKEINTRESOURCEW(ICON_PROGRAM))));
}

// The title of a Pocket PC's dialog already has an OK. A button with another text stays.
void HideSecondOk(HWND dialog)
{
    wchar_t text[3] = L"";
    HWND button = GetDlgItem(dialog, IDOK);
    if (button && GetDlgItemTextW(dialog, IDOK, text, 3) && TextEquals(text, L"OK"))
        ShowWindow(button, SW_HIDE);
}

} // namespace

ListMessageTable ListMessages = ComboBoxMessages;

bool IsSmartphone()
{
    wchar_t type[PlatformTypeCapacity];
    if (!QueryPlatformType(type)) return GetLastError() == ERROR_ACCESS_DENIED;
    return StartsWithIgnoringCase(type, L"smartphone");
}

bool IsPocketPc()
{
    wchar_t type[PlatformTypeCapacity];
    return QueryPlatformType(type) && StartsWithIgnoringCase(type, L"pocketpc");
}

void ChooseLayout()
{
    const bool keypad = IsSmartphone();
    CurrentLayoutOffset = keypad ? KEYPAD_LAYOUT : 0;
    ListMessages = keypad ? ListBoxMessages : ComboBoxMessages;
}

uint32_t LayoutOffset()
{
    return CurrentLayoutOffset;
}

INT_PTR ShowDialog(uint32_t number, DLGPROC procedure)
{
    return DialogBoxParamW(ProgramInstance,
                           MAKEINTRESOURCEW(static_cast<uint16_t>(number + CurrentLayoutOffset)),
                           MainWindow.load(), procedure, 0);
}

void InitDialogCommon(HWND dialog)
{
    RECT designed = {};
    GetClientRect(dialog, &designed);
    if (ShellInitDialogEntry) {
        ShellInitDialog request = {ShellInitFlagsValid, dialog,
                                   ShellDoneButton | ShellFullScreen | ShellInputPanelDown};
        ShellInitDialogEntry(&request);
    }
    const bool smartphone = IsSmartphone(), pocketPc = IsPocketPc();
    if (smartphone)
        SetWindowLongW(dialog, GWL_STYLE, GetWindowLongW(dialog, GWL_STYLE) | static_cast<LONG>(WS_VSCROLL));
    if (!smartphone && !pocketPc) {
        AddCaption(dialog);
        return;
    }
    FitDialogToScreen(dialog, designed.right, designed.bottom);
    if (pocketPc && ShellInitDialogEntry) HideSecondOk(dialog);
    if (!ShellCreateMenuBar) return;
    ShellMenuBar bar = {};
    bar.size = sizeof bar;
    bar.parent = dialog;
    bar.flags = pocketPc ? ShellEmptyBar : 0;
    bar.menu = MENU_DIALOG;
    bar.instance = ProgramInstance;
    if (ShellCreateMenuBar(&bar)) PassBackKeyToDialog(bar.bar);
}

void HandleHotKey(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (HIWORD(static_cast<WPARAM>(lParam)) == BackKey && ShellSendBackToFocusWindow)
        ShellSendBackToFocusWindow(message, wParam, lParam);
}

int32_t GetListSelection(HWND dialog, int control)
{
    const uint16_t selection =
        static_cast<uint16_t>(SendDlgItemMessageW(dialog, control, ListMessages.getSelection, 0, 0));
    return dialog && GetDlgItem(dialog, control) && selection != ListError ? selection : -1;
}

uint32_t GetSelectedListText(HWND dialog, int control, wchar_t* text, uint32_t capacity)
{
    const int32_t selection = GetListSelection(dialog, control);
    if (selection < 0) return 0;
    const WPARAM index = static_cast<WPARAM>(selection);
    const uint16_t length =
        static_cast<uint16_t>(SendDlgItemMessageW(dialog, control, ListMessages.getTextLength, index, 0));
    if (length == ListError || length + 1u > capacity) return 0;
    const uint16_t copied = static_cast<uint16_t>(
        SendDlgItemMessageW(dialog, control, ListMessages.getText, index, reinterpret_cast<LPARAM>(text)));
    return copied == ListError ? 0 : copied;
}

int32_t GetSelectedListNumber(HWND dialog, int control, bool& found)
{
    wchar_t text[ListTextCapacity];
    found = GetSelectedListText(dialog, control, text, ListTextCapacity) != 0;
    return found ? ParseInteger(text) : 0;
}
