// SPDX-License-Identifier: MIT
// Places of the Sun and the Moon, from short series: good to a minute of arc or two for some centuries around
// 2000, without nutation and parallax.
#pragma once

// Angles in radians, of the date's equator.
struct EquatorialPlace {
    double rightAscension, declination;
};

// Julian centuries since 2000-01-01 12:00.
EquatorialPlace SunPosition(double centuries);
EquatorialPlace MoonPosition(double centuries);

// Radians; the azimuth counts from south over west, -pi..pi.
struct HorizontalPlace {
    double azimuthFromSouth, elevation;
};

// The hour angle is how far the meridian has turned past the object.
HorizontalPlace EquatorialToHorizontal(double declination, double hourAngle, double latitude);
