// SPDX-License-Identifier: MIT
#include "sky/vectors_and_time.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{

TEST(VectorsAndTime, PartsOfNumbersAreNeverNegative)
{
    EXPECT_DOUBLE_EQ(Frac(2.75), 0.75);
    EXPECT_DOUBLE_EQ(Frac(-2.75), 0.25);
    EXPECT_EQ(Frac(-3.0), 0.0);
    EXPECT_NEAR(Modulo(725, 360), 5, 1e-12);
    EXPECT_NEAR(Modulo(-90, 360), 270, 1e-12);
    EXPECT_EQ(Modulo(360, 360), 0);
}

TEST(VectorsAndTime, DirectionsAndBack)
{
    for (double azimuth = -3; azimuth < 3.1; azimuth += 0.5)
        for (double elevation = -1.5; elevation < 1.6; elevation += 0.5) {
            const PolarAngles back = AnglesOf(UnitVector({azimuth, elevation}));
            EXPECT_NEAR(back.azimuth, azimuth, 1e-12);
            EXPECT_NEAR(back.elevation, elevation, 1e-12);
        }
}

TEST(VectorsAndTime, RotationTurnsTheAxes)
{
    const double quarter = TwoPi / 4;
    const Vector3 x = RotateX(quarter, {1, 2, 3}), y = RotateY(quarter, {1, 2, 3});
    EXPECT_NEAR(x.x, 1, 1e-12);
    EXPECT_NEAR(x.y, 3, 1e-12);
    EXPECT_NEAR(x.z, -2, 1e-12);
    EXPECT_NEAR(y.x, -3, 1e-12);
    EXPECT_NEAR(y.y, 2, 1e-12);
    EXPECT_NEAR(y.z, 1, 1e-12);
}

struct DateRow {
    uint16_t year;
    uint8_t month, day;
    double mjd; // from the published day numbers
};

TEST(VectorsAndTime, DayNumbersOfBothCalendars)
{
    constexpr DateRow Rows[] = {
        {1858, 11, 17, 0},      {2000, 1, 1, 51544},     {2000, 2, 29, 51603},   {2000, 3, 1, 51604},
        {1900, 2, 28, 15078},   {1900, 3, 1, 15079},     {1980, 1, 6, 44244},    {2024, 2, 29, 60369},
        {1582, 10, 4, -100841}, {1582, 10, 15, -100840}, {1500, 2, 29, -131009}, {1500, 3, 1, -131008},
    };
    for (const DateRow& row : Rows)
        EXPECT_EQ(ModifiedJulianDate(row.year, row.month, row.day, 0, 0, 0), row.mjd)
            << row.year << '-' << +row.month << '-' << +row.day;
}

TEST(VectorsAndTime, TimeOfDayIsAPartOfTheDay)
{
    EXPECT_DOUBLE_EQ(ModifiedJulianDate(2000, 1, 1, 12, 0, 0), 51544.5);
    EXPECT_NEAR(ModifiedJulianDate(2000, 1, 1, 23, 59, 59), 51545 - 1.0 / 86400, 1e-10);
}

TEST(VectorsAndTime, NumbersBeyondTheCalendarStayFinite)
{
    for (const int year : {0, 1, 234, 65535})
        for (const int rest : {0, 255}) {
            const auto b = static_cast<uint8_t>(rest);
            const double mjd = ModifiedJulianDate(static_cast<uint16_t>(year), b, b, b, b, b);
            EXPECT_TRUE(std::isfinite(mjd));
            EXPECT_GE(SiderealTime(mjd), 0);
            EXPECT_LT(SiderealTime(mjd), TwoPi);
        }
}

TEST(VectorsAndTime, SiderealTimeOfAPublishedExample)
{
    // 1987-04-10 00:00 UT: 13 h 10 min 46.3668 s; 19:21:00 UT: 8 h 34 min 57.0896 s
    const double secondsToRadians = TwoPi / 86400;
    EXPECT_NEAR(SiderealTime(ModifiedJulianDate(1987, 4, 10, 0, 0, 0)),
                (13 * 3600 + 10 * 60 + 46.3668) * secondsToRadians, 1e-3 * secondsToRadians);
    EXPECT_NEAR(SiderealTime(ModifiedJulianDate(1987, 4, 10, 19, 21, 0)),
                (8 * 3600 + 34 * 60 + 57.0896) * secondsToRadians, 1e-3 * secondsToRadians);
}

} // namespace
