// SPDX-License-Identifier: MIT
// The byte path with each dialog open: the first byte chooses the dialog, the second further conditions, all
// others come from the receiver.
#include "graph/surface.h"
#include "link/receiver_log.h"
#include "tests/fuzz/input.h"
#include "tests/support/fresh_program.h"
#include "tests/support/settings_key.h"
#include "tests/support/whole_program.h"

namespace
{

enum Circumstance : uint8_t {
    Keypad = 1,
    PortOpen = 2,
    Logging = 4,
    DiskSoonFull = 8,
    ChartShown = 16,
    ShortWrites = 32,
    AllButtons = 64,   // pressed when all has been received
    DialogFirst = 128, // open before the first byte; else before the second half
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    Input input(data, size);
    const size_t chosen = input.Below(DialogCount + 1); // or none at all
    const uint8_t is = input.Byte();
    std::string bytes = input.Rest();

    StartAfresh();
    HeadlessSetScreenFont(2, 4); // painting takes time
    HeadlessSetClientSize(80, 120);
    HeadlessRegistrySetDword(HKEY_LOCAL_MACHINE, SettingsKey, L"CommPortIdx", 3);
    if (is & Keypad) HeadlessSetPlatformType(L"SmartPhone");
    if (is & PortOpen) OpenPortWithoutReader();
    if ((is & PortOpen) && (is & ShortWrites)) HeadlessGetPort(3).acceptBytes = 5;
    if (is & DiskSoonFull) HeadlessDiskFullAfter(100);
    RunWholeProgram(L"", [&] {
        if (is & Logging) {
            HeadlessAnswerSaveDialog(L"\\a.txt", 1);
            LogOpen();
        }
        if (is & ChartShown) ShowChart();
        if (!(is & DialogFirst)) {
            Receive(std::string_view(bytes).substr(0, bytes.size() / 2));
            bytes.erase(0, bytes.size() / 2);
        }
        if (chosen == DialogCount) {
            Receive(bytes);
            return;
        }
        InDialog(Dialogs[chosen], [&](HWND dialog) {
            Receive(bytes);
            if (is & AllButtons) ClickEveryButton(dialog, Dialogs[chosen]);
        });
    });
    return 0;
}
