// SPDX-License-Identifier: MIT
#include "graph/latest_fix.h"

#include <limits>

namespace
{

constexpr double NotKnown = std::numeric_limits<double>::quiet_NaN();

constexpr FixReport Nothing = {.LatitudeDegrees = NotKnown,
                               .LongitudeDegrees = NotKnown,
                               .AltitudeMslMetres = NotKnown,
                               .AltitudeEllipsoidMetres = NotKnown,
                               .GeoidSeparationMetres = NotKnown,
                               .SpeedMetresPerSecond = NotKnown,
                               .CourseDegrees = NotKnown,
                               .Hdop = NotKnown,
                               .Vdop = NotKnown,
                               .HorizontalErrorMetres = NotKnown,
                               .VerticalErrorMetres = NotKnown,
                               .SatellitesInFix = -1,
                               .Mode = FixMode::Unknown,
                               .HasTimeOfDay = false,
                               .Year = 0,
                               .Month = 0,
                               .Day = 0,
                               .DatedSecondOfDay = 0,
                               .InView = {},
                               .InViewCount = 0,
                               .InViewReports = 0};

uint32_t DaysInMonth(uint32_t year, uint32_t month)
{
    constexpr uint8_t Days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leapYear = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return month == 2 && leapYear ? 29 : Days[month - 1];
}

} // namespace

FixReport LatestFix = Nothing;

void BeginFixReport(FixMode mode)
{
    LatestFix.LatitudeDegrees = LatestFix.LongitudeDegrees = NotKnown;
    LatestFix.AltitudeMslMetres = LatestFix.AltitudeEllipsoidMetres = NotKnown;
    LatestFix.GeoidSeparationMetres = LatestFix.Hdop = NotKnown;
    LatestFix.SatellitesInFix = -1;
    LatestFix.Mode = mode;
    LatestFix.HasTimeOfDay = false;
    if (mode != FixMode::None) return;
    // Speed and course of the last fix do not hold any more when the receiver has no fix.
    LatestFix.SpeedMetresPerSecond = LatestFix.CourseDegrees = LatestFix.Vdop = NotKnown;
    LatestFix.HorizontalErrorMetres = LatestFix.VerticalErrorMetres = NotKnown;
}

void ReportDate(uint32_t year, uint32_t month, uint32_t day, uint32_t secondOfDay)
{
    if (year < 1980 || year > 9999 || month < 1 || month > 12) return;
    if (day < 1 || day > DaysInMonth(year, month)) return;
    LatestFix.Year = static_cast<uint16_t>(year);
    LatestFix.Month = static_cast<uint16_t>(month);
    LatestFix.Day = static_cast<uint16_t>(day);
    LatestFix.DatedSecondOfDay = static_cast<int32_t>(secondOfDay);
}

void BeginSatelliteReport()
{
    LatestFix.InViewCount = 0;
    ++LatestFix.InViewReports;
}

void ReportSatellite(const SatelliteInView& satellite)
{
    if (satellite.Number == 0 || LatestFix.InViewCount == MaxSatellitesInView) return;
    LatestFix.InView[LatestFix.InViewCount++] = satellite;
}

void ResetLatestFix()
{
    LatestFix = Nothing;
}
