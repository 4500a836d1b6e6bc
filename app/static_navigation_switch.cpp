// SPDX-License-Identifier: MIT
#include "app/static_navigation_switch.h"

#include "link/link_state.h"
#include "link/serial_port.h"
#include "nmea/command_encoder.h"
#include "settings/settings_store.h"
#include "sirf/frame_sender.h"
#include "sirf/message_decoder.h"
#include "sirf/switch_to_nmea_command.h"
#include "text/format.h"
#include "ui/active_dialog.h"
#include "ui/error_boxes.h"
#include "ui/waiting.h"

namespace
{

// Times that a receiver needs to change its protocol, to carry out a command, and to change back.
constexpr uint32_t ToSirfMs = 5000, CommandMs = 3000, ToNmeaMs = 1000;

constexpr int32_t Closed = 1, UnknownSirfRate = 4, UnknownNmeaRate = 5;

// Waits. Returns false immediately when the program's window is closed meanwhile.
bool WaitWithWindow(HWND window, uint32_t milliseconds)
{
    constexpr uint32_t StepMs = 50;
    for (uint32_t waited = 0; waited < milliseconds && MainWindow.load() == window; waited += StepMs)
        WaitServingSentMessages(StepMs);
    return MainWindow.load() == window;
}

} // namespace

int32_t SwitchStaticNavigation(bool on)
{
    const int32_t sirfIndex = SettingsGetDword(SettingSirfBaudrate, -1);
    if (!IsBaudIndex(sirfIndex)) {
        InfoBox(L"CmdLine", L"Unknown baudrate for switching to SiRF");
        return UnknownSirfRate;
    }
    const int32_t nmeaIndex = SettingsGetDword(SettingNmeaBaudrate, -1);
    if (!IsBaudIndex(nmeaIndex)) {
        InfoBox(L"CmdLine", L"Unknown baudrate for switching to NMEA");
        return UnknownNmeaRate;
    }

    HWND window = MainWindow.load();
    char body[32];
    Format(body, "PSRF100,0,%u,8,1,0", BaudTable[sirfIndex]);
    NmeaSend(body);
    if (!WaitWithWindow(window, ToSirfMs)) return Closed;
    PortSetBaud(BaudTable[sirfIndex]);

    const uint32_t messagesBefore = SirfMessageCount.load();
    const uint8_t staticNavigation[] = {143, on};
    SirfSend(staticNavigation, sizeof staticNavigation);
    if (!WaitWithWindow(window, CommandMs)) return Closed;
    const bool speaksSirf = SirfMessageCount.load() != messagesBefore;

    uint8_t seconds[NmeaRateCount];
    LoadNmeaRates(seconds);
    LastRefusedCommand.store(0);
    SendSwitchToNmea(DebugMessages::Unchanged, seconds, true, BaudTable[nmeaIndex]);
    if (!WaitWithWindow(window, ToNmeaMs)) return Closed;
    PortSetBaud(BaudTable[nmeaIndex]);
    // The first message in SiRF binary has stored that protocol's rate as the port's rate. Without such a
    // message the stored rate is still the receiver's, and after a refusal the stored rate is again the
    // receiver's.
    if (speaksSirf && LastRefusedCommand.load() != SwitchToNmeaId)
        SettingsSetDword(SettingBaudrate, nmeaIndex);
    return 0;
}
