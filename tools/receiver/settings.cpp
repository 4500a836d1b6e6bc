// SPDX-License-Identifier: MIT
#include "settings.h"

#include "common/numbers.h"

#include <algorithm>
#include <cassert>
#include <string_view>

namespace receiver
{

namespace
{

using namespace std::string_view_literals;

// Factory payloads of the set commands. Their lengths are the only accepted ones.
constexpr std::array<std::string_view, 12> FactoryPayloads = {
    // Advanced power: off, continuous fixes, 30 s between, errors "No Max", 20 % duty.
    "\x35\x00\x00\x1E\x00\x07\x07\x00\x00\x04\x00\x00"sv,
    // Start: no position, clock offset 96000 Hz, no time, 12 channels, snap start.
    "\x80\0\0\0\0\0\0\0\0\0\0\0\0\x00\x01\x77\x00\0\0\0\0\0\0\x0C\x00"sv,
    // DGPS source: SBAS, no beacon.
    "\x85\x01\0\0\0\0\0"sv,
    // Mode control: hold direction then clock, altitude hold automatic, 30 s degraded, 15 s dead reckoning.
    "\x88\0\0\x00\0\0\x00\x00\x00\x00\0\x1E\x0F\x00"sv,
    // DOP mask: automatic, limits 8.
    "\x89\x00\x08\x08\x08"sv,
    // DGPS mode: automatic, 30 s.
    "\x8A\x00\x1E"sv,
    // Elevation mask: 5.0 and 7.5 degrees.
    "\x8B\x00\x32\x00\x4B"sv,
    // Power mask: 28 and 28 dB-Hz.
    "\x8C\x1C\x1C"sv,
    // Static navigation off.
    "\x8F\x00"sv,
    // Trickle power: continuous (100 %), 200 ms.
    "\x97\0\0\x03\xE8\0\0\x00\xC8"sv,
    // Low power: 30 s off, 120 s search, push-to-fix each 1800 s, not adaptive.
    "\xA7\x00\x00\x75\x30\x00\x01\xD4\xC0\x00\x00\x07\x08\x00\x00"sv,
    // SBAS: automatic PRN, integrity, default time-out.
    "\xAA\x00\x01\x00\0\0"sv,
};

constexpr uint8_t Mid(std::string_view payload)
{
    return static_cast<uint8_t>(payload[0]);
}

struct RateRow {
    uint8_t mid, seconds;
};
constexpr RateRow FactorySirfRates[] = {
    {2, 1}, {4, 1}, {7, 1}, {9, 1}, {13, 30}, {18, 1}, {27, 5}, {41, 1}, {50, 5},
};
constexpr uint8_t FactoryNmeaSeconds[NmeaMessageCount] = {1, 1, 5, 5, 1, 1, 0, 0, 0, 0};

} // namespace

bool IsLineRate(uint32_t rate)
{
    return std::ranges::find(LineRates, rate) != LineRates.end();
}

std::optional<uint32_t> LineRateByName(std::string_view name)
{
    const auto rate = WholeNumberBetween(name, 0, 115200);
    if (!rate || !IsLineRate(static_cast<uint32_t>(*rate))) return std::nullopt;
    return static_cast<uint32_t>(*rate);
}

Settings FactorySettings(Protocol protocol, uint32_t lineRate)
{
    Settings settings;
    settings.protocol = protocol;
    settings.lineRate = lineRate;
    for (size_t i = 0; i < NmeaMessageCount; ++i) settings.nmea[i].seconds = FactoryNmeaSeconds[i];
    for (const RateRow& row : FactorySirfRates) settings.sirfSeconds[row.mid] = row.seconds;
    for (const std::string_view payload : FactoryPayloads) {
        settings.commands[Mid(payload)] = Bytes(payload.begin(), payload.end());
    }
    return settings;
}

size_t SetCommandLength(uint8_t mid)
{
    for (const std::string_view payload : FactoryPayloads) {
        if (Mid(payload) == mid) return payload.size();
    }
    return 0;
}

std::span<const uint8_t> Kept(const Settings& settings, uint8_t mid)
{
    const auto found = settings.commands.find(mid);
    assert(found != settings.commands.end());
    return found->second;
}

ModeControl ModeControlOf(const Settings& settings)
{
    const auto p = Kept(settings, 136);
    return {p[3], Get<int16_t>(p, 6), static_cast<AltitudeHold>(p[8]), p[9] == 1, p[11], p[12], p[13] != 0};
}

DopMask DopMaskOf(const Settings& settings)
{
    const auto p = Kept(settings, 137);
    return {static_cast<DopSelection>(p[1]), p[2], p[3], p[4]};
}

ElevationMask ElevationMaskOf(const Settings& settings)
{
    const auto p = Kept(settings, 139);
    return {Get<int16_t>(p, 1) * 0.1, Get<int16_t>(p, 3) * 0.1};
}

PowerMask PowerMaskOf(const Settings& settings)
{
    const auto p = Kept(settings, 140);
    return {p[1], p[2]};
}

Dgps DgpsOf(const Settings& settings)
{
    const auto source = Kept(settings, 133), mode = Kept(settings, 138);
    return {static_cast<DgpsSource>(source[1]), static_cast<DgpsUse>(mode[1]), mode[2],
            Get<uint32_t>(source, 2), source[6]};
}

bool StaticNavigationOf(const Settings& settings)
{
    return Kept(settings, 143)[1] != 0;
}

TricklePower TricklePowerOf(const Settings& settings)
{
    const auto p = Kept(settings, 151);
    return {Get<uint16_t>(p, 1) != 0, Get<uint16_t>(p, 3), Get<uint32_t>(p, 5)};
}

LowPower LowPowerOf(const Settings& settings)
{
    const auto p = Kept(settings, 167);
    return {Get<uint32_t>(p, 1), Get<uint32_t>(p, 5), Get<uint32_t>(p, 9), Get<uint16_t>(p, 13) != 0};
}

AdvancedPower AdvancedPowerOf(const Settings& settings)
{
    const auto p = Kept(settings, 53);
    return {p[1] != 0, p[2], p[3], p[5], p[6], p[7], p[8], p[9], p[10]};
}

Sbas SbasOf(const Settings& settings)
{
    const auto p = Kept(settings, 170);
    return {p[1], p[2] == 1, p[3]};
}

} // namespace receiver
