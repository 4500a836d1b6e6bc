// SPDX-License-Identifier: MIT
// The user's hands: what pressing, typing and choosing do to a control.
#include "platform/memory/memory.h"

namespace memory
{

namespace
{

constexpr DWORD StaticNotify = 0x100, EditReadOnly = 0x800;
constexpr UINT EnChange = 0x300, EnUpdate = 0x400, CbnSelectionChange = 1, CbnEditChange = 5,
               CbnEditUpdate = 6, LbnSelectionChange = 1;

} // namespace

bool Press(HWND control)
{
    const Window* found = FindWin(control);
    if (!found || !IsUsable(*found)) return false;
    if (found->kind == Kind::Static) {
        if (!(found->style & StaticNotify)) return false;
        Notify(control, STN_CLICKED);
        return true;
    }
    Focus(control);
    found = FindWin(control); // the program may have acted on the focus
    if (found && found->kind == Kind::Button) ClickButton(control);
    return true;
}

bool TakesText(const Window& control)
{
    return control.kind == Kind::Edit || IsEditableCombo(control);
}

bool Type(HWND control, const std::wstring& text)
{
    Window* found = FindWin(control);
    if (!found || !TakesText(*found) || !IsUsable(*found)) return false;
    const bool edit = found->kind == Kind::Edit;
    if (edit && (found->style & EditReadOnly)) return false;
    Focus(control);
    found = FindWin(control);
    if (!found) return false;
    found->text = found->limit != 0 ? text.substr(0, found->limit) : text;
    if (!edit) found->selection = -1;
    Invalidate(*found, nullptr, true);
    Notify(control, edit ? EnUpdate : CbnEditUpdate);
    Notify(control, edit ? EnChange : CbnEditChange);
    return true;
}

bool HasEntry(const Window& control, int index)
{
    return (control.kind == Kind::Combo || control.kind == Kind::List) && index >= 0 &&
           static_cast<size_t>(index) < control.items.size();
}

bool Choose(HWND control, int index)
{
    Window* found = FindWin(control);
    if (!found || !HasEntry(*found, index) || !IsUsable(*found)) return false;
    Focus(control);
    found = FindWin(control);
    if (!found || !HasEntry(*found, index)) return false;
    const bool combo = found->kind == Kind::Combo;
    found->selection = index;
    if (combo) found->text = found->items[static_cast<size_t>(index)];
    Invalidate(*found, nullptr, true);
    Notify(control, combo ? CbnSelectionChange : LbnSelectionChange);
    return true;
}

bool HasCommand(HWND window, UINT command)
{
    const std::vector<MenuEntry> menu = MenuOf(window);
    for (const MenuEntry& entry : menu)
        if (entry.id == command && command != 0) return true;
    return menu.empty();
}

bool ChooseCommand(HWND window, UINT command)
{
    const Window* found = FindWin(window);
    if (!found || !HasCommand(window, command) || !IsUsable(*found)) return false;
    Send(window, WM_COMMAND, MAKEWPARAM(static_cast<WORD>(command), 0), 0);
    return true;
}

bool PressKey(HWND window, WPARAM key, wchar_t character)
{
    const Window* found = FindWin(window);
    return found && IsUsable(*found) &&
           Post(*found->thread, {window, WM_KEYDOWN, key, 0, Tick(), {0, 0}}, character);
}

} // namespace memory
