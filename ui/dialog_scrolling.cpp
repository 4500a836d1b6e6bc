// SPDX-License-Identifier: MIT
#include "ui/dialog_scrolling.h"

namespace
{

constexpr int LineStep = 24; // pixels, about a row of a dialog
constexpr int FocusRoom =
    24; // kept visible around the focus: on a keypad device labels are above their fields

// State of the open dialog; dialogs are modal, so there is only one.
int ContentHeight = 0;
int Scrolled = 0;
HWND LastFocus = nullptr; // not scrolled to again, so that the user can scroll away from it

RECT ClientOf(HWND dialog)
{
    RECT client = {};
    GetClientRect(dialog, &client);
    return client;
}

// A control's place in its dialog's client area.
RECT PlaceOf(HWND dialog, HWND control)
{
    RECT outer = {};
    GetWindowRect(control, &outer);
    POINT corner = {outer.left, outer.top};
    ScreenToClient(dialog, &corner);
    RECT place;
    place.left = corner.x;
    place.top = corner.y;
    place.right = corner.x + outer.right - outer.left;
    place.bottom = corner.y + outer.bottom - outer.top;
    return place;
}

// Buttons report the focus only with this style.
void LetTellOfFocus(HWND control)
{
    constexpr LRESULT AnyButton = DLGC_BUTTON | DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON | DLGC_RADIOBUTTON;
    if (SendMessageW(control, WM_GETDLGCODE, 0, 0) & AnyButton)
        SetWindowLongW(control, GWL_STYLE, GetWindowLongW(control, GWL_STYLE) | static_cast<LONG>(BS_NOTIFY));
}

// Height to set for a control that keeps its size: for a drop-down list it includes the part that drops down.
int KeptHeight(HWND control, const RECT& place)
{
    RECT dropped = {};
    if (SendMessageW(control, CB_GETDROPPEDCONTROLRECT, 0, reinterpret_cast<LPARAM>(&dropped)) &&
        dropped.bottom > dropped.top)
        return dropped.bottom - dropped.top;
    return place.bottom - place.top;
}

void ShowScrollState(HWND dialog)
{
    SCROLLINFO info = {};
    info.cbSize = sizeof info;
    info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
    info.nMax = ContentHeight - 1;
    info.nPage = static_cast<UINT>(ClientOf(dialog).bottom);
    info.nPos = Scrolled;
    SetScrollInfo(dialog, SB_VERT, &info, TRUE);
}

// The first focus may be far down in a dialog that is not shown yet; the system does not scroll to it.
void MoveControls(HWND dialog, int movement)
{
    if (GetWindowLongW(dialog, GWL_STYLE) & static_cast<LONG>(WS_VISIBLE)) {
        ScrollWindowEx(dialog, 0, movement, nullptr, nullptr, nullptr, nullptr,
                       SW_SCROLLCHILDREN | SW_INVALIDATE | SW_ERASE);
        return;
    }
    for (HWND control = GetWindow(dialog, GW_CHILD); control; control = GetWindow(control, GW_HWNDNEXT)) {
        const RECT place = PlaceOf(dialog, control);
        SetWindowPos(control, nullptr, place.left, place.top + movement, 0, 0,
                     SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
}

void ScrollTo(HWND dialog, int top)
{
    const int last = ContentHeight - ClientOf(dialog).bottom;
    if (top > last) top = last;
    if (top < 0) top = 0;
    if (top == Scrolled) return;
    const int movement = Scrolled - top;
    Scrolled = top;
    MoveControls(dialog, movement);
    ShowScrollState(dialog);
}

} // namespace

void FitDialogToScreen(HWND dialog, int width, int height)
{
    ContentHeight = height;
    Scrolled = 0;
    LastFocus = nullptr;
    // First, because the scroll bar takes a part of the width.
    SetWindowPos(dialog, nullptr, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
    ShowScrollState(dialog);
    const int available = ClientOf(dialog).right;
    if (width <= 0 || available <= 0) return;
    for (HWND control = GetWindow(dialog, GW_CHILD); control; control = GetWindow(control, GW_HWNDNEXT)) {
        LetTellOfFocus(control);
        if (available == width) continue;
        const RECT place = PlaceOf(dialog, control);
        const int left = place.left * available / width, right = place.right * available / width;
        SetWindowPos(control, nullptr, left, place.top, right - left, KeptHeight(control, place),
                     SWP_NOZORDER | SWP_NOACTIVATE);
    }
}

void ScrollDialog(HWND dialog, WPARAM wParam)
{
    const int page = ClientOf(dialog).bottom;
    switch (LOWORD(wParam)) {
    case SB_LINEUP: ScrollTo(dialog, Scrolled - LineStep); return;
    case SB_LINEDOWN: ScrollTo(dialog, Scrolled + LineStep); return;
    case SB_PAGEUP: ScrollTo(dialog, Scrolled - page); return;
    case SB_PAGEDOWN: ScrollTo(dialog, Scrolled + page); return;
    case SB_TOP: ScrollTo(dialog, 0); return;
    case SB_BOTTOM: ScrollTo(dialog, ContentHeight); return;
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION: ScrollTo(dialog, HIWORD(wParam)); return;
    default: return;
    }
}

void ScrollToFocus(HWND dialog)
{
    HWND focus = GetFocus();
    while (focus && GetParent(focus) != dialog) focus = GetParent(focus); // the edit in a list
    if (!focus || focus == LastFocus) return;
    LastFocus = focus;
    const RECT place = PlaceOf(dialog, focus);
    const int height = ClientOf(dialog).bottom;
    if (place.top < FocusRoom)
        ScrollTo(dialog, Scrolled + place.top - FocusRoom);
    else if (place.bottom + FocusRoom > height)
        ScrollTo(dialog, Scrolled + place.bottom + FocusRoom - height);
}

int DialogScrolled()
{
    return Scrolled;
}
