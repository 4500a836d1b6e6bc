// SPDX-License-Identifier: MIT
// The text page in SiRF mode: places of the lines that both protocols have (ui/fix_lines.h), and the lines
// that only SiRF binary has. A line that no message writes keeps its text. Reader thread.
#pragma once

#include <cstdint>

enum SirfLine : uint32_t {
    // Line 0 is date and time.
    SirfLineSv = 1,
    SirfLineCarrierToNoise,
    SirfLineState,
    SirfLineElevation,
    SirfLineFix,
    SirfLineHdop,
    SirfLineHorizontalError,
    SirfLineLatitude,
    SirfLineLongitude,
    SirfLineNorthing,
    SirfLineEasting,
    SirfLineVerticalError,
    SirfLineAltitudeEllipsoid,
    SirfLineAltitudeMsl,
    SirfLineSpeed,
    SirfLineCourse,
    SirfLineMapDatum,
};

// Report about the satellite on one of the receiver's channels.
struct TrackedSatellite {
    uint8_t svId;
    uint8_t elevationDegrees;
    uint8_t meanCarrierToNoiseDbHz;
    uint16_t azimuthDegrees;
    uint16_t state; // bit set
};
constexpr uint32_t MaxShownChannels = 12;

// The four lines of the channel table; `count` is at most MaxShownChannels.
void ShowSirfChannels(const TrackedSatellite* satellites, uint32_t count);

// Fix type of a navigation message, 0 to 7.
void ShowSirfFix(uint32_t fixType, uint32_t satellites, bool differential);

void ShowSirfPosition(double latitudeDegrees, double longitudeDegrees); // south and west negative
void ShowSirfErrors(double horizontalMetres, double verticalMetres);
void ShowSirfAltitudeEllipsoid(double metres);
void ShowSirfMapDatum(uint8_t datum);
