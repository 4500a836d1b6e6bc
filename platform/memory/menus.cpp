// SPDX-License-Identifier: MIT
// Menus and the command bar that shows one.
#include "platform/memory/memory.h"

namespace memory
{

namespace
{

constexpr uintptr_t FirstMenu = 0x40010;

std::map<HMENU, std::vector<MenuEntry>> Menus;
uintptr_t NextMenu = FirstMenu;

} // namespace

// A menu that is given to a new window belongs to the window from then on.
bool TakeMenu(HMENU menu, std::vector<MenuEntry>& entries)
{
    const auto found = Menus.find(menu);
    if (found == Menus.end()) return Fail(1401); // no such menu
    entries = std::move(found->second);
    Menus.erase(found);
    return true;
}

// The entries of a window's own menu or of its command bar.
std::vector<MenuEntry> MenuOf(HWND window)
{
    const Window* found = FindWin(window);
    if (!found) return {};
    if (!found->menu.empty()) return found->menu;
    for (const HWND child : Children(window))
        if (FindWin(child)->kind == Kind::CommandBar) return FindWin(child)->menu;
    return {};
}

void ResetMenus()
{
    Menus.clear();
    NextMenu = FirstMenu;
}

} // namespace memory

using namespace memory;

HMENU LoadMenuW(HINSTANCE, const wchar_t* name)
{
    std::vector<MenuEntry> entries;
    if (Fails(Call::LoadMenuW) || !FindMenu(name, entries)) return nullptr;
    const HMENU menu = reinterpret_cast<HMENU>(NextMenu);
    NextMenu += 16;
    Menus[menu] = std::move(entries);
    return menu;
}

HWND CommandBar_Create(HINSTANCE, HWND window, int id)
{
    if (Fails(Call::CommandBar_Create) || !NeedWindow(window)) return nullptr;
    const HWND bar = MakeWindow(Kind::CommandBar, {nullptr, nullptr, L"CommandBar"}, L"",
                                WS_CHILD | WS_VISIBLE, window, id);
    FindWin(bar)->width = ClientSize(*FindWin(window)).cx;
    FindWin(bar)->height = CommandBarHeight;
    return bar;
}

BOOL CommandBar_InsertMenubar(HWND bar, HINSTANCE, WORD menu, WORD)
{
    if (Fails(Call::CommandBar_InsertMenubar)) return FALSE;
    Window* found = NeedWindow(bar);
    if (!found) return FALSE;
    if (found->kind != Kind::CommandBar) return Fail(ERROR_INVALID_WINDOW_HANDLE);
    return FindMenu(MAKEINTRESOURCEW(menu), found->menu);
}

int CommandBar_Height(HWND bar)
{
    PlatformCall();
    const Window* found = FindWin(bar);
    return found && found->kind == Kind::CommandBar ? found->height : 0;
}

void PassBackKeyToDialog(HWND) {} // a test sends the hot-key message itself
