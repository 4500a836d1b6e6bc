// SPDX-License-Identifier: MIT
// The values in LatestFix after sentences.

#include <cmath>

#include "graph/channels.h"
#include "graph/latest_fix.h"
#include "nmea/sentence_decoder.h"
#include "tests/unit/support/product_test.h"

namespace
{

class WrittenFix : public ProductTest
{
protected:
    WrittenFix() { RecogniseNmea(); }
};

TEST_F(WrittenFix, NothingIsKnownAtFirst)
{
    EXPECT_TRUE(std::isnan(LatestFix.LatitudeDegrees) && std::isnan(LatestFix.SpeedMetresPerSecond));
    EXPECT_EQ(LatestFix.Mode, FixMode::Unknown);
    EXPECT_EQ(LatestFix.SatellitesInFix, -1);
    EXPECT_EQ(LatestFix.Day, 0);
    EXPECT_EQ(LatestFix.InViewReports, 0u);
}

TEST_F(WrittenFix, IsThatOfTheLatestGga)
{
    FeedSentence("GPGGA,100035.000,4722.6140,N,00832.5020,W,2,09,1.1,459.5,M,-48.2,M,2.0,0000");
    EXPECT_NEAR(LatestFix.LatitudeDegrees, 47.3769, 1e-9);
    EXPECT_NEAR(LatestFix.LongitudeDegrees, -8.5417, 1e-9);
    EXPECT_DOUBLE_EQ(LatestFix.AltitudeMslMetres, 459.5);
    EXPECT_DOUBLE_EQ(LatestFix.GeoidSeparationMetres, -48.2);
    EXPECT_NEAR(LatestFix.AltitudeEllipsoidMetres, 411.3, 1e-9);
    EXPECT_DOUBLE_EQ(LatestFix.Hdop, 1.1);
    EXPECT_EQ(LatestFix.SatellitesInFix, 9);
    EXPECT_EQ(LatestFix.Mode, FixMode::ThreeD);
    EXPECT_TRUE(LatestFix.HasTimeOfDay);
    EXPECT_EQ(LatestFix.Day, 0); // GGA has no date
}

TEST_F(WrittenFix, WithoutAFixForgetsWhatTheLastOneHad)
{
    FeedSentence("GPGGA,100035.000,4722.6140,N,00832.5020,E,1,09,1.1,459.5,M,48.2,M,,0000");
    FeedSentence("GPVTG,90.00,T,,M,10.00,N,18.5,K,A");
    FeedSentence("GPGGA,100036.000,,,,,0,00,,,M,,M,,0000");
    EXPECT_EQ(LatestFix.Mode, FixMode::None);
    EXPECT_TRUE(std::isnan(LatestFix.LatitudeDegrees) && std::isnan(LatestFix.LongitudeDegrees));
    EXPECT_TRUE(std::isnan(LatestFix.AltitudeMslMetres) && std::isnan(LatestFix.AltitudeEllipsoidMetres));
    EXPECT_TRUE(std::isnan(LatestFix.SpeedMetresPerSecond) && std::isnan(LatestFix.CourseDegrees));
}

TEST_F(WrittenFix, HasNoPositionBeyondThePole)
{
    FeedSentence("GPGGA,100035.000,9122.6140,N,00832.5020,E,1,09,1.1,459.5,M,48.2,M,,0000");
    EXPECT_TRUE(std::isnan(LatestFix.LatitudeDegrees) && std::isnan(LatestFix.LongitudeDegrees));
}

TEST_F(WrittenFix, HasTheDimensionsOfGsa)
{
    FeedSentence("GPGSA,A,2,05,10,,,,,,,,,,,2.6,1.9,1.8");
    EXPECT_DOUBLE_EQ(LatestFix.Vdop, 1.8);
    FeedSentence("GPGGA,100035.000,4722.6140,N,00832.5020,E,1,03,1.1,459.5,M,48.2,M,,0000");
    EXPECT_EQ(LatestFix.Mode, FixMode::TwoD);
    FeedSentence("GPGSA,A,1,,,,,,,,,,,,,,,");
    FeedSentence("GPGGA,100036.000,4722.6140,N,00832.5020,E,1,03,1.1,,M,,M,,0000");
    EXPECT_EQ(LatestFix.Mode, FixMode::TwoD); // no altitude
}

TEST_F(WrittenFix, SpeedIsInMetresOfTheInternationalMile)
{
    FeedSentence("GPRMC,100035.000,A,4722.6140,N,00832.5020,E,10.00,359.90,210608,,,A");
    EXPECT_NEAR(LatestFix.SpeedMetresPerSecond, 5.144444444, 1e-8);
    EXPECT_DOUBLE_EQ(LatestFix.CourseDegrees, 359.9);
}

TEST_F(WrittenFix, DatesComeFromRmcAndZda)
{
    struct Row {
        const char* sentence;
        uint16_t year, month, day;
    };
    constexpr Row Rows[] = {
        {"GPRMC,100035.000,A,4722.6140,N,00832.5020,E,10.00,359.90,290224,,,A", 2024, 2, 29},
        {"GPRMC,100035.000,V,,,,,,,220897,,,N", 1997, 8, 22},
        {"GPZDA,100035.000,07,04,2007,,", 2007, 4, 7},
        // None of these has a date: the last one stays.
        {"GPRMC,100035.000,V,,,,,,,,,,N", 2007, 4, 7},
        {"GPRMC,100035.000,V,,,,,,,290223,,,N", 2007, 4, 7},
        {"GPRMC,100035.000,V,,,,,,,010124x,,,N", 2007, 4, 7},
        {"GPZDA,100035.000,31,11,2026,,", 2007, 4, 7},
        {"GPZDA,100035.000,00,13,2026,,", 2007, 4, 7},
        {"GPZDA,100035.000,,,,,", 2007, 4, 7},
    };
    for (const Row& row : Rows) {
        FeedSentence(row.sentence);
        EXPECT_EQ(LatestFix.Year, row.year) << row.sentence;
        EXPECT_EQ(LatestFix.Month, row.month) << row.sentence;
        EXPECT_EQ(LatestFix.Day, row.day) << row.sentence;
    }
}

TEST_F(WrittenFix, ADateHasTheTimeOfItsSentence)
{
    FeedSentence("GPRMC,235958.000,V,,,,,,,210608,,,N");
    EXPECT_EQ(LatestFix.DatedSecondOfDay, 86398);
    FeedSentence("GPZDA,000001.000,22,06,2008,,");
    EXPECT_EQ(LatestFix.DatedSecondOfDay, 1);
}

TEST_F(WrittenFix, SatellitesAreThoseOfAWholeGroup)
{
    FeedSentence("GPGSV,2,1,05,06,69,120,44,11,69,030,44,16,55,300,42,15,36,210,39");
    EXPECT_EQ(LatestFix.InViewReports, 0u);
    FeedSentence("GPGSV,2,2,05,37,08,180,");
    EXPECT_EQ(LatestFix.InViewReports, 1u);
    ASSERT_EQ(LatestFix.InViewCount, 5u);
    EXPECT_EQ(LatestFix.InView[0].Number, 6u);
    EXPECT_EQ(LatestFix.InView[0].ElevationDegrees, 69u);
    EXPECT_EQ(LatestFix.InView[0].AzimuthDegrees, 120u);
    EXPECT_EQ(LatestFix.InView[0].CarrierToNoiseDbHz, 44u);
    EXPECT_EQ(LatestFix.InView[4].Number, 37u);
    EXPECT_EQ(LatestFix.InView[4].CarrierToNoiseDbHz, 0u);
}

} // namespace
