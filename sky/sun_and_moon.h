// SPDX-License-Identifier: MIT
// Places of the Sun and the Moon, from short series: exact to one or two minutes of arc for some centuries
// around 2000, without nutation and parallax.
#pragma once

// Angles in radians, relative to the equator of the date.
struct EquatorialPlace {
    double rightAscension, declination;
};

// Julian centuries since 2000-01-01 12:00.
EquatorialPlace SunPosition(double centuries);
EquatorialPlace MoonPosition(double centuries);

// Radians; the azimuth is counted from south to west, -pi..pi.
struct HorizontalPlace {
    double azimuthFromSouth, elevation;
};

// The hour angle is the angle by which the meridian has turned past the object.
HorizontalPlace EquatorialToHorizontal(double declination, double hourAngle, double latitude);
