// SPDX-License-Identifier: MIT
#include "ui/dialog_controls.h"

#include "text/numbers.h"
#include "ui/dialog_support.h"

namespace
{

bool IsKeypadList(HWND dialog, int control)
{
    return LayoutOffset() && SendDlgItemMessageW(dialog, control, LB_GETCOUNT, 0, 0) > 0;
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

void SelectShownEntry(HWND dialog, int control, int32_t index)
{
    if (LayoutOffset()) SelectListEntry(dialog, control, index);
}

void MakeListLeafable(HWND dialog, int control)
{
    constexpr UINT SetListMode = 0x1C1;
    constexpr LPARAM Leaf = 2;
    if (LayoutOffset()) SendDlgItemMessageW(dialog, control, SetListMode, 0, Leaf);
}

void ReadControlText(HWND dialog, int control, wchar_t (&text)[ControlTextCapacity])
{
    text[0] = text[ControlTextCapacity - 2] = 0;
    if (IsKeypadList(dialog, control))
        GetSelectedListText(dialog, control, text, ControlTextCapacity);
    else
        GetDlgItemTextW(dialog, control, text, ControlTextCapacity);
    if (text[ControlTextCapacity - 2]) text[0] = 0; // may be the beginning of a longer text
}

bool ReadNumber(HWND dialog, int control, int32_t& value)
{
    wchar_t text[ControlTextCapacity];
    ReadControlText(dialog, control, text);
    int64_t number;
    if (!ParseFixedPoint(text, 0, number) || number < INT32_MIN || number > INT32_MAX) return false;
    value = static_cast<int32_t>(number);
    return true;
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

void UseNarrowMargins(HWND dialog, int control)
{
    constexpr UINT SetMargins = 0xD3;
    constexpr WPARAM BothSides = 3;
    constexpr LPARAM OnePixelEach = 0x10001;
    SendDlgItemMessageW(dialog, control, SetMargins, BothSides, OnePixelEach);
}
