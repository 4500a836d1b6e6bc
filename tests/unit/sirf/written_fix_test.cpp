// SPDX-License-Identifier: MIT
// The values in LatestFix after messages.

#include <cmath>

#include "graph/latest_fix.h"
#include "tests/unit/sirf/sample_messages.h"

namespace
{

class WrittenSirfFix : public SirfTest
{
};

TEST_F(WrittenSirfFix, IsThatOfMessage41)
{
    Decode(GeodeticMessage());
    EXPECT_NEAR(LatestFix.LatitudeDegrees, 52.1234567, 1e-12);
    EXPECT_NEAR(LatestFix.LongitudeDegrees, -4.5678901, 1e-12);
    EXPECT_DOUBLE_EQ(LatestFix.AltitudeEllipsoidMetres, 123.45);
    EXPECT_DOUBLE_EQ(LatestFix.AltitudeMslMetres, -6.78);
    EXPECT_DOUBLE_EQ(LatestFix.GeoidSeparationMetres, 130.23);
    EXPECT_DOUBLE_EQ(LatestFix.SpeedMetresPerSecond, 12.34);
    EXPECT_DOUBLE_EQ(LatestFix.CourseDegrees, 359.99);
    EXPECT_DOUBLE_EQ(LatestFix.HorizontalErrorMetres, 4.56);
    EXPECT_DOUBLE_EQ(LatestFix.VerticalErrorMetres, 7.89);
    EXPECT_DOUBLE_EQ(LatestFix.Hdop, 1.8);
    EXPECT_TRUE(std::isnan(LatestFix.Vdop));
    EXPECT_EQ(LatestFix.SatellitesInFix, 9);
    EXPECT_EQ(LatestFix.Mode, FixMode::ThreeD);
    EXPECT_TRUE(LatestFix.HasTimeOfDay);
    EXPECT_EQ(LatestFix.Year, 2024);
    EXPECT_EQ(LatestFix.Month, 2);
    EXPECT_EQ(LatestFix.Day, 29);
    EXPECT_EQ(LatestFix.DatedSecondOfDay, 86398);
}

TEST_F(WrittenSirfFix, HasTheModeOfTheFixType)
{
    constexpr FixMode Modes[] = {FixMode::None,   FixMode::TwoD, FixMode::TwoD,   FixMode::TwoD,
                                 FixMode::ThreeD, FixMode::TwoD, FixMode::ThreeD, FixMode::TwoD};
    for (uint8_t type = 0; type < 8; ++type) {
        Payload message = GeodeticMessage();
        message.bytes[4] = type;
        Decode(message);
        EXPECT_EQ(LatestFix.Mode, Modes[type]) << int{type};
    }
}

TEST_F(WrittenSirfFix, LeavesOutWhatTheMessageCallsInvalid)
{
    Decode(GeodeticMessage());
    Decode(GeodeticMessage().At(1, "8000").At(3, "1004").At(14, "00"));
    EXPECT_TRUE(std::isnan(LatestFix.SpeedMetresPerSecond));
    EXPECT_TRUE(std::isnan(LatestFix.CourseDegrees));
    EXPECT_FALSE(LatestFix.HasTimeOfDay);
    Decode(GeodeticMessage().At(3, "0000"));
    EXPECT_TRUE(std::isnan(LatestFix.SpeedMetresPerSecond) && std::isnan(LatestFix.HorizontalErrorMetres));
}

TEST_F(WrittenSirfFix, IsThatOfMessage2WhileNo41Comes)
{
    Decode(NavigationMessage());
    EXPECT_NEAR(LatestFix.LatitudeDegrees, 59.2, 0.1);
    EXPECT_NEAR(LatestFix.LongitudeDegrees, 13.1, 0.1);
    EXPECT_NEAR(LatestFix.AltitudeEllipsoidMetres, 97.31, 0.01);
    EXPECT_TRUE(std::isnan(LatestFix.AltitudeMslMetres));
    EXPECT_NEAR(LatestFix.Hdop, 1.4, 1e-9);
    EXPECT_EQ(LatestFix.SatellitesInFix, 9);
    EXPECT_EQ(LatestFix.Mode, FixMode::ThreeD);
    EXPECT_FALSE(LatestFix.HasTimeOfDay);

    Decode(GeodeticMessage());
    Decode(NavigationMessage());
    EXPECT_NEAR(LatestFix.LatitudeDegrees, 52.1234567, 1e-12);
}

TEST_F(WrittenSirfFix, SatellitesAreTheTrackedOnes)
{
    Payload tracking(4, 188);
    tracking.At(7, "0C").At(8, "06 50 8A 00BF 2C2C2C2C2C2C2C2C2C2C").At(38, "78 78 40 0000");
    Decode(tracking);
    EXPECT_EQ(LatestFix.InViewReports, 1u);
    ASSERT_EQ(LatestFix.InViewCount, 2u);
    EXPECT_EQ(LatestFix.InView[0].Number, 6u);
    EXPECT_EQ(LatestFix.InView[0].AzimuthDegrees, 120u);
    EXPECT_EQ(LatestFix.InView[0].ElevationDegrees, 69u);
    EXPECT_EQ(LatestFix.InView[0].CarrierToNoiseDbHz, 44u);
    EXPECT_EQ(LatestFix.InView[1].Number, 120u);
    EXPECT_EQ(LatestFix.InView[1].CarrierToNoiseDbHz, 0u);
}

} // namespace
