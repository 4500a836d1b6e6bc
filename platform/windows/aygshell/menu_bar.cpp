// SPDX-License-Identifier: MIT
#include "platform/windows/aygshell/menu_bar.h"

#include <string>
#include <vector>

#include "platform/windows/aygshell/screen.h"
#include "platform/windows/aygshell/window_class.h"

namespace
{

constexpr const wchar_t* BarClass = L"ShellMenuBar";
constexpr const wchar_t* BarMark = L"ShellMenuBar"; // of a window that has one
constexpr UINT PressButton = WM_APP;
constexpr int ButtonMargin = 6;

struct Button {
    WORD command, popup;
    std::wstring text;
    RECT place;
};

struct Bar {
    HWND parent = nullptr;
    HMENU menu = nullptr;
    std::vector<Button> buttons;
    WORD keyFlags[256] = {};
};

Bar& BarOf(HWND window)
{
    return *reinterpret_cast<Bar*>(GetWindowLongPtrW(window, GWLP_USERDATA));
}

// ---- The resource -------------------------------------------------------------------------------------

// The words of a bar's resource, empty when it is missing or too short for what it announces.
std::vector<WORD> ReadWords(HINSTANCE instance, UINT resource)
{
    HRSRC found = FindResourceW(instance, MAKEINTRESOURCEW(resource), RT_RCDATA);
    HGLOBAL loaded = found ? LoadResource(instance, found) : nullptr;
    if (!loaded) return {};
    const WORD* words = static_cast<const WORD*>(LockResource(loaded));
    return {words, words + SizeofResource(instance, found) / sizeof(WORD)};
}

bool ReadBar(HINSTANCE instance, UINT resource, Bar& bar)
{
    constexpr size_t Header = 2, WordsPerButton = 7, Command = 1, String = 4, Popup = 6;
    const std::vector<WORD> words = ReadWords(instance, resource);
    if (words.size() < Header || words.size() < Header + words[1] * WordsPerButton) return false;
    bar.menu = LoadMenuW(instance, MAKEINTRESOURCEW(words[0]));
    for (size_t i = 0; i < words[1]; ++i) {
        const WORD* row = &words[Header + i * WordsPerButton];
        wchar_t text[32] = L"";
        LoadStringW(instance, row[String], text, 32);
        bar.buttons.push_back({row[Command], row[Popup], text, {}});
    }
    return true;
}

// ---- The window ---------------------------------------------------------------------------------------

// Soft keys lie above the two keys of the keypad; on a touch screen the words follow each other.
void PlaceButtons(HWND window, Bar& bar)
{
    RECT client;
    GetClientRect(window, &client);
    HDC dc = GetDC(window);
    SelectObject(dc, GetStockObject(DEFAULT_GUI_FONT));
    LONG left = 0;
    for (size_t i = 0; i < bar.buttons.size(); ++i) {
        Button& button = bar.buttons[i];
        SIZE size = {};
        GetTextExtentPoint32W(dc, button.text.c_str(), static_cast<int>(button.text.size()), &size);
        const LONG half = client.right / 2;
        if (HasKeypad())
            button.place = {i ? half : 0, 0, i ? client.right : half, client.bottom};
        else
            button.place = {left, 0, left + size.cx + 2 * ButtonMargin, client.bottom};
        left = button.place.right;
    }
    ReleaseDC(window, dc);
}

void PaintButtons(HWND window, const Bar& bar)
{
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(window, &paint);
    RECT client;
    GetClientRect(window, &client);
    PaintBar(dc, client);
    for (const Button& button : bar.buttons) {
        RECT place = button.place;
        DrawTextW(dc, button.text.c_str(), -1, &place, DT_SINGLELINE | DT_VCENTER | DT_CENTER);
    }
    EndPaint(window, &paint);
}

void Press(HWND window, const Bar& bar, const Button& button)
{
    if (!IsWindowEnabled(bar.parent)) return; // a dialog or box lies over it
    HMENU popup = button.popup == NoPopup ? nullptr : GetSubMenu(bar.menu, button.popup);
    if (!popup) {
        PostMessageW(bar.parent, WM_COMMAND, button.command, reinterpret_cast<LPARAM>(window));
        return;
    }
    const RECT above = WorkArea();
    MENUINFO limits = {};
    limits.cbSize = sizeof limits;
    limits.fMask = MIM_MAXHEIGHT;
    limits.cyMax = static_cast<UINT>(above.bottom);
    SetMenuInfo(popup, &limits); // a longer one scrolls
    TrackPopupMenu(popup, TPM_LEFTALIGN | TPM_BOTTOMALIGN, button.place.left, above.bottom, 0, bar.parent,
                   nullptr);
}

void PressAt(HWND window, const Bar& bar, POINT place)
{
    for (const Button& button : bar.buttons)
        if (PtInRect(&button.place, place)) {
            Press(window, bar, button);
            return;
        }
}

LRESULT CALLBACK BarProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_PAINT: PaintButtons(window, BarOf(window)); return 0;
    case WM_MOUSEACTIVATE: return MA_NOACTIVATE;
    case WM_LBUTTONUP:
        PressAt(window, BarOf(window),
                {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))});
        return 0;
    case PressButton:
        if (wParam < BarOf(window).buttons.size())
            Press(window, BarOf(window), BarOf(window).buttons[wParam]);
        return 0;
    case OverrideKey: {
        if (wParam > 255) return FALSE;
        WORD& flags = BarOf(window).keyFlags[wParam];
        flags = static_cast<WORD>((flags & ~HIWORD(lParam)) | (LOWORD(lParam) & HIWORD(lParam)));
        return TRUE;
    }
    case WM_NCDESTROY: {
        Bar* bar = &BarOf(window);
        if (bar->menu) DestroyMenu(bar->menu);
        delete bar;
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        return 0;
    }
    default: return DefWindowProcW(window, message, wParam, lParam);
    }
}

} // namespace

HWND MakeMenuBar(HWND parent, HINSTANCE instance, UINT resource, bool empty)
{
    Bar read;
    if (!ReadBar(instance, resource, read)) return nullptr;
    if (empty) read.buttons.clear();
    RegisterShellClass(BarClass, BarProcedure);
    const RECT area = MenuBarArea();
    HWND window = CreateWindowExW(WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE, BarClass, L"", WS_POPUP, area.left,
                                  area.top, area.right - area.left, area.bottom - area.top, parent, nullptr,
                                  LibraryInstance, nullptr);
    if (!window) return nullptr;
    read.parent = parent;
    Bar* bar = new Bar(read);
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(bar));
    PlaceButtons(window, *bar);
    SetPropW(parent, BarMark, window);
    ShowWindow(window, SW_SHOWNOACTIVATE);
    return window;
}

HWND MenuBarOf(HWND parent)
{
    HWND bar = static_cast<HWND>(GetPropW(parent, BarMark));
    return IsWindow(bar) ? bar : nullptr;
}

void PressSoftKey(HWND bar, int button)
{
    PostMessageW(bar, PressButton, static_cast<WPARAM>(button), 0);
}

bool IsKeyOverridden(HWND bar, WPARAM key)
{
    constexpr WORD Both = NoDefaultAction | NotifyParent;
    return bar && key < 256 && (BarOf(bar).keyFlags[key] & Both) == Both;
}
