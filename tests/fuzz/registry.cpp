// SPDX-License-Identifier: MIT
// Stored settings of any kind and value, which start-up, chart and dialogs read.
#include "graph/channels.h"
#include "resources/resource_ids.h"
#include "tests/fuzz/input.h"
#include "tests/support/fresh_program.h"
#include "tests/support/settings_key.h"
#include "tests/support/whole_program.h"

namespace
{

constexpr const wchar_t* Names[] = {
    L"CommPortIdx", L"BaudrateIdx",  L"NmeaBaudrateIdx", L"SirfBaudrateIdx",
    L"Lines",       L"TimeScaleIdx", L"NmeaIntervalIdx"}; // the last is followed by a number
constexpr const wchar_t* Suffixes[] = {L"ValueZero", L"ValueMin", L"ValueMax", L"PixelMin",
                                       L"PixelMax",  L"Color",    L"Use"};
constexpr const wchar_t* CommandLines[] = {
    L"", L"", L"", L"StaticNavigationOn", L"StaticNavigationOff", L"Anything"};

// Everything that the chart is made of, in one second's messages.
constexpr std::string_view Messages =
    "$GPGGA,161229.487,3723.2475,N,12158.3416,W,1,07,1.0,9.0,M,,,,0000*18\r\n"
    "$GPGSA,A,3,07,02,26,27,09,04,15,,,,,,1.8,1.0,1.5*33\r\n"
    "$GPRMC,161229.487,A,3723.2475,N,12158.3416,W,0.13,309.62,120598,,*10\r\n"
    "$GPRMC,161331.487,A,3723.2475,N,12158.3416,W,0.13,309.62,120598,,*12\r\n";

std::wstring SettingName(Input& input)
{
    constexpr size_t Count = std::size(Names), Settings = Count + ChannelCount;
    const size_t chosen = input.Below(Settings);
    if (chosen >= Count)
        return std::wstring(GraphChannel[chosen - Count].Name) + Suffixes[input.Below(std::size(Suffixes))];
    if (chosen != Count - 1) return Names[chosen];
    const size_t number = 1 + input.Below(10);
    return Names[chosen] + std::wstring(number < 10 ? L"0" : L"") + std::to_wstring(number);
}

void StoreOne(Input& input)
{
    const std::wstring name = SettingName(input);
    const uint8_t kind = input.Byte();
    const HKEY root = kind & 1 ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
    if (kind & 2)
        HeadlessRegistrySetDword(root, SettingsKey, name.c_str(), input.Byte()); // what most settings hold
    else if (kind & 4)
        HeadlessRegistrySetBytes(root, SettingsKey, name.c_str(), kind >> 5, input.Line());
    else
        HeadlessRegistrySetDword(root, SettingsKey, name.c_str(), input.Raw<uint32_t>());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    Input input(data, size);
    const uint8_t is = input.Byte(), width = input.Byte(), height = input.Byte();
    const wchar_t* const commandLine = CommandLines[input.Below(std::size(CommandLines))];

    StartAfresh();
    HeadlessSetScreenFont(2, 4); // painting takes time
    HeadlessSetClientSize(width, height + 26);
    if (is & 1) HeadlessSetPlatformType(L"SmartPhone");
    if (is & 2) HeadlessRegistryRefuseWrites(HKEY_LOCAL_MACHINE, true);
    for (uint32_t port = 0; port < 10; port += is & 4 ? 1 : 3)
        HeadlessReceive(HeadlessAddPort(port), Messages, is & 8 ? 0 : 2000);
    while (!input.Ended()) StoreOne(input);
    RunWholeProgram(commandLine, [&] {
        ShowChart();
        Receive(Messages);
        for (const DialogEntry& entry : Dialogs) {
            const bool reads = entry.command == COMMAND_GRAPH ||
                               entry.command == DIALOG_NMEA_SET_SERIAL_PORT ||
                               entry.command == DIALOG_SIRF_SWITCH_TO_NMEA;
            if (reads) InDialog(entry, [&](HWND dialog) { ClickEveryButton(dialog, entry); });
        }
        InDialog(Dialogs[1], [](HWND) {}); // Communication, which shows port and rate
        Receive(Messages);
    });
    return 0;
}
