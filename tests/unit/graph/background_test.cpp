// SPDX-License-Identifier: MIT
#include "graph/background.h"

#include <random>

#include "tests/unit/graph/support/chart_fixture.h"

namespace
{

class BackgroundTest : public ChartTest
{
protected:
    static void MakeChart(int height) { CreateChart(nullptr, 2, height); }

    // Heights of the ticks that one channel has, from the bottom up.
    static std::vector<int> Ticks(float min, float max, uint16_t floor, uint16_t ceiling)
    {
        for (GraphChannelRecord& channel : GraphChannel) channel.Visible.store(0);
        GraphChannel[0].Visible.store(1);
        SetBand(0, min, max, floor, ceiling);
        ResetGraphBackground();
        return Heights(TickColumn, '-');
    }
    static std::vector<int> Heights(const Surface& pattern, char color)
    {
        const std::string column = Column(0, pattern);
        std::vector<int> heights;
        for (int height = 0; height < pattern.Height; ++height)
            if (column[column.size() - 1 - static_cast<size_t>(height)] == color) heights.push_back(height);
        return heights;
    }
};

using Heights = std::vector<int>;

TEST_F(BackgroundTest, DefaultBands)
{
    MakeChart(268);
    ResetGraphBackground();
    const ::Heights edges = {0, 20, 40, 90, 115, 135, 175, 215, 235, 255, 267};
    EXPECT_EQ(Heights(BackgroundColumn, '-'), edges);
    EXPECT_EQ(Heights(TickColumn, '='), edges);
    EXPECT_EQ(Heights(TickColumn, '-'), (::Heights{
                                            11,                    // Course 200
                                            30,                    // Speed 1
                                            45,  55,  65,  75, 85, // Altitude -40 to 40
                                            100, 110,              // EVPE 10, 20
                                            125,                   // VDOP 5
                                            145, 155, 165,         // Easting -20 to 20
                                            185, 195, 205,         // Northing
                                            225,                   // EHPE 10
                                            245,                   // HDOP 5
                                            265,                   // SVsInFix 10
                                        }));
    EXPECT_EQ(Column(0, BackgroundColumn).find_first_not_of(".-"), std::string::npos);
    EXPECT_EQ(Column(1, TickColumn).find_first_not_of('?'), std::string::npos); // only column 0 is used
}

TEST_F(BackgroundTest, IsRebuiltFromNothing)
{
    MakeChart(20);
    Ticks(0, 10, 2, 17);
    EXPECT_EQ(Ticks(0, 10, 5, 12), ::Heights{});
    EXPECT_EQ(Heights(BackgroundColumn, '-'), (::Heights{5, 12}));
}

TEST_F(BackgroundTest, HiddenChannelsHaveNone)
{
    MakeChart(268);
    for (GraphChannelRecord& channel : GraphChannel) channel.Visible.store(0);
    ResetGraphBackground();
    EXPECT_EQ(Column(0, BackgroundColumn), std::string(268, '.'));
    EXPECT_EQ(Column(0, TickColumn), std::string(268, '.'));
}

TEST_F(BackgroundTest, EmptyBandsAndRangesHaveNeitherTicksNorEdges)
{
    MakeChart(100);
    EXPECT_EQ(Ticks(3, 3, 10, 90), ::Heights{});
    EXPECT_EQ(Heights(BackgroundColumn, '-'), ::Heights{});
    EXPECT_EQ(Ticks(0, 10, 50, 50), ::Heights{});
    EXPECT_EQ(Heights(BackgroundColumn, '-'), ::Heights{});
    EXPECT_EQ(Heights(TickColumn, '='), ::Heights{});
}

TEST_F(BackgroundTest, TicksStandTenToTwentyPixelsApart)
{
    MakeChart(268);
    EXPECT_EQ(Ticks(0, 10, 0, 100), (::Heights{10, 20, 30, 40, 50, 60, 70, 80, 90}));
    EXPECT_EQ(Ticks(0, 100, 0, 150), (::Heights{15, 30, 45, 60, 75, 90, 105, 120, 135}));
    EXPECT_EQ(Ticks(0, 30, 0, 90), (::Heights{15, 30, 45, 60, 75}));      // 10 are 30 pixels, so 5
    EXPECT_EQ(Ticks(0, 3, 0, 180), (::Heights{12, 24, 36, 48, 60, 72, 84, // 1 are 60 pixels, so 0.2
                                              96, 108, 120, 132, 144, 156, 168}));
    EXPECT_EQ(Ticks(0, 1, 0, 200), (::Heights{10, 20, 30, 40, 50, 60, 70, 80, 90, 100, 110, 120, 130, 140,
                                              150, 160, 170, 180, 190})); // 1 are 200, 0.1 20, so 0.05
    EXPECT_EQ(Ticks(0, 90, 0, 90), (::Heights{10, 20, 30, 40, 50, 60, 70, 80}));
    EXPECT_EQ(Ticks(0, 90, 0, 36), (::Heights{20}));     // 10 are 4 pixels, 50 are 20
    EXPECT_EQ(Ticks(0, 900, 0, 9), (::Heights{}));       // 100 are 1 pixel, so 1000
    EXPECT_EQ(Ticks(0, 60, 0, 36), (::Heights{12, 24})); // 10 are 6 pixels, so 20
}

TEST_F(BackgroundTest, TicksAreMultiplesOfTheirStep)
{
    MakeChart(268);
    EXPECT_EQ(Ticks(-7, 13, 100, 160), (::Heights{106, 121, 136, 151})); // -5, 0, 5, 10
}

// A step of 0.2 is a little more than that as a float, and five of them end just inside the band.
TEST_F(BackgroundTest, TickOnALimitIsTheEdgeAlone)
{
    MakeChart(268);
    EXPECT_EQ(Ticks(-40, -39, 162, 224), (::Heights{174, 186, 199, 211}));
    EXPECT_EQ(Ticks(-23, -22, 104, 171), (::Heights{117, 130, 144, 157}));
}

TEST_F(BackgroundTest, ReversedLimitsHaveEdgesButNoTicks)
{
    MakeChart(268);
    EXPECT_EQ(Ticks(10, 0, 0, 100), ::Heights{});
    EXPECT_EQ(Heights(BackgroundColumn, '-'), (::Heights{0, 100}));
}

TEST_F(BackgroundTest, BandUpsideDownHasTheSameTicks)
{
    MakeChart(268);
    EXPECT_EQ(Ticks(0, 10, 100, 0), (::Heights{10, 20, 30, 40, 50, 60, 70, 80, 90}));
    EXPECT_EQ(Heights(TickColumn, '='), (::Heights{0, 100}));
}

TEST_F(BackgroundTest, BandBeyondThePictureIsClipped)
{
    MakeChart(50);
    EXPECT_EQ(Ticks(0, 10, 0, 100), (::Heights{10, 20, 30, 40}));
    EXPECT_EQ(Heights(TickColumn, '='), (::Heights{0}));
    EXPECT_EQ(Ticks(0, 10, 50, 65535), ::Heights{});
    EXPECT_EQ(Heights(TickColumn, '='), ::Heights{});
}

TEST_F(BackgroundTest, LimitsOfManyDigitsEndAndHaveAllTheirTicks)
{
    MakeChart(268);
    // 0.5 added to 20000000 is 20000000 again as a float.
    EXPECT_EQ(Ticks(20000000, 20000008, 0, 200),
              (::Heights{12, 25, 37, 50, 62, 75, 87, 100, 112, 125, 137, 150, 162, 175, 187}));
    EXPECT_EQ(Ticks(26363000, 26363008, 0, 200).size(), 15u);
}

TEST_F(BackgroundTest, EndsForEveryInput)
{
    MakeChart(268);
    const std::vector<float> values = {0,        1,      -1,       0.001f,        3e-40f,         1e-45f,
                                       1e38f,    -3e38f, 3.4e38f,  2147483648.0f, -2147483648.0f, 16777216,
                                       16777218, NAN,    INFINITY, -INFINITY};
    const std::vector<uint16_t> heights = {0, 1, 2, 267, 268, 269, 32767, 32768, 65534, 65535};
    for (const float min : values)
        for (const float max : values)
            for (const uint16_t floor : heights)
                for (const uint16_t ceiling : heights) {
                    SetBand(0, min, max, floor, ceiling);
                    DrawChannelTicks(0);
                }
    std::mt19937 random(3);
    for (int i = 0; i < 20000; ++i) {
        const float min = static_cast<float>(static_cast<int32_t>(random()) >> (random() % 31));
        const float range = static_cast<float>(static_cast<int32_t>(random()) >> (random() % 31));
        SetBand(0, min, min + range, static_cast<uint16_t>(random() % 300),
                static_cast<uint16_t>(random() % 300));
        DrawChannelTicks(0);
    }
}

TEST_F(BackgroundTest, SpacingIsAWholeNumberOfPixelsWhicheverWayTheBandRuns)
{
    MakeChart(268);
    const auto spacing = [](float min, float max, uint16_t floor, uint16_t ceiling, float step) {
        SetBand(4, min, max, floor, ceiling);
        return TickSpacingPixels(4, step);
    };
    EXPECT_EQ(spacing(0, 10, 0, 20, 5), 10);
    EXPECT_EQ(spacing(0, 360, 0, 20, 100), 5); // 5.6
    EXPECT_EQ(spacing(0, 360, 20, 0, 100), 5);
    EXPECT_EQ(spacing(360, 0, 0, 20, 100), 5);
    EXPECT_EQ(spacing(0, 10, 0, 65535, 10), 65535);
    EXPECT_EQ(spacing(0, 10, 0, 65535, 1000), 65535);
    EXPECT_EQ(spacing(0, 0, 0, 20, 1), 65535);
    EXPECT_EQ(spacing(0, 10, 7, 7, 5), 0);
}

TEST_F(BackgroundTest, WithoutASizeNothingHappens)
{
    CreateChart(nullptr, 0, 0);
    ResetGraphBackground();
    EXPECT_TRUE(HeadlessBoxes().empty());
}

TEST_F(BackgroundTest, FailuresAreNamed)
{
    HeadlessFailCall("CreateDIBSection", 2, ERROR_NOT_ENOUGH_MEMORY);
    MakeChart(268);
    HeadlessClearBoxes();
    ResetGraphBackground();
    EXPECT_EQ(BoxCaptions(), std::vector<std::wstring>{L"StretchBlt1"});
    DeleteChart();

    HeadlessFailCall("CreateDIBSection", 3, ERROR_NOT_ENOUGH_MEMORY);
    MakeChart(268);
    HeadlessClearBoxes();
    ResetGraphBackground();
    EXPECT_EQ(BoxCaptions(), std::vector<std::wstring>{L"StretchBlt2"});
}

} // namespace
