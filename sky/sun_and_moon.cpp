// SPDX-License-Identifier: MIT
#include "sky/sun_and_moon.h"

#include <cmath>

#include "sky/vectors_and_time.h"

namespace
{

constexpr double Obliquity = 23.43929111 * RadiansPerDegree; // of the ecliptic, in 2000

EquatorialPlace FromEcliptic(double longitude, double latitude)
{
    const PolarAngles place = AnglesOf(RotateX(-Obliquity, UnitVector({longitude, latitude})));
    return {place.azimuth, place.elevation};
}

// An argument of the series as an angle, from turns at the year 2000 and turns per century.
double Argument(double turns, double turnsPerCentury, double centuries)
{
    return TwoPi * Frac(turns + turnsPerCentury * centuries);
}

} // namespace

EquatorialPlace SunPosition(double centuries)
{
    using std::sin;
    const double anomaly = Argument(0.993133, 99.997361, centuries);
    const double arcSeconds = 6893.0 * sin(anomaly) + 72.0 * sin(2 * anomaly) + 6191.2 * centuries;
    const double longitude = TwoPi * Frac(0.7859453 + anomaly / TwoPi + arcSeconds * TurnsPerArcSecond);
    return FromEcliptic(longitude, 0);
}

EquatorialPlace MoonPosition(double centuries)
{
    using std::sin;
    const double meanLongitude = Frac(0.606433 + 1336.855225 * centuries); // turns
    const double l = Argument(0.374897, 1325.55241, centuries);            // Moon's mean anomaly
    const double ls = Argument(0.993133, 99.997361, centuries);            // Sun's mean anomaly
    const double D = Argument(0.827361, 1236.853086, centuries);           // elongation of Moon from Sun
    const double F = Argument(0.259086, 1342.227825, centuries);           // distance from the node

    const double dL = 22640 * sin(l) - 4586 * sin(l - 2 * D) + 2370 * sin(2 * D) + 769 * sin(2 * l) -
                      668 * sin(ls) - 412 * sin(2 * F) - 212 * sin(2 * l - 2 * D) -
                      206 * sin(l + ls - 2 * D) + 192 * sin(l + 2 * D) - 165 * sin(ls - 2 * D) -
                      125 * sin(D) - 110 * sin(l + ls) + 148 * sin(l - ls) - 55 * sin(2 * F - 2 * D);
    const double S = F + (dL + 412 * sin(2 * F) + 541 * sin(ls)) * TurnsPerArcSecond * TwoPi;
    const double h = F - 2 * D;
    const double N = -526 * sin(h) + 44 * sin(l + h) - 31 * sin(-l + h) - 23 * sin(ls + h) +
                     11 * sin(-ls + h) - 25 * sin(-2 * l + F) + 21 * sin(-l + F);

    return FromEcliptic(TwoPi * Frac(meanLongitude + dL * TurnsPerArcSecond),
                        (18520.0 * sin(S) + N) * TurnsPerArcSecond * TwoPi);
}

HorizontalPlace EquatorialToHorizontal(double declination, double hourAngle, double latitude)
{
    const Vector3 place = RotateY(TwoPi / 4 - latitude, UnitVector({hourAngle, declination}));
    const PolarAngles angles = AnglesOf(place);
    return {angles.azimuth, angles.elevation};
}
