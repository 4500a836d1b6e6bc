// SPDX-License-Identifier: MIT
#include "sky/vectors_and_time.h"

#include <cmath>

namespace
{

constexpr double Mjd2000 = 51544.5;
constexpr int32_t LastJulianDay = 15821004; // year, month, day

} // namespace

double Frac(double x)
{
    return x - std::floor(x);
}

double Modulo(double x, double divisor)
{
    return divisor * Frac(x / divisor);
}

Vector3 UnitVector(const PolarAngles& direction)
{
    const double inPlane = std::cos(direction.elevation);
    return {inPlane * std::cos(direction.azimuth), inPlane * std::sin(direction.azimuth),
            std::sin(direction.elevation)};
}

PolarAngles AnglesOf(const Vector3& v)
{
    return {std::atan2(v.y, v.x), std::atan2(v.z, std::sqrt(v.x * v.x + v.y * v.y))};
}

Vector3 RotateX(double angle, const Vector3& v)
{
    const double c = std::cos(angle), s = std::sin(angle);
    return {v.x, c * v.y + s * v.z, c * v.z - s * v.y};
}

Vector3 RotateY(double angle, const Vector3& v)
{
    const double c = std::cos(angle), s = std::sin(angle);
    return {c * v.x - s * v.z, v.y, s * v.x + c * v.z};
}

double ModifiedJulianDate(uint16_t year, uint8_t month, uint8_t day, uint8_t hour, uint8_t minute,
                          uint8_t second)
{
    int32_t y = year, m = month;
    if (m < 3) { // the year begins in March, so that the leap day is its last
        m += 12;
        y -= 1;
    }
    const int32_t leapDays =
        (y * 100 + m) * 100 + day > LastJulianDay ? y / 400 - y / 100 + y / 4 : (y + 4716) / 4 - 1181;
    const int32_t midnight = 365 * y - 679004 + leapDays + static_cast<int32_t>(30.6001 * (m + 1)) + day;
    return midnight + (hour + minute / 60.0 + second / 3600.0) * 0.041666666666666664;
}

double JulianCenturies(double mjd)
{
    return (mjd - Mjd2000) * 2.7378507871321012e-5;
}

double SiderealTime(double mjd)
{
    constexpr double SecondsPerDay = 86400, DaysPerCentury = 36525;
    const double midnight = std::floor(mjd), ut = (mjd - midnight) * SecondsPerDay;
    const double t0 = (midnight - Mjd2000) / DaysPerCentury, t = (mjd - Mjd2000) / DaysPerCentury;
    const double seconds =
        24110.54841 + 8640184.812866 * t0 + 1.0027379093 * ut + (0.093104 - 6.2e-6 * t) * t * t;
    return TwoPi / SecondsPerDay * Modulo(seconds, SecondsPerDay);
}
