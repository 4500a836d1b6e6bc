// SPDX-License-Identifier: MIT
// The scripted user, and the texts that the user sees.
#include "platform/headless/internal.h"

#include <algorithm>

using namespace memory;

namespace
{

struct Step {
    std::function<void()> act;
    uint64_t delay;       // microseconds
    uint64_t due = Never; // set when the thread waits for it
};

std::deque<Step> Script;

Window& ControlOf(HWND dialog, int control)
{
    Window* found = FindChild(dialog, control);
    if (!found)
        Stop("the user looks for control " + std::to_string(control) + ", which the dialog does not have");
    return *found;
}

// The text that the user reads in a control.
std::wstring ShownText(const Window& control)
{
    const bool isList = control.kind == Kind::List && control.selection >= 0;
    return isList ? control.items[static_cast<size_t>(control.selection)] : control.text;
}

} // namespace

namespace memory
{

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

} // namespace memory

namespace headless
{

void ResetUser()
{
    Script.clear();
}

} // namespace headless

void HeadlessUser(std::function<void()> step, uint32_t delay)
{
    Script.push_back({std::move(step), uint64_t{delay} * 1000, Never});
    Wake(UserInterfaceThread(), WakeInput);
}

bool HeadlessRunMessages()
{
    for (;;) {
        MSG message;
        switch (NextMessage(message, nullptr, 0, 0, nullptr, Idle::Return)) {
        case Next::Quit: return true;
        case Next::Stopped: return false;
        case Next::Message: Translate(message); Dispatch(message);
        }
    }
}

void HeadlessPumpMessages()
{
    PumpMessages();
}

void HeadlessPass(uint32_t milliseconds)
{
    Thread& me = Me();
    const uint64_t end = Now() + uint64_t{milliseconds} * 1000;
    do {
        PumpMessages();
        Wait(std::min(end, me.quit ? Never : NextTimer(me)), WakeSent | WakeInput, {"a message"});
    } while (Now() < end);
    PumpMessages();
}

uint32_t HeadlessStepsLeft()
{
    return static_cast<uint32_t>(Script.size());
}

bool HeadlessClick(HWND dialog, int control)
{
    return Press(ControlOf(dialog, control).handle);
}

bool HeadlessType(HWND dialog, int control, const std::wstring& text)
{
    const Window& found = ControlOf(dialog, control);
    if (!TakesText(found))
        Stop("the user types into control " + std::to_string(control) + ", which takes no text");
    return Type(found.handle, text);
}

bool HeadlessChoose(HWND dialog, int control, int index)
{
    const Window& found = ControlOf(dialog, control);
    if (!HasEntry(found, index))
        Stop("the user chooses entry " + std::to_string(index) + " of control " + std::to_string(control) +
             ", which does not have it");
    return Choose(found.handle, index);
}

bool HeadlessCommand(HWND window, int command)
{
    if (!FindWin(window)) Stop("a command to a window that does not exist");
    if (!HasCommand(window, static_cast<UINT>(command)))
        Stop("the menu has no command " + std::to_string(command));
    return ChooseCommand(window, static_cast<UINT>(command));
}

bool HeadlessKey(HWND window, WPARAM key, wchar_t character)
{
    if (!FindWin(window)) Stop("a key to a window that does not exist");
    return PressKey(window, key, character);
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
