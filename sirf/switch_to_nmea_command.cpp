// SPDX-License-Identifier: MIT
#include "sirf/switch_to_nmea_command.h"

#include "settings/settings_store.h"
#include "sirf/frame_sender.h"
#include "text/format.h"

constexpr uint8_t DefaultNmeaSeconds[NmeaRateCount] = {1, 1, 5, 5, 1, 1, 0, 0, 0, 0};

namespace
{

constexpr uint32_t SettingNameCapacity = 24;

void NameSetting(uint32_t sentence, wchar_t (&name)[SettingNameCapacity])
{
    Format(name, SettingNmeaInterval, sentence + 1);
}

} // namespace

void LoadNmeaRates(uint8_t (&seconds)[NmeaRateCount])
{
    for (uint32_t i = 0; i < NmeaRateCount; ++i) {
        wchar_t name[SettingNameCapacity];
        NameSetting(i, name);
        const int32_t stored = SettingsGetDword(name, -1);
        seconds[i] = stored >= 0 && stored <= 255 ? static_cast<uint8_t>(stored) : DefaultNmeaSeconds[i];
    }
}

void StoreNmeaRates(const uint8_t (&seconds)[NmeaRateCount])
{
    for (uint32_t i = 0; i < NmeaRateCount; ++i) {
        wchar_t name[SettingNameCapacity];
        NameSetting(i, name);
        SettingsSetDword(name, seconds[i]);
    }
}

void PackSwitchToNmea(DebugMessages debug, const uint8_t (&seconds)[NmeaRateCount], bool checksums,
                      uint32_t baud, uint8_t (&payload)[SwitchToNmeaLength])
{
    payload[0] = SwitchToNmeaId;
    payload[1] = static_cast<uint8_t>(debug);
    for (uint32_t i = 0; i < NmeaRateCount; ++i) {
        payload[2 + 2 * i] = seconds[i];
        payload[3 + 2 * i] = checksums;
    }
    payload[22] = static_cast<uint8_t>(baud >> 8);
    payload[23] = static_cast<uint8_t>(baud);
}

void SendSwitchToNmea(DebugMessages debug, const uint8_t (&seconds)[NmeaRateCount], bool checksums,
                      uint32_t baud)
{
    uint8_t payload[SwitchToNmeaLength];
    PackSwitchToNmea(debug, seconds, checksums, baud, payload);
    SirfSend(payload, sizeof payload);
}
