#include "app/static_navigation_switch.h"

#include "link/link_state.h"
#include "link/serial_port.h"
#include "nmea/command_encoder.h"
#include "settings/settings_store.h"
#include "sirf/frame_sender.h"
#include "sirf/switch_to_nmea_command.h"
#include "text/format.h"
#include "ui/error_boxes.h"
#include "ui/waiting.h"

namespace
{

// What a receiver needs to change its protocol, to take a command, and to change back.
constexpr uint32_t ToSirfMs = 5000, CommandMs = 3000, ToNmeaMs = 1000;

constexpr int32_t UnknownSirfRate = 4, UnknownNmeaRate = 5;

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

    char body[32];
    Format(body, "PSRF100,0,%u,8,1,0", BaudTable[sirfIndex]);
    NmeaSend(body);
    WaitServingSentMessages(ToSirfMs);
    PortSetBaud(BaudTable[sirfIndex]);

    const uint8_t staticNavigation[] = {143, on};
    SirfSend(staticNavigation, sizeof staticNavigation);
    WaitServingSentMessages(CommandMs);

    uint8_t seconds[NmeaRateCount];
    LoadNmeaRates(seconds);
    SendSwitchToNmea(DebugMessages::Unchanged, seconds, true, BaudTable[nmeaIndex]);
    WaitServingSentMessages(ToNmeaMs);
    PortSetBaud(BaudTable[nmeaIndex]);
    // The first frame in SiRF binary has stored that protocol's rate as the port's.
    SettingsSetDword(SettingBaudrate, nmeaIndex);
    return 0;
}
