// SPDX-License-Identifier: MIT
// The text page in NMEA mode: places of the lines that both protocols have (ui/fix_lines.h), and the lines
// that only NMEA has. Reader thread.
#pragma once

#include <cstdint>

enum NmeaLine : uint32_t {
    // Line 0 is date and time.
    NmeaLinePrn = 1,
    NmeaLineCarrierToNoise,
    NmeaLineElevation,
    NmeaLineFix,
    NmeaLineHdop,
    NmeaLineLatitude,
    NmeaLineLongitude,
    NmeaLineNorthing,
    NmeaLineEasting,
    NmeaLineVdop,
    NmeaLineAltitudeMsl,
    NmeaLineGeoidSeparation,
    NmeaLineSpeed,
    NmeaLineCourse,
};

// A column of the satellite table; prn 0: empty.
struct Satellite {
    uint8_t prn, elevationDegrees;
    uint32_t azimuthDegrees;
    uint8_t carrierToNoiseDbHz;
};
constexpr uint32_t SatelliteCount = 12;

void ShowSatellites(const Satellite (&satellites)[SatelliteCount]);

// Fix quality of GGA: 0 none, 1 fix, 2 DGPS fix, 6 dead reckoning; any other gives a blank line.
void ShowFix(int32_t quality, int32_t satellites, int32_t dgpsAgeSeconds);
void ShowVdop(float vdop);
void ShowGeoidSeparation(float metres);
