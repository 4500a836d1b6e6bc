// SPDX-License-Identifier: MIT
#pragma once
// GPS time (weeks and milliseconds since 6 January 1980, no leap seconds) and UTC dates.

#include <cstdint>
#include <optional>
#include <string_view>

namespace receiver
{

constexpr int64_t MsPerWeek = 604800000;

// Satellites send the week modulo 1024.
constexpr int32_t WeeksPerEpoch = 1024, DaysPerEpoch = WeeksPerEpoch * 7;

struct GpsTime {
    int64_t ms = 0; // since 1980-01-06 00:00:00, at least 0

    int32_t Week() const { return static_cast<int32_t>(ms / MsPerWeek); } // not reduced modulo 1024
    uint32_t TowMs() const { return static_cast<uint32_t>(ms % MsPerWeek); }
    uint32_t TowCs() const { return TowMs() / 10; } // 1/100 s, the unit of most messages
    double Seconds() const { return static_cast<double>(ms) * 0.001; }
};

struct UtcDate {
    int32_t year = 1980, month = 1, day = 6, hour = 0, minute = 0, second = 0, ms = 0;
};

// Seconds by which GPS time is ahead of UTC at this moment.
int32_t LeapSeconds(GpsTime time);

UtcDate ToUtc(GpsTime time);
GpsTime FromUtc(const UtcDate& date);

// The same time of day, this number of days earlier.
UtcDate DaysEarlier(const UtcDate& date, int32_t days);

// The number of whole epochs by which a firmware's date is too early, if the firmware assumes a week from
// pivotWeek to pivotWeek + 1023; negative if the date is too late.
int32_t EpochsBehind(int32_t week, int32_t pivotWeek);

GpsTime TimeOfThisMachine();

// Reads "YYYY-MM-DDThh:mm:ss" from 1980-01-06 on; no value for any other text.
std::optional<GpsTime> ParseDate(std::string_view text);

} // namespace receiver
