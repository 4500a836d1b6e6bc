// SPDX-License-Identifier: MIT
// Angles, and lengths on the Earth that they stand for.
#pragma once

constexpr double RadiansPerDegree = 0.017453292519943295;
constexpr double DegreesPerRadian = 57.29577951308232;

// Of latitude, for the chart's Northing and Easting.
constexpr double MetresPerDegree = 111325.0;
