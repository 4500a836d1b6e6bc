#!/usr/bin/env -S /usr/bin/python3 -B
# SPDX-License-Identifier: MIT
"""Makes sky_reference.csv: positions of Sun, Moon and SBAS satellites, from an astronomy package.

Needs the Debian package python3-ephem; the tests only read the table.

Sun and Moon: geocentric apparent places of the date (ephem's g_ra and g_dec), turned into azimuth and elevation with
the package's sidereal time. No parallax and no refraction, which the program leaves out too. Before 1582-10-15 the
dates are of the Julian calendar, as the package takes them.

Satellites: the direction between two points in space, the receiver on a sphere of the Earth's equatorial radius and
the satellite on the geostationary circle; no formula of the program is used.

Angles in degrees; azimuths from north over east; the position's latitude and longitude are north and east.
"""
import csv
import math
import pathlib
import random

import ephem

EARTH, ORBIT = 6378.137, 42164.17  # km
SATELLITES = {120: -15.5, 122: -142, 124: 21.5, 126: 25, 127: 64, 128: 55, 129: 140, 134: 178, 135: -133, 137: 145,
              138: -107.3}


def horizontal(latitude, longitude, direction):
    """Elevation and azimuth of a direction given in axes that turn with the Earth."""
    phi, lam = math.radians(latitude), math.radians(longitude)
    up = (math.cos(phi) * math.cos(lam), math.cos(phi) * math.sin(lam), math.sin(phi))
    east = (-math.sin(lam), math.cos(lam), 0)
    north = (-math.sin(phi) * math.cos(lam), -math.sin(phi) * math.sin(lam), math.cos(phi))
    u, e, n = (sum(a * b for a, b in zip(axis, direction)) for axis in (up, east, north))
    return math.degrees(math.atan2(u, math.hypot(e, n))), math.degrees(math.atan2(e, n)) % 360


def body(kind, when, latitude, longitude):
    greenwich = ephem.Observer()
    greenwich.lon, greenwich.lat, greenwich.date = "0", "0", when
    place = kind(when)
    angle, declination = place.g_ra - greenwich.sidereal_time(), place.g_dec
    return horizontal(latitude, longitude, (math.cos(declination) * math.cos(angle),
                                            math.cos(declination) * math.sin(angle), math.sin(declination)))


def satellite(at, latitude, longitude):
    phi, lam = math.radians(latitude), math.radians(longitude)
    receiver = (EARTH * math.cos(phi) * math.cos(lam), EARTH * math.cos(phi) * math.sin(lam), EARTH * math.sin(phi))
    there = (ORBIT * math.cos(math.radians(at)), ORBIT * math.sin(math.radians(at)), 0)
    return horizontal(latitude, longitude, tuple(b - a for a, b in zip(receiver, there)))


def cases():
    chance = random.Random(20260621)
    for _ in range(240):  # a century around the receivers' time, everywhere
        yield ((chance.randint(1950, 2049), chance.randint(1, 12), chance.randint(1, 28), chance.randint(0, 23),
                chance.randint(0, 59), chance.randint(0, 59)),
               math.degrees(math.asin(chance.uniform(-1, 1))), chance.uniform(-180, 180))
    noon = (2026, 6, 21, 12, 0, 0)
    for latitude, longitude in ((90, 0), (-90, 0), (89.9999, 45), (-89.9999, -120), (0, 0), (0, 90), (0, -90), (0, 180),
                                (0, 64), (23.44, 0), (-23.44, 180), (47, 180), (47, -180), (47, 179.9999),
                                (47, -179.9999), (-36, 359.5), (50, 270), (60, 330)):
        yield noon, latitude, longitude
    for date in ((2000, 2, 28), (2000, 2, 29), (2000, 3, 1), (2024, 2, 29), (1900, 2, 28), (1900, 3, 1), (2100, 2, 28),
                 (2100, 3, 1), (1999, 12, 31), (2000, 1, 1), (2026, 12, 31), (1980, 1, 6), (1858, 11, 17)):
        for time in ((0, 0, 0), (23, 59, 59)):
            yield date + time, 47.3, 8.5
    for date in ((1582, 10, 3), (1582, 10, 4), (1582, 10, 15), (1582, 10, 16), (1582, 9, 14), (1580, 2, 29),
                 (1580, 3, 1), (1500, 2, 29), (1500, 3, 12)):  # 1500 was a leap year then
        yield date + (12, 30, 0), 40.4, -3.7


def main():
    with open(pathlib.Path(__file__).with_name("sky_reference.csv"), "w", newline="") as file:
        table = csv.writer(file, lineterminator="\n")
        table.writerow(["year", "month", "day", "hour", "minute", "second", "latitude", "longitude", "sun elevation",
                        "sun azimuth", "moon elevation", "moon azimuth"] +
                       [f"{sv} {angle}" for sv in SATELLITES for angle in ("elevation", "azimuth")])
        for time, latitude, longitude in cases():
            latitude, longitude = round(latitude, 4), round(longitude, 4)
            when = ephem.Date("%d/%d/%d %d:%d:%d" % time)
            angles = [*body(ephem.Sun, when, latitude, longitude), *body(ephem.Moon, when, latitude, longitude)]
            for at in SATELLITES.values():
                angles += satellite(at, latitude, longitude)
            table.writerow([*time, latitude, longitude, *(f"{angle:.4f}" for angle in angles)])


if __name__ == "__main__":
    main()
