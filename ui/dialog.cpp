// SPDX-License-Identifier: MIT
#include "ui/dialog.h"

#include <utility>

#include "ui/active_dialog.h"
#include "ui/dialog_controls.h"
#include "ui/dialog_fields.h"
#include "ui/dialog_scrolling.h"
#include "ui/dialog_support.h"

namespace
{

const Dialog* Current = nullptr; // modal, so there is one

// True if the system is to give the focus to the first control.
INT_PTR Initialise(HWND dialog)
{
    InitDialogCommon(dialog);
    PublishDialog(Current->kind, dialog);
    PrepareFields(dialog, Current->fields);
    if (Current->fill) Current->fill(dialog);
    if (Current->begin) Current->begin(dialog);
    HWND first = Current->firstFocus ? GetDlgItem(dialog, Current->firstFocus()) : nullptr;
    if (first) SetFocus(first);
    return !first;
}

// True for a focus notification from any control.
bool IsFocusNotification(uint16_t code)
{
    return code == BN_SETFOCUS || code == LBN_SETFOCUS || code == CBN_SETFOCUS || code == EN_SETFOCUS;
}

// Only clicks count as presses: most notifications of controls are caused by the receiver's answers, which
// the reader thread writes into them.
INT_PTR HandleCommand(HWND dialog, uint16_t control, uint16_t code)
{
    if (IsFocusNotification(code)) ScrollToFocus(dialog);
    if (code != BN_CLICKED) return FALSE;
    for (const DialogButton& button : Current->buttons)
        if (button.control == control) button.press(dialog);
    if (control != IDOK && control != IDCANCEL) return FALSE;
    WithdrawDialog();
    EndDialog(dialog, control);
    return TRUE;
}

INT_PTR CALLBACK DialogProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITDIALOG) return Initialise(dialog);
    if (Current->handle)
        if (const INT_PTR answer = Current->handle(dialog, message, wParam, lParam)) return answer;
    switch (message) {
    case WM_COMMAND: return HandleCommand(dialog, LOWORD(wParam), HIWORD(wParam));
    case WM_VSCROLL:
        if (lParam) return FALSE; // of a spinner
        ScrollDialog(dialog, wParam);
        return TRUE;
    case WM_HOTKEY: HandleHotKey(message, wParam, lParam); return TRUE;
    case WM_DESTROY: WithdrawDialog(); return FALSE;
    default: return FALSE;
    }
}

} // namespace

void OpenDialog(const Dialog& dialog)
{
    const Dialog* const outer = std::exchange(Current, &dialog);
    ShowDialog(dialog.number, DialogProcedure);
    Current = outer;
}

void CloseDialog(HWND dialog)
{
    WithdrawDialog();
    EndDialog(dialog, IDOK);
}
