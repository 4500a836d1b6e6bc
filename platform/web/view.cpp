// SPDX-License-Identifier: MIT
// Keeps the page equal to the windows in memory: after each step of the program they are compared with the
// state that was sent to the page, and the differences are sent. So neither the program nor the system in
// memory knows about the page.
#include "platform/web/web.h"

#include <algorithm>
#include <cstdlib>
#include <map>

#include "messages.h"

namespace web
{

using namespace memory;

namespace
{

constexpr DWORD ButtonType = 0xF, CheckBox = 2, AutoCheckBox = 3, RadioButton = 4, ThreeState = 5,
                AutoThreeState = 6, GroupBox = 7, AutoRadioButton = 9;
constexpr DWORD StateBits = WS_VISIBLE | WS_DISABLED;
constexpr UINT UnknownCheck = ~0u;

// The state of a window that was sent to the page.
struct Shown {
    int x = 0, y = 0, width = 0, height = 0;
    std::wstring text;
    DWORD style = 0;
    bool enabled = true, visible = true;
    UINT check = BST_UNCHECKED;
    std::vector<std::wstring> items;
    int selection = -1;
    size_t limit = 0;
    int32_t background = -1;
    uint32_t paints = 0;
    std::wstring values; // in words, of a picture
};
std::map<HWND, Shown> Page; // in the order of creation
HWND Focused = nullptr;
std::vector<std::wstring> Lines;
bool MenuSent = false;

int32_t Number(HWND window)
{
    return static_cast<int32_t>(reinterpret_cast<intptr_t>(window));
}

const wchar_t* KindName(const Window& window)
{
    switch (window.kind) {
    case Kind::Dialog: return L"dialog";
    case Kind::Edit: return L"edit";
    case Kind::Static: return L"label";
    case Kind::Combo: return IsEditableCombo(window) ? L"combo" : L"choice";
    case Kind::List: return L"list";
    case Kind::Button:
        switch (window.style & ButtonType) {
        case CheckBox:
        case AutoCheckBox: return L"check";
        case ThreeState:
        case AutoThreeState: return L"tristate";
        case RadioButton:
        case AutoRadioButton: return L"radio";
        case GroupBox: return L"group";
        default: return L"button";
        }
    default: return L"main";
    }
}

// Boxes have their own message; the menu bar is part of the main window.
bool IsShownByPage(const Window& window)
{
    return window.kind != Kind::Box && window.kind != Kind::CommandBar;
}

int MenuBarHeight(HWND window)
{
    for (const HWND child : Children(window))
        if (FindWin(child)->kind == Kind::CommandBar) return FindWin(child)->height;
    return 0;
}

Shown Create(const Window& window)
{
    const SIZE client = ClientSize(window);
    const int height = window.parent ? window.height : client.cy;
    ToPageCreated(Number(window.handle), Number(window.parent), Number(window.owner), KindName(window),
                  window.id, static_cast<int32_t>(window.style & ~StateBits), window.x, window.y,
                  window.width, height, window.text);
    Shown shown;
    shown.x = window.x;
    shown.y = window.y;
    shown.width = window.width;
    shown.height = height;
    shown.text = window.text;
    shown.style = window.style & ~StateBits;
    return shown;
}

// Sends one property if it differs.
template <typename Value, typename Send> void Compare(Value& shown, const Value& now, Send send)
{
    if (shown == now) return;
    shown = now;
    send();
}

void SendPage(const Window& window)
{
    std::vector<std::wstring> lines;
    for (const TextOut& line : window.texts) {
        const auto row = static_cast<size_t>((line.y - MenuBarHeight(window.handle)) / FontCell().cy);
        if (row >= lines.size()) lines.resize(row + 1);
        lines[row] = line.text;
    }
    constexpr size_t PageLines = 19; // trailing ones may be empty and not be drawn
    lines.resize(std::max(lines.size(), PageLines));
    Compare(Lines, lines, [&] { ToPagePage(lines); });
}

void SendChart(const Window& window, Shown& shown)
{
    Lines.clear();
    const int top = MenuBarHeight(window.handle), width = window.picture.width;
    const int height = std::max(0, window.picture.height - top);
    std::string pixels;
    pixels.reserve(static_cast<size_t>(width) * static_cast<size_t>(height) * 4);
    const auto first = window.picture.pixels.begin() + static_cast<ptrdiff_t>(top) * width;
    std::for_each(first, window.picture.pixels.end(), [&](uint32_t color) {
        for (const int shift : {16, 8, 0}) pixels += static_cast<char>(color >> shift);
        pixels += '\xFF';
    });
    shown.values = ChartValues();
    ToPageChart(width, height, pixels, shown.values);
}

// A picture that a dialog draws, with its size.
void SendPlot(const Window& window)
{
    RECT area = {INT32_MAX, INT32_MAX, INT32_MIN, INT32_MIN};
    for (const std::string& shape : window.shapes) {
        const char* place = shape.c_str() + shape.find(' ');
        int edges[4] = {};
        for (int& edge : edges) {
            char* end = nullptr;
            edge = static_cast<int>(std::strtol(place, &end, 10));
            place = end;
        }
        area = {std::min(area.left, edges[0]), std::min(area.top, edges[1]), std::max(area.right, edges[2]),
                std::max(area.bottom, edges[3])};
    }
    for (const TextOut& text : window.texts) {
        const auto width = static_cast<int>(text.text.size()) * FontCell().cx;
        area = {std::min(area.left, text.x), std::min(area.top, text.y), std::max(area.right, text.x + width),
                std::max(area.bottom, text.y + FontCell().cy)};
    }
    ToPagePlot(Number(window.handle), area.left, area.top, area.right - area.left, area.bottom - area.top,
               window.drawn, SkyValues());
}

void SendPicture(const Window& window, Shown& shown)
{
    if (shown.paints == window.paints) return;
    shown.paints = window.paints;
    if (window.kind == Kind::Plain && window.copied)
        SendChart(window, shown);
    else if (window.kind == Kind::Plain && !window.texts.empty())
        SendPage(window);
    else if (window.kind == Kind::Dialog && !window.drawn.empty())
        SendPlot(window);
}

void Update(const Window& window, Shown& shown)
{
    const int32_t number = Number(window.handle);
    const int height = window.parent ? window.height : ClientSize(window).cy;
    if (shown.x != window.x || shown.y != window.y || shown.width != window.width || shown.height != height) {
        shown.x = window.x;
        shown.y = window.y;
        shown.width = window.width;
        shown.height = height;
        ToPagePlaced(number, window.x, window.y, window.width, height);
    }
    Compare(shown.style, window.style & ~StateBits,
            [&] { ToPageStyle(number, static_cast<int32_t>(shown.style)); });
    Compare(shown.limit, window.limit, [&] { ToPageLimit(number, static_cast<int32_t>(window.limit)); });
    Compare(shown.items, window.items, [&] {
        ToPageItems(number, window.items);
        shown.selection = -1; // as after new items in a list
    });
    Compare(shown.selection, window.selection, [&] { ToPageSelection(number, window.selection); });
    Compare(shown.text, window.text, [&] { ToPageText(number, window.text); });
    Compare(shown.check, window.check, [&] { ToPageCheck(number, static_cast<int32_t>(window.check)); });
    Compare(shown.background, window.background, [&] { ToPageColour(number, window.background); });
    Compare(shown.enabled, !(window.style & WS_DISABLED), [&] { ToPageEnabled(number, shown.enabled); });
    SendPicture(window, shown);
    Compare(shown.visible, (window.style & WS_VISIBLE) != 0, [&] { ToPageVisible(number, shown.visible); });
}

void UpdateMenu(const Window& window)
{
    const std::vector<MenuEntry> menu = MenuOf(window.handle);
    if (MenuSent || menu.empty()) return;
    MenuSent = true;
    std::vector<std::wstring> entries;
    for (const MenuEntry& entry : menu)
        entries.push_back(std::to_wstring(entry.depth) + L" " + std::to_wstring(entry.id) + L" " +
                          entry.text);
    ToPageMenu(Number(window.handle), entries);
}

} // namespace

void UpdateView()
{
    std::vector<HWND> gone;
    for (const auto& [handle, shown] : Page)
        if (!FindWin(handle)) gone.push_back(handle);
    std::reverse(gone.begin(), gone.end()); // children before their parents
    for (const HWND handle : gone) {
        Page.erase(handle);
        if (Focused == handle) Focused = nullptr;
        ToPageGone(Number(handle));
    }
    const std::vector<HWND> all = AllWindows();
    for (const HWND handle : all) // a whole dialog before its changes
        if (const Window& window = *FindWin(handle); IsShownByPage(window) && !Page.contains(handle))
            Page.emplace(handle, Create(window));
    for (const HWND handle : all) {
        const Window& window = *FindWin(handle);
        if (!IsShownByPage(window)) continue;
        if (window.kind == Kind::Plain && !window.parent) UpdateMenu(window);
        Update(window, Page.at(handle));
    }
    const HWND focus = UserInterfaceThread().focus;
    const Window* window = FindWin(focus);
    if (focus != Focused && window && IsShownByPage(*window)) {
        Focused = focus;
        ToPageFocus(Number(focus));
    }
}

void ShownText(HWND control, const std::wstring& text)
{
    if (const auto found = Page.find(control); found != Page.end()) {
        found->second.text = text;
        found->second.selection = -1;
    }
}

void ShownSelection(HWND control, int index)
{
    if (const auto found = Page.find(control); found != Page.end()) {
        found->second.selection = index;
        const bool known = index >= 0 && static_cast<size_t>(index) < found->second.items.size();
        const Window* window = FindWin(control);
        if (known && window && window->kind == Kind::Combo)
            found->second.text = found->second.items[static_cast<size_t>(index)];
    }
}

void ShownFocus(HWND control)
{
    if (Page.contains(control)) Focused = control;
}

void ForgetChecks(HWND control)
{
    const Window* pressed = FindWin(control);
    if (!pressed || !pressed->parent) return;
    for (auto& [handle, shown] : Page) {
        const Window* window = FindWin(handle);
        const std::wstring kind = window && window->parent == pressed->parent ? KindName(*window) : L"";
        if (kind == L"check" || kind == L"tristate" || kind == L"radio") shown.check = UnknownCheck;
    }
}

} // namespace web
