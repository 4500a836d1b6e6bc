// SPDX-License-Identifier: MIT
#include "platform/windows/aygshell/screen.h"

#include <cwchar>

#include "platform/windows/aygshell/window_class.h"

namespace
{

constexpr const wchar_t* TitleClass = L"ShellTitleBar";
constexpr const wchar_t* OnScreenMark = L"ShellOnScreen";
constexpr const wchar_t* DoneMark = L"ShellDoneButton";

constexpr SIZE UsualScreen = {240, 320};
constexpr int BarsPerWidth = 9; // a bar's height in relation to the screen's width, as on the devices

HWND TitleBar = nullptr, Front = nullptr;

SIZE ScreenSize()
{
    wchar_t text[32];
    const DWORD length = GetEnvironmentVariableW(L"TORAVANE_SCREEN", text, 32);
    int width = 0, height = 0;
    if (length && length < 32 && std::swscanf(text, L"%dx%d", &width, &height) == 2 && width > 0 &&
        height > 0)
        return {width, height};
    return UsualScreen;
}

int BarHeight()
{
    return static_cast<int>(ScreenSize().cx) / BarsPerWidth;
}

RECT TitleArea()
{
    return {0, 0, ScreenSize().cx, BarHeight()};
}

bool HasDoneButton(HWND window)
{
    return !HasKeypad() && GetPropW(window, DoneMark);
}

RECT DoneButton()
{
    RECT area = TitleArea();
    area.left = area.right - (area.bottom - area.top);
    return area;
}

void PaintTitle(HWND window)
{
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(window, &paint);
    RECT area = TitleArea();
    PaintBar(dc, area);
    wchar_t title[64] = L"";
    if (IsWindow(Front)) GetWindowTextW(Front, title, 64);
    area.left += 4;
    DrawTextW(dc, title, -1, &area, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
    if (HasDoneButton(Front)) {
        RECT button = DoneButton();
        InflateRect(&button, -3, -3);
        SelectObject(dc, GetStockObject(HOLLOW_BRUSH));
        SelectObject(dc, GetStockObject(WHITE_PEN));
        Ellipse(dc, button.left, button.top, button.right, button.bottom);
        DrawTextW(dc, L"ok", -1, &button, DT_SINGLELINE | DT_VCENTER | DT_CENTER);
    }
    EndPaint(window, &paint);
}

LRESULT CALLBACK TitleProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_PAINT: PaintTitle(window); return 0;
    case WM_MOUSEACTIVATE: return MA_NOACTIVATE;
    case WM_LBUTTONUP: {
        const RECT button = DoneButton();
        const POINT place = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
        if (HasDoneButton(Front) && IsWindowEnabled(Front) && PtInRect(&button, place))
            PostMessageW(Front, WM_COMMAND, IDOK, 0);
        return 0;
    }
    case WM_DESTROY: TitleBar = nullptr; return 0;
    default: return DefWindowProcW(window, message, wParam, lParam);
    }
}

void MakeTitleBar(HWND owner)
{
    RegisterShellClass(TitleClass, TitleProcedure);
    const RECT area = TitleArea();
    TitleBar = CreateWindowExW(WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE, TitleClass, L"", WS_POPUP | WS_VISIBLE, 0,
                               0, area.right, area.bottom, owner, nullptr, LibraryInstance, nullptr);
}

} // namespace

bool HasKeypad()
{
    constexpr DWORD Length = 10; // of "smartphone"
    wchar_t type[64];
    const DWORD length = GetEnvironmentVariableW(L"TORAVANE_PLATFORM", type, 64);
    return length >= Length && length < 64 && _wcsnicmp(type, L"smartphone", Length) == 0;
}

RECT WorkArea()
{
    const SIZE screen = ScreenSize();
    return {0, BarHeight(), screen.cx, screen.cy - BarHeight()};
}

RECT MenuBarArea()
{
    const SIZE screen = ScreenSize();
    return {0, screen.cy - BarHeight(), screen.cx, screen.cy};
}

void TakeOntoScreen(HWND window, int height)
{
    if (!TitleBar) MakeTitleBar(window);
    SetPropW(window, OnScreenMark, window);
    const DWORD style = static_cast<DWORD>(GetWindowLongW(window, GWL_STYLE));
    SetWindowLongW(window, GWL_STYLE, static_cast<LONG>((style & ~(WS_CAPTION | WS_SYSMENU)) | WS_POPUP));
    const RECT area = WorkArea();
    SetWindowPos(window, nullptr, area.left, area.top, area.right - area.left, height,
                 SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
}

bool IsOnScreen(HWND window)
{
    return GetPropW(window, OnScreenMark);
}

void ShowTitle(HWND window)
{
    Front = window;
    if (TitleBar) InvalidateRect(TitleBar, nullptr, FALSE);
}

void WantDoneButton(HWND window)
{
    SetPropW(window, DoneMark, window);
}

void CentreOnScreen(HWND box)
{
    const SIZE screen = ScreenSize();
    RECT outer;
    GetWindowRect(box, &outer);
    const int left = (static_cast<int>(screen.cx) - (outer.right - outer.left)) / 2;
    const int top = (static_cast<int>(screen.cy) - (outer.bottom - outer.top)) / 2;
    SetWindowPos(box, nullptr, left > 0 ? left : 0, top > 0 ? top : 0, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void PaintBar(HDC dc, const RECT& area)
{
    constexpr COLORREF BarColor = RGB(30, 60, 120);
    HBRUSH brush = CreateSolidBrush(BarColor);
    FillRect(dc, &area, brush);
    DeleteObject(brush);
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, RGB(255, 255, 255));
    SelectObject(dc, GetStockObject(DEFAULT_GUI_FONT));
}
