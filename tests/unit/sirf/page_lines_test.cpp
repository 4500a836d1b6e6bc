// SPDX-License-Identifier: MIT
#include "sirf/page_lines.h"

#include "tests/unit/sirf/sirf_test.h"
#include "ui/fix_lines.h"

namespace
{

class SirfTextPage : public SirfTest
{
};

TEST_F(SirfTextPage, HdopLine)
{
    ShowHdopLine(SirfLineHdop, 51.0);
    EXPECT_EQ(Line(6), L" HDOP: 51.0  ");
    ShowHdopLine(SirfLineHdop, 0);
    EXPECT_EQ(Line(6), L" HDOP: 0.0  ");
}

TEST_F(SirfTextPage, ErrorLines)
{
    ShowSirfErrors(4.567, 42949672.95);
    EXPECT_EQ(Line(7), L" EstimatedHorizontalPrecisionError: 4.57 m          ");
    EXPECT_EQ(Line(12), L" EstimatedVerticalPrecisionError: 42949672.95 m          ");
}

TEST_F(SirfTextPage, PositionLines)
{
    ShowSirfPosition(52.5, -4.25);
    EXPECT_EQ(Line(8), L" Latitude: 52.5000000 \u00B0N      ");
    EXPECT_EQ(Line(9), L" Longitude: 4.2500000 \u00B0W        ");
    ShowSirfPosition(-0.0000001, 179.9999999);
    EXPECT_EQ(Line(8), L" Latitude: 0.0000001 \u00B0S      ");
    EXPECT_EQ(Line(9), L" Longitude: 179.9999999 \u00B0E        ");
    ShowSirfPosition(0, 0);
    EXPECT_EQ(Line(8), L" Latitude: 0.0000000 \u00B0N      ");
    EXPECT_EQ(Line(9), L" Longitude: 0.0000000 \u00B0E        ");
}

TEST_F(SirfTextPage, GridLines)
{
    ShowNorthingLine(SirfLineNorthing, 6590440.1058);
    ShowEastingLine(SirfLineEasting, -0.005);
    EXPECT_EQ(Line(10), L" Northing: 6590440.11 m             ");
    EXPECT_EQ(Line(11), L" Easting: -0.01 m             ");
}

TEST_F(SirfTextPage, AltitudeLines)
{
    ShowSirfAltitudeEllipsoid(-1.5);
    ShowAltitudeMslLine(SirfLineAltitudeMsl, 8848.86);
    EXPECT_EQ(Line(13), L" Altitude Ellipsoid: -1.50 m      ");
    EXPECT_EQ(Line(14), L" Altitude MSL: 8848.86 m      ");
}

TEST_F(SirfTextPage, SpeedAndCourseLines)
{
    ShowSpeedLine(SirfLineSpeed, 0.07);
    ShowCourseLine(SirfLineCourse, 359.99);
    EXPECT_EQ(Line(15), L" Speed: 0.07 m/s        ");
    EXPECT_EQ(Line(16), L" Course: 359.99 \u00B0        ");
}

TEST_F(SirfTextPage, MapDatums)
{
    const std::pair<uint8_t, const wchar_t*> rows[] = {
        {21, L" Map Datum: WGS-84"},
        {178, L" Map Datum: Tokyo Mean"},
        {179, L" Map Datum: Tokyo Japan"},
        {180, L" Map Datum: Tokyo Korea"},
        {181, L" Map Datum: Tokyo Okinawa"},
        {0, L" Map Datum: 0"},
        {22, L" Map Datum: 22"},
        {255, L" Map Datum: 255"},
    };
    for (const auto& [datum, line] : rows) {
        ShowSirfMapDatum(datum);
        EXPECT_EQ(Line(17), line);
    }
}

TEST_F(SirfTextPage, FixTexts)
{
    const std::wstring without(38, L' ');
    const std::pair<uint32_t, const wchar_t*> rows[] = {
        {0, L" Fix: No Fix"},
        {1, L" Fix: Degraded Kalman Filter, 7 SVs"},
        {2, L" Fix: Degraded Kalman Filter, 7 SVs"},
        {3, L" Fix: 2D Kalman Filter, 7 SVs"},
        {4, L" Fix: 3D Kalman Filter, 7 SVs"},
        {5, L" Fix: 2-D Least-Squares, 7 SVs"},
        {6, L" Fix: 3-D Least-Squares, 7 SVs"},
        {7, L" Fix: Dead Reckoning"},
    };
    for (const auto& [type, text] : rows) {
        ShowSirfFix(type, 7, false);
        EXPECT_EQ(Line(5), text + without);
        ShowSirfFix(type, 7, true);
        EXPECT_EQ(Line(5), text + std::wstring(L", DGPS") + std::wstring(32, L' '));
    }
}

// ---- Channel table ------------------------------------------------------------------------------------

TEST_F(SirfTextPage, NoChannelLeavesTheHeaders)
{
    const TrackedSatellite one = {7, 45, 40, 90, 0xBF};
    ShowSirfChannels(&one, 1);
    ShowSirfChannels(nullptr, 0);
    EXPECT_EQ(Line(1), L" Sv: ");
    EXPECT_EQ(Line(2), L" Cn: ");
    EXPECT_EQ(Line(3), L" St: ");
    EXPECT_EQ(Line(4), L" El: ");
}

TEST_F(SirfTextPage, OneChannel)
{
    const TrackedSatellite one = {7, 45, 40, 90, 0x1BF};
    ShowSirfChannels(&one, 1);
    EXPECT_EQ(Line(1), L" Sv:07    ");
    EXPECT_EQ(Line(2), L" Cn:40 ");
    EXPECT_EQ(Line(3), L" St:BF    ");  // the low byte
    EXPECT_EQ(Line(4), L" El: 45    "); // one to the right of the others
}

TEST_F(SirfTextPage, ThreeDigitsRunIntoTheNextColumn)
{
    const TrackedSatellite two[] = {{120, 127, 255, 0, 0}, {3, 9, 1, 0, 0xA}};
    ShowSirfChannels(two, 2);
    EXPECT_EQ(Line(1), L" Sv:12003    ");
    EXPECT_EQ(Line(2), L" Cn:25501 ");
    EXPECT_EQ(Line(3), L" St:00 0A    ");
    EXPECT_EQ(Line(4), L" El: 12709    ");
}

TEST_F(SirfTextPage, TwelveChannelsWithAWideLastOne)
{
    TrackedSatellite all[MaxShownChannels];
    for (uint8_t i = 0; i < MaxShownChannels; ++i) all[i] = {static_cast<uint8_t>(i + 1), i, i, 0, i};
    all[11] = {255, 127, 255, 0, 0xFFFF};
    ShowSirfChannels(all, MaxShownChannels);
    EXPECT_EQ(Line(1), L" Sv:01 02 03 04 05 06 07 08 09 10 11 255    ");
    EXPECT_EQ(Line(2), L" Cn:00 01 02 03 04 05 06 07 08 09 10 255 ");
    EXPECT_EQ(Line(3), L" St:00 01 02 03 04 05 06 07 08 09 0A FF    ");
    EXPECT_EQ(Line(4), L" El: 00 01 02 03 04 05 06 07 08 09 10 127    ");
}

} // namespace
