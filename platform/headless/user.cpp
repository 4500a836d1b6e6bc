// The scripted user, and what the user sees.
#include "platform/headless/internal.h"

#include <algorithm>

namespace headless
{

namespace
{

constexpr DWORD StaticNotify = 0x100, EditReadOnly = 0x800;
constexpr UINT EnChange = 0x300, EnUpdate = 0x400, CbnSelectionChange = 1, CbnEditChange = 5,
               CbnEditUpdate = 6, LbnSelectionChange = 1;

struct Step {
    std::function<void()> act;
    uint64_t delay;       // microseconds
    uint64_t due = Never; // known when the thread waits for it
};

std::deque<Step> Script;

Window& ControlOf(HWND dialog, int control)
{
    Window* found = FindChild(dialog, control);
    if (!found)
        Stop("the user looks for control " + std::to_string(control) + ", which the dialog does not have");
    return *found;
}

// What the user reads in a control.
std::wstring ShownText(const Window& control)
{
    const bool isList = control.kind == Kind::List && control.selection >= 0;
    return isList ? control.items[static_cast<size_t>(control.selection)] : control.text;
}

} // namespace

uint64_t UserStepTime()
{
    return Script.empty() ? Never : Script.front().due;
}

bool RunUserStep()
{
    if (Script.empty()) return false;
    Step& next = Script.front();
    if (next.due == Never) next.due = Now() + next.delay;
    if (next.due > Now()) return false;
    const std::function<void()> act = std::move(next.act);
    Script.pop_front();
    const InProgram program;
    act();
    return true;
}

void ResetUser()
{
    Script.clear();
}

} // namespace headless

using namespace headless;

void HeadlessUser(std::function<void()> step, uint32_t delay)
{
    Script.push_back({std::move(step), uint64_t{delay} * 1000, Never});
    Wake(UserInterfaceThread(), WakeInput);
}

bool HeadlessClick(HWND dialog, int control)
{
    const Window& found = ControlOf(dialog, control);
    const HWND handle = found.handle;
    if (!IsUsable(found)) return false;
    if (found.kind == Kind::Static) {
        if (found.style & StaticNotify) Notify(handle, STN_CLICKED);
        return (found.style & StaticNotify) != 0;
    }
    Focus(handle);
    if (found.kind == Kind::Button) ClickButton(handle);
    return true;
}

bool HeadlessType(HWND dialog, int control, const std::wstring& text)
{
    Window* found = &ControlOf(dialog, control);
    const HWND handle = found->handle;
    const bool edit = found->kind == Kind::Edit, combo = IsEditableCombo(*found);
    if (!edit && !combo)
        Stop("the user types into control " + std::to_string(control) + ", which takes no text");
    if (!IsUsable(*found) || (edit && (found->style & EditReadOnly))) return false;
    Focus(handle);
    found = FindWin(handle); // the program may have acted on the focus
    if (!found) return false;
    found->text = found->limit != 0 ? text.substr(0, found->limit) : text;
    if (combo) found->selection = -1;
    Invalidate(*found, nullptr, true);
    Notify(handle, edit ? EnUpdate : CbnEditUpdate);
    Notify(handle, edit ? EnChange : CbnEditChange);
    return true;
}

bool HeadlessChoose(HWND dialog, int control, int index)
{
    Window* found = &ControlOf(dialog, control);
    const HWND handle = found->handle;
    const bool combo = found->kind == Kind::Combo;
    const auto entry = static_cast<size_t>(index);
    if ((!combo && found->kind != Kind::List) || index < 0 || entry >= found->items.size())
        Stop("the user chooses entry " + std::to_string(index) + " of control " + std::to_string(control) +
             ", which does not have it");
    if (!IsUsable(*found)) return false;
    Focus(handle);
    found = FindWin(handle);
    if (!found || entry >= found->items.size()) return false;
    found->selection = index;
    if (combo) found->text = found->items[entry];
    Invalidate(*found, nullptr, true);
    Notify(handle, combo ? CbnSelectionChange : LbnSelectionChange);
    return true;
}

bool HeadlessCommand(HWND window, int command)
{
    const Window* found = FindWin(window);
    if (!found) Stop("a command to a window that does not exist");
    const std::vector<MenuEntry> menu = MenuOf(window);
    const bool offered = std::any_of(menu.begin(), menu.end(), [&](const MenuEntry& entry) {
        return entry.id == static_cast<UINT>(command) && command != 0;
    });
    if (!menu.empty() && !offered) Stop("the menu has no command " + std::to_string(command));
    if (!IsUsable(*found)) return false;
    Send(window, WM_COMMAND, MAKEWPARAM(static_cast<WORD>(command), 0), 0);
    return true;
}

bool HeadlessKey(HWND window, WPARAM key, wchar_t character)
{
    const Window* found = FindWin(window);
    if (!found) Stop("a key to a window that does not exist");
    return IsUsable(*found) && Post(*found->thread, {window, WM_KEYDOWN, key, 0, Tick(), {0, 0}}, character);
}

std::wstring HeadlessText(HWND dialog, int control)
{
    return ShownText(ControlOf(dialog, control));
}

bool HeadlessEnabled(HWND dialog, int control)
{
    return !(ControlOf(dialog, control).style & WS_DISABLED);
}

UINT HeadlessCheck(HWND dialog, int control)
{
    return ControlOf(dialog, control).check;
}

int HeadlessSelection(HWND dialog, int control)
{
    return ControlOf(dialog, control).selection;
}

LPARAM HeadlessIgnoredMessage(HWND dialog, int control, UINT message)
{
    const std::map<UINT, LPARAM>& ignored = ControlOf(dialog, control).ignoredMessages;
    const auto found = ignored.find(message);
    return found == ignored.end() ? 0 : found->second;
}

std::vector<std::wstring> HeadlessItems(HWND dialog, int control)
{
    return ControlOf(dialog, control).items;
}

bool HeadlessHasControl(HWND dialog, int control)
{
    const DWORD error = Me().lastError;
    const bool has = FindChild(dialog, control) != nullptr;
    Me().lastError = error;
    return has;
}

int HeadlessFocus(HWND dialog)
{
    const Window* found = FindWin(dialog);
    if (!found) return 0;
    const Window* focus = FindWin(found->thread->focus);
    return focus && focus->parent == dialog ? focus->id : 0;
}
