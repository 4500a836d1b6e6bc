// SPDX-License-Identifier: MIT
#pragma once
// WGS-84 positions: geodetic, Earth-centred, and local (east, north, up).

#include <numbers>

namespace receiver
{

constexpr double DegToRad = std::numbers::pi / 180.0;

constexpr double MostHeightM = 20000.0; // and the least is its negative

struct Geodetic {
    double latitudeDeg = 0, longitudeDeg = 0; // north and east positive, longitude in [-180, 180)
    double heightM = 0;                       // above the ellipsoid
};

struct Vector3 { // metres, or metres per second
    double x = 0, y = 0, z = 0;
};

struct Local { // metres, or metres per second, from a place on the ground
    double east = 0, north = 0, up = 0;
};

struct LookAngles {
    double azimuthDeg = 0;   // [0, 360), clockwise from north
    double elevationDeg = 0; // [-90, 90]
    double distanceM = 0;
};

Vector3 ToEcef(const Geodetic& place);
Vector3 EnuToEcef(const Geodetic& at, const Local& direction); // only rotates, adds no position
Geodetic Moved(const Geodetic& from, const Local& by);         // for distances of a few kilometres
Local Offset(const Geodetic& from, const Geodetic& to);
// The same place in the datum with this code: 178..181 are the Tokyo ones, anything else is WGS-84.
Geodetic InDatum(const Geodetic& wgs84, int datum);
LookAngles Look(const Geodetic& from, const Vector3& targetEcef);

} // namespace receiver
