// Message boxes and the save-file dialog: recorded, and answered as scripted.
#include "platform/headless/internal.h"

#include <algorithm>
#include <cwchar>
#include <utility>

namespace headless
{

namespace
{

std::vector<HeadlessBox> Boxes;
std::deque<int> Answers;
std::vector<std::function<void()>> StepsDuringBox;

std::vector<HeadlessSaveDialog> SaveDialogs;
std::wstring SavePath;
DWORD SaveFilter = 1;

// Buttons of the types of box, in their order; ended by 0.
constexpr int Buttons[][4] = {{1}, {1, 2}, {3, 4, 5}, {6, 7, 2}, {6, 7}, {4, 2}};
constexpr UINT BoxTypeMask = 0xF, DefaultButtonShift = 8, DefaultButtonMask = 3;

int AnswerOf(UINT type)
{
    const auto& buttons = Buttons[std::min<size_t>(type & BoxTypeMask, std::size(Buttons) - 1)];
    if (Answers.empty()) {
        const int chosen = buttons[type >> DefaultButtonShift & DefaultButtonMask];
        return chosen != 0 ? chosen : buttons[0];
    }
    const int answer = Answers.front();
    Answers.pop_front();
    if (std::find(std::begin(buttons), std::end(buttons), answer) == std::end(buttons) || answer == 0)
        Stop("a box is answered with a button that it does not have: " + std::to_string(answer));
    return answer;
}

// A modal window of the system's own: its owner is disabled while it is up, messages are dispatched, and the
// steps of the user that belong to it run. Returns false if it was destroyed meanwhile, with its owner.
bool ShowModal(HWND owner, const std::wstring& caption, std::vector<std::function<void()>> steps)
{
    const HWND handle =
        MakeWindow(Kind::Box, {nullptr, nullptr, L"#32770"}, caption, WS_POPUP | WS_CAPTION, owner, 0);
    Show(handle, true);
    const bool ownerWasEnabled = FindWin(owner) && !Enable(owner, false);
    YieldTurn();
    PumpMessages();
    for (const auto& step : steps) {
        if (!FindWin(handle)) break;
        {
            const InProgram program;
            step();
        }
        PumpMessages();
    }
    if (ownerWasEnabled) Enable(owner, true);
    const bool there = FindWin(handle) != nullptr;
    Destroy(handle);
    return there;
}

} // namespace

void ResetBoxes()
{
    Boxes.clear();
    Answers.clear();
    StepsDuringBox.clear();
    SaveDialogs.clear();
    SavePath.clear();
    SaveFilter = 1;
}

} // namespace headless

using namespace headless;

const std::vector<HeadlessBox>& HeadlessBoxes()
{
    return Boxes;
}

void HeadlessClearBoxes()
{
    Boxes.clear();
}

void HeadlessAnswerBox(int button)
{
    Answers.push_back(button);
}

void HeadlessDuringBox(std::function<void()> step)
{
    StepsDuringBox.push_back(std::move(step));
}

void HeadlessAnswerSaveDialog(const std::wstring& path, DWORD filterIndex)
{
    SavePath = path;
    SaveFilter = filterIndex;
}

const std::vector<HeadlessSaveDialog>& HeadlessSaveDialogs()
{
    return SaveDialogs;
}

void HeadlessClearSaveDialogs()
{
    SaveDialogs.clear();
}

int MessageBoxW(HWND owner, const wchar_t* text, const wchar_t* caption, UINT type)
{
    if (Fails(Call::MessageBoxW)) return 0;
    if (owner && !NeedWindow(owner)) return 0;
    Boxes.push_back(
        {text ? text : L"", caption ? caption : L"", type, owner, &Me() == &UserInterfaceThread()});
    const bool closed = ShowModal(owner, caption ? caption : L"", std::exchange(StepsDuringBox, {}));
    return closed ? AnswerOf(type) : 0;
}

BOOL GetSaveFileNameW(OPENFILENAMEW* dialog)
{
    if (Fails(Call::GetSaveFileNameW)) return FALSE;
    if (dialog->hwndOwner && !NeedWindow(dialog->hwndOwner)) return FALSE;
    std::wstring filters;
    for (const wchar_t* filter = dialog->lpstrFilter; filter && *filter; filter += std::wcslen(filter) + 1)
        filters += (filters.empty() ? L"" : L"|") + std::wstring(filter);
    SaveDialogs.push_back({dialog->lpstrFile, filters, dialog->lpstrDefExt ? dialog->lpstrDefExt : L"",
                           dialog->nFilterIndex, dialog->Flags, dialog->nMaxFile, dialog->hwndOwner});
    if (!ShowModal(dialog->hwndOwner, L"Save As", {}) || SavePath.empty()) return FALSE;
    if (SavePath.size() >= dialog->nMaxFile) return FALSE;
    std::copy_n(SavePath.c_str(), SavePath.size() + 1, dialog->lpstrFile);
    dialog->nFilterIndex = SaveFilter;
    const size_t name = SavePath.find_last_of(L'\\') + 1, dot = SavePath.find_last_of(L'.') + 1;
    dialog->nFileOffset = static_cast<WORD>(name);
    dialog->nFileExtension = static_cast<WORD>(dot > name ? dot : 0);
    return TRUE;
}
