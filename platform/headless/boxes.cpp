// SPDX-License-Identifier: MIT
// Message boxes and the save-file dialog: they are recorded, and answered by the script.
#include "platform/headless/internal.h"

#include <algorithm>
#include <cwchar>
#include <utility>

using namespace memory;

namespace
{

std::vector<HeadlessBox> Boxes;
std::deque<int> Answers;
std::vector<std::function<void()>> StepsDuringBox;

std::vector<HeadlessSaveDialog> SaveDialogs;
std::wstring SavePath;
DWORD SaveFilter = 1;

// Buttons of each type of box, in their order; 0 ends the list.
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

// While a box is shown, messages are dispatched and the user's steps for this box run.
void RunSteps(HWND box, const std::vector<std::function<void()>>& steps)
{
    YieldTurn();
    PumpMessages();
    for (const auto& step : steps) {
        if (!FindWin(box)) break;
        {
            const InProgram program;
            step();
        }
        PumpMessages();
    }
}

} // namespace

namespace headless
{

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

namespace memory
{

int AwaitAnswer(HWND window, const Box& box)
{
    Boxes.push_back({box.text, box.caption, box.type, box.owner, &Me() == &UserInterfaceThread()});
    RunSteps(window, std::exchange(StepsDuringBox, {}));
    return FindWin(window) ? AnswerOf(box.type) : 0;
}

} // namespace memory

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

BOOL GetSaveFileNameW(OPENFILENAMEW* dialog)
{
    if (Fails(Call::GetSaveFileNameW)) return FALSE;
    if (dialog->hwndOwner && !NeedWindow(dialog->hwndOwner)) return FALSE;
    std::wstring filters;
    for (const wchar_t* filter = dialog->lpstrFilter; filter && *filter; filter += std::wcslen(filter) + 1)
        filters += (filters.empty() ? L"" : L"|") + std::wstring(filter);
    SaveDialogs.push_back({dialog->lpstrFile, filters, dialog->lpstrDefExt ? dialog->lpstrDefExt : L"",
                           dialog->nFilterIndex, dialog->Flags, dialog->nMaxFile, dialog->hwndOwner});
    const bool closed = ShowModal(dialog->hwndOwner, L"Save As", [](HWND window) { RunSteps(window, {}); });
    if (!closed || SavePath.empty()) return FALSE;
    if (SavePath.size() >= dialog->nMaxFile) {
        dialog->lpstrFile[0] = static_cast<wchar_t>(SavePath.size() + 1); // the length that it needs
        return FALSE;
    }
    std::copy_n(SavePath.c_str(), SavePath.size() + 1, dialog->lpstrFile);
    dialog->nFilterIndex = SaveFilter;
    const size_t name = SavePath.find_last_of(L'\\') + 1, dot = SavePath.find_last_of(L'.') + 1;
    dialog->nFileOffset = static_cast<WORD>(name);
    dialog->nFileExtension = static_cast<WORD>(dot > name ? dot : 0);
    return TRUE;
}
