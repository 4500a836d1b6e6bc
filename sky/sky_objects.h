// SPDX-License-Identifier: MIT
// Places of the Sun, the Moon and the SBAS satellites in the sky of the receiver.
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/platform.h"

constexpr uint32_t SkyObjectCount = 13, SunRow = 0, MoonRow = 1;

// Degrees. The reader thread writes. Each angle also exists as a float for the sky plot of the user-interface
// thread, which may read the azimuth of one fix and the elevation of another.
struct SkyObject {
    int32_t id;       // number of an SBAS satellite
    double longitude; // east, of a geostationary satellite; 0 for Sun and Moon
    double elevation = -90;
    double azimuth = 0; // from north to east; satellites below the horizon keep their last place in view
    std::atomic<float> plottedElevation = -90.0f, plottedAzimuth = 0.0f;
};

// Half a degree is added to the angles of Sun and Moon, on purpose: cutting off the decimals then gives the
// nearest whole degree.
extern SkyObject SkyObjects[SkyObjectCount];

// Computes all places for a UTC date and time and a position (degrees, north and east positive; east may go
// up to 360). Shows the satellites in view in three lines of the open dialog (numbers, azimuths, elevations)
// and requests a repaint of the dialog. If it is not open, only the table changes. Reader thread, after a
// fix.
void UpdateSkyObjects(const SYSTEMTIME& time, double latitude, double longitude);

// Sets everything to its state at program start.
void ResetSkyObjects();
