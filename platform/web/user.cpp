// SPDX-License-Identifier: MIT
// The user: acts that the page reports are kept until the program waits for input.
#include "platform/web/web.h"

#include "messages.h"

#include <optional>

namespace memory
{

namespace
{

std::deque<std::function<void()>> Acts;

struct OpenBox {
    HWND window;
    int answer; // 0: none yet
};
std::vector<OpenBox> Boxes; // one may be above another

std::optional<COLORREF> PickedColour; // by the user, in the browser's own chooser

constexpr COLORREF Turned(COLORREF colour) // converts 0xRRGGBB to the program's order of bytes, and back
{
    return (colour & 0xFF) << 16 | (colour & 0xFF00) | (colour >> 16 & 0xFF);
}

// The program's colour chooser: the user has chosen before it opens.
BOOL ChooseColour(CHOOSECOLORW* request)
{
    if (!PickedColour) return FALSE;
    request->rgbResult = Turned(*PickedColour);
    PickedColour.reset();
    return TRUE;
}

} // namespace

bool RunUserStep()
{
    if (Acts.empty()) return false;
    const std::function<void()> act = std::move(Acts.front());
    Acts.pop_front();
    act();
    return true;
}

uint64_t UserStepTime()
{
    return Acts.empty() ? Never : Now();
}

int AwaitAnswer(HWND window, const Box& box)
{
    // Buttons of the types of box, in their order, and their names.
    static constexpr int Buttons[][4] = {{1}, {1, 2}, {3, 4, 5}, {6, 7, 2}, {6, 7}, {4, 2}};
    static constexpr const wchar_t* Names[] = {L"",      L"OK",     L"Cancel", L"Abort",
                                               L"Retry", L"Ignore", L"Yes",    L"No"};
    constexpr UINT TypeMask = 0xF, DefaultShift = 8, DefaultMask = 3, IconMask = 0x70;
    const auto& buttons = Buttons[std::min<size_t>(box.type & TypeMask, std::size(Buttons) - 1)];
    std::vector<std::wstring> captions;
    for (const int button : buttons)
        if (button != 0) captions.push_back(std::to_wstring(button) + L" " + Names[button]);
    const int wanted = buttons[box.type >> DefaultShift & DefaultMask];
    const int usual = wanted != 0 ? wanted : buttons[0];

    web::UpdateView(); // the page knows the owner before the box
    web::ToPageBox(static_cast<int32_t>(reinterpret_cast<intptr_t>(window)),
                   static_cast<int32_t>(reinterpret_cast<intptr_t>(box.owner)), box.caption, box.text,
                   captions, usual, static_cast<int32_t>(box.type & IconMask));
    Boxes.push_back({window, 0});
    const auto answered = [&] {
        for (const OpenBox& open : Boxes)
            if (open.window == window) return open.answer != 0 || !FindWin(window);
        return true;
    };
    MSG message;
    for (;;) {
        const Next next = NextMessage(message, nullptr, 0, 0, answered, Idle::Wait);
        if (next == Next::Stopped) break;
        if (next == Next::Quit) { // for the outer loop
            Me().quit = true;
            Me().quitCode = static_cast<int>(message.wParam);
            break;
        }
        Translate(message);
        Dispatch(message);
    }
    web::ToPageGone(static_cast<int32_t>(reinterpret_cast<intptr_t>(window)));
    int answer = usual;
    std::erase_if(Boxes, [&](const OpenBox& open) {
        if (open.window == window && open.answer != 0) answer = open.answer;
        return open.window == window;
    });
    return answer;
}

} // namespace memory

namespace web
{

using namespace memory;

namespace
{

HWND Handle(int32_t window)
{
    return reinterpret_cast<HWND>(static_cast<intptr_t>(window));
}

} // namespace

void Enqueue(std::function<void()> act)
{
    Acts.push_back(std::move(act));
    Wake(UserInterfaceThread(), WakeInput);
}

void OfferColourChooser()
{
    AddExport(COLOR_LIBRARY, COLOR_EXPORT, reinterpret_cast<FARPROC>(ChooseColour));
}

void OnPicked(int32_t colour)
{
    Enqueue([=] { PickedColour = static_cast<COLORREF>(colour); });
}

void OnCommand(int32_t window, int32_t command)
{
    Enqueue([=] { ChooseCommand(Handle(window), static_cast<UINT>(command)); });
}

void OnClick(int32_t window)
{
    Enqueue([=] {
        ForgetChecks(Handle(window));
        Press(Handle(window));
    });
}

void OnType(int32_t window, const std::wstring& text)
{
    ShownText(Handle(window), text);
    Enqueue([=] { Type(Handle(window), text); });
}

void OnChoose(int32_t window, int32_t index)
{
    ShownSelection(Handle(window), index);
    Enqueue([=] { Choose(Handle(window), index); });
}

void OnKey(int32_t window, int32_t key, int32_t character)
{
    Enqueue([=] {
        PressKey(Handle(window), static_cast<WPARAM>(key), static_cast<wchar_t>(character));
        // The chart appears with the next fix; a log that has ended has no further fix.
        const Window* found = FindWin(Handle(window));
        if (found && found->kind == Kind::Plain && !found->parent)
            InvalidateRect(Handle(window), nullptr, FALSE);
    });
}

void OnFocused(int32_t window)
{
    ShownFocus(Handle(window));
    Enqueue([=] {
        const Window* found = FindWin(Handle(window));
        if (found && IsUsable(*found)) Focus(Handle(window));
    });
}

void OnClose(int32_t window)
{
    Enqueue([=] {
        const Window* found = FindWin(Handle(window));
        if (found && IsUsable(*found)) Send(Handle(window), WM_CLOSE, 0, 0);
    });
}

void OnAnswer(int32_t window, int32_t button)
{
    for (OpenBox& open : Boxes)
        if (open.window == Handle(window)) open.answer = button;
    Wake(UserInterfaceThread(), WakeInput);
}

void OnSize(int32_t width, int32_t height)
{
    SetMainClientSize({width, height + CommandBarHeight});
}

} // namespace web
