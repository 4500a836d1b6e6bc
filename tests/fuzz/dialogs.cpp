// SPDX-License-Identifier: MIT
// Texts typed into the fields of a dialog, entries chosen, buttons pressed, answers received in between; at
// the end every button is pressed once, also the one that sends.
#include <algorithm>

#include "link/link_state.h"
#include "tests/fuzz/input.h"
#include "tests/support/fresh_program.h"
#include "tests/support/settings_key.h"
#include "tests/support/whole_program.h"

namespace
{

constexpr DWORD ComboType = 3, DropDownList = 3;
constexpr uint8_t FromTheReceiver = 0xFE, TimePasses = 0xFF;

COLORREF ChosenColor;

BOOL WINAPI ChooseScriptedColor(CHOOSECOLORW* request)
{
    request->rgbResult = ChosenColor;
    return ChosenColor != 0;
}

// Any entry of the list, if it has one.
void Choose(HWND dialog, int control, Input& input)
{
    const size_t count = HeadlessItems(dialog, control).size();
    const size_t index = input.Below(256);
    if (count != 0) HeadlessChoose(dialog, control, static_cast<int>(index % count));
}

void Use(HWND dialog, const HeadlessTemplateControl& control, Input& input)
{
    if (control.className == L"EDIT") {
        HeadlessType(dialog, control.id, input.Text());
    } else if (control.className == L"COMBOBOX") {
        if ((control.style & ComboType) != DropDownList && input.Byte() % 2)
            HeadlessType(dialog, control.id, input.Text());
        else
            Choose(dialog, control.id, input);
    } else if (control.className == L"LISTBOX") {
        Choose(dialog, control.id, input);
    } else if (!Closes(control.id) && !Searches(control.id)) {
        HeadlessClick(dialog, control.id);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    Input input(data, size);
    const DialogEntry& entry = Dialogs[input.Below(DialogCount)];
    const uint8_t is = input.Byte();

    StartAfresh();
    HeadlessSetScreenFont(2, 4); // painting takes time
    HeadlessSetClientSize(80, 120);
    HeadlessRegistrySetDword(HKEY_LOCAL_MACHINE, SettingsKey, L"CommPortIdx", 3);
    if (is & 1) HeadlessSetPlatformType(L"SmartPhone");
    if (is & 2)
        OpenPortWithoutReader();
    else
        HeadlessAddPort(3);
    ChosenColor = is;
    HeadlessAddExport(COLOR_LIBRARY, COLOR_EXPORT,
                      reinterpret_cast<FARPROC>(reinterpret_cast<void*>(ChooseScriptedColor)));
    RunWholeProgram(L"", [&] {
        NmeaRecognised.store((is & 4) != 0);
        SirfRecognised.store((is & 8) != 0);
        InDialog(entry, [&](HWND dialog) {
            const std::vector<HeadlessTemplateControl> controls = ControlsOf(entry);
            while (!input.Ended() && HeadlessTopDialog() == dialog) {
                const uint8_t what = input.Byte();
                if (what == TimePasses)
                    HeadlessPass(input.Byte() * 10u);
                else if (what == FromTheReceiver)
                    Receive(input.Line() + "\n");
                else if (!controls.empty())
                    Use(dialog, controls[what % controls.size()], input);
            }
            ClickEveryButton(dialog, entry);
        });
    });
    return 0;
}
