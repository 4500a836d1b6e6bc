// SPDX-License-Identifier: MIT
// Mathematics of the sky: parts of numbers, directions and their rotation, calendar and sidereal time. Angles
// in radians; any finite input gives finite results.
#pragma once

#include <cstdint>

#include "sky/angles.h"

constexpr double TwoPi = 6.283185307179586;

// Seconds of arc to turns.
constexpr double TurnsPerArcSecond = 7.716049382716049e-7;

// ---- Parts of numbers ---------------------------------------------------------------------------------

double Frac(double x);                   // the part above the next lower whole number: 0 <= Frac < 1
double Modulo(double x, double divisor); // the part above the next lower multiple

// ---- Directions ---------------------------------------------------------------------------------------

struct Vector3 {
    double x, y, z;
};

// A direction given by its angle around the z axis, from x towards y, and its angle above the x-y plane.
struct PolarAngles {
    double azimuth, elevation;
};

Vector3 UnitVector(const PolarAngles& direction);
PolarAngles AnglesOf(const Vector3& v); // azimuth -pi..pi

// The vector in axes that have been turned about one of them.
Vector3 RotateX(double angle, const Vector3& v);
Vector3 RotateY(double angle, const Vector3& v);

// ---- Time ---------------------------------------------------------------------------------------------

// Days since 1858-11-17 00:00 UTC. Dates up to 1582-10-04 are dates of the Julian calendar. Days, hours and
// so on beyond the range of a calendar or a clock are simply added.
double ModifiedJulianDate(uint16_t year, uint8_t month, uint8_t day, uint8_t hour, uint8_t minute,
                          uint8_t second);

double JulianCenturies(double mjd); // since 2000-01-01 12:00

double SiderealTime(double mjd); // mean time of Greenwich, 0..2 pi
