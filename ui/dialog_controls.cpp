#include "ui/dialog_controls.h"

#include "text/numbers.h"
#include "ui/active_dialog.h"
#include "ui/dialog_scrolling.h"
#include "ui/dialog_support.h"
#include "ui/error_boxes.h"

namespace
{

constexpr uint32_t MaxDecimalCharacters = 20; // what is typed beyond them is not read

bool IsKeypadList(HWND dialog, int control)
{
    return LayoutOffset() && SendDlgItemMessageW(dialog, control, LB_GETCOUNT, 0, 0) > 0;
}

// True for a focus notification from any control.
bool TellsOfFocus(uint16_t code)
{
    return code == BN_SETFOCUS || code == LBN_SETFOCUS || code == CBN_SETFOCUS || code == EN_SETFOCUS;
}

} // namespace

void FillList(HWND dialog, int control, std::span<const wchar_t* const> entries)
{
    for (const wchar_t* entry : entries)
        SendDlgItemMessageW(dialog, control, ListMessages.addString, 0, reinterpret_cast<LPARAM>(entry));
}

void SelectListEntry(HWND dialog, int control, int32_t index)
{
    SendDlgItemMessageW(dialog, control, ListMessages.setSelection, static_cast<WPARAM>(index), 0);
}

void MakeListLeafable(HWND dialog, int control)
{
    constexpr UINT SetListMode = 0x1C1;
    constexpr LPARAM Leaf = 2;
    if (LayoutOffset()) SendDlgItemMessageW(dialog, control, SetListMode, 0, Leaf);
}

void ReadControlText(HWND dialog, int control, wchar_t (&text)[ControlTextCapacity])
{
    text[0] = 0;
    if (IsKeypadList(dialog, control))
        GetSelectedListText(dialog, control, text, ControlTextCapacity);
    else
        GetDlgItemTextW(dialog, control, text, ControlTextCapacity);
}

bool ReadNumber(HWND dialog, int control, int32_t& value)
{
    wchar_t text[ControlTextCapacity];
    ReadControlText(dialog, control, text);
    return ParseWholeNumber(text, value);
}

bool ReadNumberInRange(HWND dialog, int control, int32_t low, int32_t high, const wchar_t* caption,
                       const wchar_t* refusal, int32_t& value)
{
    int32_t number;
    if (!ReadNumber(dialog, control, number) || number < low || number > high) {
        InfoBox(caption, refusal);
        return false;
    }
    value = number;
    return true;
}

double ReadDecimal(HWND dialog, int control)
{
    wchar_t text[ControlTextCapacity];
    ReadControlText(dialog, control, text);
    text[MaxDecimalCharacters] = 0;
    return ParseDecimal(text);
}

UINT GetCheck(HWND dialog, int control)
{
    return static_cast<UINT>(SendDlgItemMessageW(dialog, control, BM_GETCHECK, 0, 0));
}

void SetCheck(HWND dialog, int control, UINT state)
{
    SendDlgItemMessageW(dialog, control, BM_SETCHECK, state, 0);
}

void EnableControl(HWND dialog, int control, bool enable)
{
    if (HWND window = GetDlgItem(dialog, control)) EnableWindow(window, enable);
}

void UseNumericInput(HWND dialog, int control)
{
    constexpr UINT SetInputMode = 0xDE; // of edits with the shell's input method
    constexpr LPARAM NumbersOnly = 2;
    if (LayoutOffset()) SendDlgItemMessageW(dialog, control, SetInputMode, 0, NumbersOnly);
}

INT_PTR HandleCommonMessages(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_COMMAND:
        if (TellsOfFocus(HIWORD(wParam))) ScrollToFocus(dialog);
        if (HIWORD(wParam) != BN_CLICKED) return FALSE;
        if (LOWORD(wParam) != IDOK && LOWORD(wParam) != IDCANCEL) return FALSE;
        WithdrawDialog();
        EndDialog(dialog, LOWORD(wParam));
        return TRUE;
    case WM_VSCROLL:
        if (lParam) return FALSE; // of a spinner
        ScrollDialog(dialog, wParam);
        return TRUE;
    case WM_HOTKEY: HandleHotKey(message, wParam, lParam); return TRUE;
    case WM_DESTROY: WithdrawDialog(); return FALSE;
    default: return FALSE;
    }
}
