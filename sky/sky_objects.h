// SPDX-License-Identifier: MIT
// Where the Sun, the Moon and the SBAS satellites stand in the sky of the receiver.
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/platform.h"

constexpr uint32_t SkyObjectCount = 13, SunRow = 0, MoonRow = 1;

// Degrees. The reader thread writes; each place has a float beside it for the sky plot of the user-interface
// thread, which may see an azimuth and an elevation of two fixes together.
struct SkyObject {
    int32_t id;       // number of an SBAS satellite
    double longitude; // east, of a geostationary satellite; 0 for Sun and Moon
    double elevation = -90;
    double azimuth = 0; // from north over east; of satellites that have set, where they last were in view
    std::atomic<float> plottedElevation = -90.0f, plottedAzimuth = 0.0f;
};

// Sun and Moon stand half a degree too high and too far, on purpose: cutting off the decimals gives the
// nearest whole degree.
extern SkyObject SkyObjects[SkyObjectCount];

// Computes all places for a UTC date and time and a position (degrees, north and east positive; east may run
// to 360), shows the satellites in view in three lines of the open dialog, numbers, azimuths and elevations,
// and has it painted again. Without a dialog only the table changes. Reader thread, after a fix.
void UpdateSkyObjects(const SYSTEMTIME& time, double latitude, double longitude);

// Everything as when the program starts.
void ResetSkyObjects();
