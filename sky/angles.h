// SPDX-License-Identifier: MIT
// Conversion of angles, also to lengths on the Earth.
#pragma once

constexpr double RadiansPerDegree = 0.017453292519943295;
constexpr double DegreesPerRadian = 57.29577951308232;

// Metres of one degree of latitude, for the chart's Northing and Easting.
constexpr double MetresPerDegree = 111325.0;
