// SPDX-License-Identifier: MIT
#include "platform/windows/aygshell/fields.h"

namespace
{

constexpr const wchar_t* Before = L"ShellProcedureBefore";
constexpr const wchar_t* SpinnerMark = L"ShellSpinner";
constexpr const wchar_t* NumbersMark = L"ShellNumbersOnly";

void Replace(HWND control, WNDPROC procedure)
{
    const LONG_PTR before = GetWindowLongPtrW(control, GWLP_WNDPROC);
    SetPropW(control, Before, reinterpret_cast<HANDLE>(before));
    SetWindowLongPtrW(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure));
}

LRESULT CallBefore(HWND control, UINT message, WPARAM wParam, LPARAM lParam)
{
    return CallWindowProcW(reinterpret_cast<WNDPROC>(GetPropW(control, Before)), control, message, wParam,
                           lParam);
}

LRESULT CALLBACK ListProcedure(HWND list, UINT message, WPARAM wParam, LPARAM lParam)
{
    const LRESULT result = CallBefore(list, message, wParam, lParam);
    switch (message) {
    case LB_ADDSTRING:
    case LB_INSERTSTRING:
    case LB_DELETESTRING:
    case LB_RESETCONTENT:
        SendMessageW(static_cast<HWND>(GetPropW(list, SpinnerMark)), UDM_SETRANGE32, 0,
                     CallBefore(list, LB_GETCOUNT, 0, 0) - 1);
        break;
    default: break;
    }
    return result;
}

// Digits, signs and points; keys that type nothing have their effect.
bool BelongsToNumber(WPARAM character)
{
    return character < L' ' || (character >= L'0' && character <= L'9') || character == L'-' ||
           character == L'+' || character == L'.';
}

LRESULT CALLBACK EditProcedure(HWND edit, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == SetInputMode) {
        if (lParam == NumbersOnly)
            SetPropW(edit, NumbersMark, edit);
        else
            RemovePropW(edit, NumbersMark);
        return 0;
    }
    if (message == WM_CHAR && GetPropW(edit, NumbersMark) && !BelongsToNumber(wParam)) return 0;
    return CallBefore(edit, message, wParam, lParam);
}

bool IsOfClass(HWND window, const wchar_t* name)
{
    wchar_t found[32] = L"";
    GetClassNameW(window, found, 32);
    return lstrcmpiW(found, name) == 0;
}

} // namespace

void PrepareFields(HWND dialog)
{
    for (HWND control = GetWindow(dialog, GW_CHILD); control; control = GetWindow(control, GW_HWNDNEXT)) {
        if (IsOfClass(control, L"Edit")) Replace(control, EditProcedure);
        if (!IsOfClass(control, UPDOWN_CLASSW)) continue;
        HWND list = reinterpret_cast<HWND>(SendMessageW(control, UDM_GETBUDDY, 0, 0));
        if (!IsOfClass(list, L"ListBox")) continue;
        SetPropW(list, SpinnerMark, control);
        Replace(list, ListProcedure);
    }
}
