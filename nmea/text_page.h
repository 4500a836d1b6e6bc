// Lines of the text page in NMEA mode. Reader thread.
#pragma once

#include <cstdint>

// One satellite slot of the view; 0 in prn: none.
struct Satellite {
    uint8_t prn, elevationDegrees;
    uint32_t azimuthDegrees;
    uint8_t carrierToNoiseDbHz;
};
constexpr uint32_t SatelliteCount = 12;

void ShowSatellites(const Satellite (&satellites)[SatelliteCount]);

// Fix quality of GGA: 0 none, 1 fix, 2 DGPS fix, 6 dead reckoning; any other gives a blank line.
void ShowFix(int32_t quality, int32_t satellites, int32_t dgpsAgeSeconds);
void ShowHdop(float hdop);
void ShowVdop(float vdop);
void ShowLatitude(double degrees, wchar_t hemisphere); // as received: without a sign
void ShowLongitude(double degrees, wchar_t hemisphere);
void ShowNorthing(double metres);
void ShowEasting(double metres);
void ShowAltitudeMsl(float metres);
void ShowGeoidSeparation(float metres);
void ShowSpeed(float metresPerSecond);
void ShowCourse(float degrees);
