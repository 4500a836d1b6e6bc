// Lines of the text page in SiRF mode. A line that no message writes keeps its text. Reader thread.
#pragma once

#include <cstdint>

// What the receiver says about the satellite on one of its channels.
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

void ShowSirfHdop(double hdop);
void ShowSirfPosition(double latitudeDegrees, double longitudeDegrees); // south and west negative
void ShowSirfGridPosition(double northingMetres, double eastingMetres);
void ShowSirfErrors(double horizontalMetres, double verticalMetres);
void ShowSirfAltitudeEllipsoid(double metres);
void ShowSirfAltitudeMsl(double metres);
void ShowSirfSpeed(double metresPerSecond);
void ShowSirfCourse(double degrees);
void ShowSirfMapDatum(uint8_t datum);
