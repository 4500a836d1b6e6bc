// SPDX-License-Identifier: MIT
// Message boxes.
#include "platform/memory/memory.h"

namespace memory
{

bool ShowModal(HWND owner, const std::wstring& caption, const std::function<void(HWND)>& during)
{
    const HWND handle =
        MakeWindow(Kind::Box, {nullptr, nullptr, L"#32770"}, caption, WS_POPUP | WS_CAPTION, owner, 0);
    Show(handle, true);
    const bool ownerWasEnabled = FindWin(owner) && !Enable(owner, false);
    during(handle);
    if (ownerWasEnabled) Enable(owner, true);
    const bool there = FindWin(handle) != nullptr;
    Destroy(handle);
    return there;
}

} // namespace memory

using namespace memory;

int MessageBoxW(HWND owner, const wchar_t* text, const wchar_t* caption, UINT type)
{
    if (Fails(Call::MessageBoxW)) return 0;
    if (owner && !NeedWindow(owner)) return 0;
    const Box box = {text ? text : L"", caption ? caption : L"", type, owner};
    int answer = 0;
    const bool closed =
        ShowModal(owner, box.caption, [&](HWND window) { answer = AwaitAnswer(window, box); });
    return closed ? answer : 0;
}
