// SPDX-License-Identifier: MIT
#include "sky/sun_and_moon.h"

#include <gtest/gtest.h>

namespace
{

struct Row {
    double centuries;
    EquatorialPlace sun, moon;
};

// Calculated from the two series by another program, with the formulae of spherical trigonometry instead of
// rotations: each term counts here, even the smallest.
constexpr Row Rows[] = {
    {0.0, {-1.373665874834, -0.402003009949}, {-2.400710761276, -0.190302120913}},
    {0.0846, {1.507661560768, 0.408365464718}, {-1.896677593941, -0.471802247364}},
    {0.2689, {-2.136716525472, -0.350821918913}, {0.375615775575, 0.239482171811}},
    {-1.3712, {-2.225300557830, -0.331283200034}, {3.051659942961, -0.059415850163}},
    {2.5, {-1.338849009687, -0.399278300329}, {-1.511222698481, -0.481999951966}},
    {-4.4, {-1.435110870023, -0.405733587360}, {2.809309125524, 0.166151546149}},
};

void ExpectNear(const EquatorialPlace& place, const EquatorialPlace& expected)
{
    EXPECT_NEAR(place.rightAscension, expected.rightAscension, 1e-10);
    EXPECT_NEAR(place.declination, expected.declination, 1e-10);
}

TEST(SunAndMoon, EveryTermOfTheirSeriesCounts)
{
    for (const Row& row : Rows) {
        SCOPED_TRACE(row.centuries);
        ExpectNear(SunPosition(row.centuries), row.sun);
        ExpectNear(MoonPosition(row.centuries), row.moon);
    }
}

} // namespace
