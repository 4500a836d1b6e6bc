// SPDX-License-Identifier: MIT
#pragma once
// The satellites: a GPS constellation with realistic motion, and the geostationary SBAS satellites.

#include "geodesy.h"
#include "gps_time.h"

#include <cstdint>
#include <span>
#include <vector>

namespace receiver
{

struct Satellite {
    uint8_t sv = 0; // 1..32 GPS, 120..138 SBAS
    LookAngles look;
};

constexpr uint8_t FirstSbas = 120, LastSbas = 138;
inline bool IsSbas(uint8_t sv)
{
    return sv >= FirstSbas;
}

struct SbasSatellite {
    uint8_t sv;
    double longitudeDeg; // east positive
};
std::span<const SbasSatellite> SbasSatellites();

// All satellites above the horizon, highest first. `seed` rotates the constellation.
std::vector<Satellite> VisibleSatellites(const Geodetic& from, GpsTime time, uint64_t seed);

} // namespace receiver
