// SPDX-License-Identifier: MIT
#include "graph/recorder.h"

#include <limits>

#include "tests/unit/graph/support/chart_fixture.h"

namespace
{

using RecorderTest = ChartTest;

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();

// ---- First sample -------------------------------------------------------------------------------------

TEST_F(RecorderTest, FirstSampleFillsTheChartAndPlotsEachChannelAsADot)
{
    CreateChart(nullptr, 240, 268);
    SetChannelValue(ChannelSvsInFix, 9);
    SetTime(3 * 60 + 50); // column 230
    RecordGraphSample();
    EXPECT_EQ(CurrentGraphColumn.load(), 230);

    // The bands' edges: so many pixels above the bottom row, which is row 267.
    std::string column(268, '.');
    for (const size_t height : {0, 20, 40, 90, 115, 135, 175, 215, 235, 255, 267}) column[267 - height] = '-';
    for (int x = 0; x < 240; ++x) ASSERT_TRUE(x == 230 || Column(x) == column) << x;

    column[267 - 264] = '0'; // 9 of 0 to 12 in 255 to 267; all others at or below their lower limit
    column[267 - 235] = '1';
    column[267 - 215] = '2';
    column[267 - 175] = '3';
    column[267 - 135] = '4';
    column[267 - 115] = '5';
    column[267 - 90] = '6';
    column[267 - 40] = '7';
    column[267 - 20] = '8';
    column[267 - 0] = '9';
    EXPECT_EQ(Column(230), column);
}

TEST_F(RecorderTest, FirstSampleDrawsNoGrid)
{
    MakeSmallChart(24, 4);
    Sample(10, 1); // the column of a minor grid line
    EXPECT_EQ(Picture(), (Rows{
                             "------------------------",
                             "........................",
                             "..........0.............",
                             "------------------------",
                         }));
}

TEST_F(RecorderTest, WithoutASizeNothingIsDrawnButTheSampleCounts)
{
    CreateChart(nullptr, 0, 268);
    Sample(5, 1);
    CreateChart(nullptr, 240, 0);
    Sample(6, 1);
    EXPECT_EQ(GraphSampleCount.load(), 2u);
    EXPECT_EQ(CurrentGraphColumn.load(), 0);
    EXPECT_TRUE(HeadlessBoxes().empty());
}

// ---- Columns and lines --------------------------------------------------------------------------------

TEST_F(RecorderTest, SuccessiveSamplesAreJoined)
{
    MakeSmallChart(8, 6);
    Sample(1, 1);
    Sample(2, 1);
    Sample(3, 4);
    Sample(4, 2);
    EXPECT_EQ(Picture(), (Rows{
                             "--------",
                             "...0....",
                             "...00...",
                             "..0.0...",
                             ".00.....",
                             "--------",
                         }));
}

TEST_F(RecorderTest, SecondSampleOfASecondIsDrawnInTheSameColumn)
{
    MakeSmallChart(8, 6);
    Sample(3, 1);
    Sample(3, 4);
    Sample(3, 3);
    EXPECT_EQ(Picture(), (Rows{
                             "--------",
                             "...0....",
                             "...0....",
                             "...0....",
                             "...0....",
                             "--------",
                         }));
}

TEST_F(RecorderTest, SkippedColumnsAreEmptiedAndTheLineComesFromTheColumnBefore)
{
    MakeSmallChart(8, 4);
    for (uint32_t second = 1; second < 8; ++second) Sample(second, 2);
    Sample(8 + 4, 1);
    EXPECT_EQ(Picture(), (Rows{
                             "--------",
                             "-..0.000",
                             "-...0...",
                             "--------",
                         }));
}

TEST_F(RecorderTest, WithoutLinesEachSampleIsOnePixel)
{
    MakeSmallChart(8, 6);
    GraphLines.store(0);
    Sample(5, 1);
    Sample(6, 4);
    Sample(7, 1);
    Sample(8, 3); // no line over the edge either
    Sample(8, 1);
    EXPECT_EQ(Picture(), (Rows{
                             "--------",
                             "-.....0.",
                             "0.......",
                             "-.......",
                             "0....0.0",
                             "--------",
                         }));
}

TEST_F(RecorderTest, LineGoesOnOverTheRightEdgeAndComesInFromTheLeft)
{
    MakeSmallChart(8, 6);
    Sample(6, 1);
    Sample(7, 1);
    Sample(8, 4);
    EXPECT_EQ(CurrentGraphColumn.load(), 0);
    EXPECT_EQ(Picture(), (Rows{
                             "--------",
                             "0.......",
                             "0.......",
                             "-......0",
                             "-.....00",
                             "--------",
                         }));
    EXPECT_EQ(GraphChannel[0].Previous.x, 0);
}

TEST_F(RecorderTest, LineOverTheEdgeIsFinishedAfterAGapToo)
{
    MakeSmallChart(8, 6);
    Sample(5, 4);
    Sample(8, 1); // columns 6, 7 and 0
    EXPECT_EQ(Picture(), (Rows{
                             "--------",
                             "-....0.0",
                             "-......0",
                             "0.......",
                             "0.......",
                             "--------",
                         }));
}

TEST_F(RecorderTest, LineThatEndsBeforeTheEdgeStartsBehindTheWrap)
{
    MakeSmallChart(8, 4);
    Sample(6, 2);
    Sample(8 + 2, 1);
    EXPECT_EQ(Picture(), (Rows{
                             "--------",
                             "-0....0.",
                             "-.0.....",
                             "--------",
                         }));
}

TEST_F(RecorderTest, SampleInTheLastColumnStaysThere)
{
    MakeSmallChart(8, 4);
    Sample(7, 1);
    Sample(7, 2);
    EXPECT_EQ(Picture(), (Rows{
                             "--------",
                             ".......0",
                             ".......0",
                             "--------",
                         }));
}

TEST_F(RecorderTest, ChartOfOneColumn)
{
    MakeSmallChart(1, 4);
    for (const double value : {1.0, 2.0, 1.0}) Sample(77, value);
    EXPECT_EQ(Column(0), "-00-");
}

// ---- Time ---------------------------------------------------------------------------------------------

TEST_F(RecorderTest, SweepBeginsAgainAtMidnight)
{
    MakeSmallChart(7, 4); // 86399 is column 5
    for (uint32_t second = 86394; second < 86400; ++second) Sample(second, 2);
    EXPECT_EQ(CurrentGraphColumn.load(), 5);
    Sample(0, 1);
    EXPECT_EQ(CurrentGraphColumn.load(), 0);
    EXPECT_EQ(Picture(), (Rows{
                             "-------",
                             "-000000",
                             "0......",
                             "-------",
                         }));
}

TEST_F(RecorderTest, ClockSetBackEmptiesTheColumnsRoundTheRightEdge)
{
    MakeSmallChart(8, 4);
    for (uint32_t second = 1; second < 7; ++second) Sample(second, 2);
    Sample(4, 1);
    EXPECT_EQ(Picture(), (Rows{
                             "--------",
                             "-..0.00.",
                             "-...0...",
                             "--------",
                         }));
}

TEST_F(RecorderTest, HoursAndMinutesCount)
{
    MakeSmallChart(240, 4);
    Sample(17 * 3600 + 31 * 60 + 7, 1);
    EXPECT_EQ(CurrentGraphColumn.load(), 187); // 63067 = 262 * 240 + 187
}

TEST_F(RecorderTest, DayOfTheWeekCountsIfThereIsOne)
{
    MakeSmallChart(7, 4);
    FixTime.wDayOfWeek = 1;
    Sample(3, 1);
    EXPECT_EQ(CurrentGraphColumn.load(), 2); // 86403 = 12343 * 7 + 2
}

TEST_F(RecorderTest, TimeFieldsOutOfTheirRangeStayInTheChart)
{
    MakeSmallChart(7, 4);
    FixTime.wHour = FixTime.wMinute = FixTime.wSecond = FixTime.wDayOfWeek = 65535;
    RecordGraphSample();
    EXPECT_LT(CurrentGraphColumn.load(), 7);
}

// ---- Grid ---------------------------------------------------------------------------------------------

struct GridCase {
    int32_t scale;
    uint32_t secondsPerColumn;
    std::vector<int> minor, major; // columns 2 to 127
};

class GridTest : public ChartTest, public testing::WithParamInterface<GridCase>
{
};

TEST_P(GridTest, LinesStandWhereTheTimeScaleSays)
{
    const GridCase& grid = GetParam();
    MakeSmallChart(128, 4);
    GraphLines.store(0);
    TimeScaleIdx.store(grid.scale);
    Sample(2 * grid.secondsPerColumn - 1, 1);
    EXPECT_EQ(CurrentGraphColumn.load(), 1);
    Sample(127 * grid.secondsPerColumn, 1);
    EXPECT_EQ(CurrentGraphColumn.load(), 127);
    std::vector<int> minor, major;
    for (int x = 2; x < 127; ++x) {
        const std::string column = Column(x);
        if (column == "=..=")
            minor.push_back(x);
        else if (column == "----")
            major.push_back(x);
        else
            EXPECT_EQ(column, "-..-") << x;
    }
    EXPECT_EQ(minor, grid.minor);
    EXPECT_EQ(major, grid.major);
}

const std::vector<int> EveryTen = {10, 20, 30, 40, 50, 70, 80, 90, 100, 110};
const std::vector<int> EverySixty = {60, 120};
INSTANTIATE_TEST_SUITE_P(AllScales, GridTest,
                         testing::Values(GridCase{0, 1, EveryTen, EverySixty},
                                         GridCase{1, 5, {12, 24, 36, 48, 72, 84, 96, 108}, EverySixty},
                                         GridCase{2, 20, {15, 30, 45, 75, 90, 105}, EverySixty},
                                         GridCase{3, 60, EveryTen, EverySixty},
                                         GridCase{4, 180, EveryTen, EverySixty},
                                         GridCase{5, 360, EveryTen, EverySixty},
                                         // indexes that name no row
                                         GridCase{-1, 1, EveryTen, EverySixty},
                                         GridCase{6, 1, EveryTen, EverySixty},
                                         GridCase{INT32_MIN, 1, EveryTen, EverySixty}));

TEST_F(RecorderTest, ChangeOfTheTimeScaleKeepsTheSweepGoing)
{
    MakeSmallChart(8, 4);
    Sample(5, 2);
    TimeScaleIdx.store(1);
    Sample(10, 1); // column 2: 6, 7, 0, 1 and 2 are prepared
    EXPECT_EQ(CurrentGraphColumn.load(), 2);
    EXPECT_EQ(Picture(), (Rows{
                             "--------",
                             "-0...0..",
                             "-.0.....",
                             "--------",
                         }));
}

// ---- Channels -----------------------------------------------------------------------------------------

TEST_F(RecorderTest, HiddenChannelIsNotDrawnButItsPointMovesAlong)
{
    MakeSmallChart(8, 6);
    Sample(1, 1);
    GraphChannel[0].Visible.store(0);
    Sample(2, 4);
    Sample(3, 4);
    EXPECT_EQ(GraphChannel[0].Previous.x, 2);
    EXPECT_EQ(GraphChannel[0].Previous.y, 4);
    GraphChannel[0].Visible.store(1);
    Sample(4, 4);
    EXPECT_EQ(Picture(), (Rows{
                             "--------",
                             "....0...",
                             "....0...",
                             "...0....",
                             ".0.0....",
                             "--------",
                         }));
}

TEST_F(RecorderTest, ChannelHiddenFromTheStartHasNoEdges)
{
    MakeSmallChart(3, 3);
    GraphChannel[0].Visible.store(0);
    Sample(1, 1);
    EXPECT_EQ(Picture(), (Rows{"...", "...", "..."}));
}

TEST_F(RecorderTest, FirstPointBehindTheWrapIsADotToo)
{
    MakeSmallChart(8, 6);
    GraphChannel[0].Visible.store(0);
    Sample(7, 4);
    GraphChannel[0].Visible.store(1);
    Sample(8, 4);
    EXPECT_EQ(Picture(), (Rows{
                             "-.......",
                             "0.......",
                             "-.......",
                             "-.......",
                             "-.......",
                             "-.......",
                         }));
}

TEST_F(RecorderTest, LaterChannelIsDrawnOverAnEarlierOne)
{
    MakeSmallChart(3, 4);
    GraphChannel[6].Visible.store(1);
    SetBand(6, 0, 3, 0, 3);
    SetChannelValue(ChannelEvpe, 1);
    Sample(1, 1);
    EXPECT_EQ(Column(1), "-.6-");
}

TEST_F(RecorderTest, TopByteOfAColourIsIgnored)
{
    MakeSmallChart(3, 4);
    GraphChannel[0].Color.store(0xFF0000FF); // red, as '8'
    Sample(1, 1);
    EXPECT_EQ(Column(1), "-.8-");
}

// ---- Values -------------------------------------------------------------------------------------------

struct HeightCase {
    const char* what;
    float min, max;
    uint16_t floor, ceiling;
    double value; // 100 is the channel's zero
    int height;
};

void PrintTo(const HeightCase& row, std::ostream* out)
{
    *out << row.what;
}

class HeightTest : public ChartTest, public testing::WithParamInterface<HeightCase>
{
};

TEST_P(HeightTest, ValueIsDrawnAtItsHeight)
{
    const HeightCase& row = GetParam();
    MakeSmallChart(3, 32);
    SetBand(0, row.min, row.max, row.floor, row.ceiling);
    GraphChannel[0].ValueZero.store(100);
    Sample(1, row.value);
    EXPECT_EQ(Column(1)[static_cast<size_t>(31 - row.height)], '0');
    EXPECT_EQ(GraphChannel[0].Previous.y, 31 - row.height);
}

INSTANTIATE_TEST_SUITE_P(
    Values, HeightTest,
    testing::Values(HeightCase{"in the middle", -5, 5, 10, 20, 100, 15},
                    HeightCase{"at the lower limit", -5, 5, 10, 20, 95, 10},
                    HeightCase{"at the upper limit", -5, 5, 10, 20, 105, 20},
                    HeightCase{"just below the upper limit", -5, 5, 10, 20, 104.99, 19},
                    HeightCase{"fractions of a pixel are cut", -5, 5, 10, 20, 97.9, 12},
                    HeightCase{"below", -5, 5, 10, 20, 94.5, 10},
                    HeightCase{"above", -5, 5, 10, 20, 105.5, 20},
                    HeightCase{"not a number", -5, 5, 10, 20, NotANumber, 20},
                    HeightCase{"infinity", -5, 5, 10, 20, Infinity, 20},
                    HeightCase{"minus infinity", -5, 5, 10, 20, -Infinity, 10},
                    HeightCase{"more than a float holds", -5, 5, 10, 20, 1e300, 20},
                    HeightCase{"less than a float holds", -5, 5, 10, 20, -1e300, 10},
                    HeightCase{"limits equal, value there", 3, 3, 10, 20, 103, 20},
                    HeightCase{"limits equal, value below", 3, 3, 10, 20, 90, 20},
                    HeightCase{"limits equal, value above", 3, 3, 10, 20, 110, 20},
                    HeightCase{"limits equal, minus infinity", 3, 3, 10, 20, -Infinity, 20},
                    HeightCase{"limits reversed, value between", 5, -5, 10, 20, 100, 20},
                    HeightCase{"limits reversed, value below both", 5, -5, 10, 20, 94, 10},
                    HeightCase{"limits reversed, value above both", 5, -5, 10, 20, 106, 20},
                    HeightCase{"band upside down, middle", -5, 5, 20, 10, 100, 15},
                    HeightCase{"band upside down, low", -5, 5, 20, 10, 96, 19},
                    HeightCase{"band upside down, above", -5, 5, 20, 10, 106, 10},
                    HeightCase{"band upside down, below", -5, 5, 20, 10, 94, 20},
                    HeightCase{"band of one row", -5, 5, 7, 7, 100, 7},
                    HeightCase{"huge limits", -2147483648.0f, 2147483648.0f, 0, 31, 1e9, 22},
                    HeightCase{"band beyond the picture, value inside", 0, 65535, 0, 65535, 120, 20}));

TEST_F(RecorderTest, BandBeyondThePictureIsClipped)
{
    MakeSmallChart(3, 16);
    SetBand(0, 0, 10, 16, 65535);
    GraphLines.store(0);
    for (const double value : {-1.0, 0.0, 5.0, 10.0, 11.0}) Sample(1, value);
    EXPECT_EQ(Picture(), Rows(16, "..."));
}

TEST_F(RecorderTest, HeightOfTheWholePictureIsALineToTheBottom)
{
    MakeSmallChart(4, 8);
    SetBand(0, 0, 8, 0, 8); // one more than the rows that there are
    Sample(1, 2);
    Sample(2, 8);
    EXPECT_EQ(GraphChannel[0].Previous.y, 65535);
    EXPECT_EQ(Column(1), ".....000");
    EXPECT_EQ(Column(2), ".......-");
}

// ---- Failures -----------------------------------------------------------------------------------------

class RecorderFailureTest : public ChartTest
{
protected:
    // A chart whose pictures could not be made.
    static void MakeFailedChart(int width, int height)
    {
        HeadlessFailCall("CreateDIBSection", 1, ERROR_NOT_ENOUGH_MEMORY, FailMode::FromHereOn);
        MakeSmallChart(width, height);
        HeadlessClearBoxes();
    }
    static std::vector<std::wstring> CaptionsOfSample(uint32_t second)
    {
        HeadlessClearBoxes();
        Sample(second, 1);
        return BoxCaptions();
    }
};

TEST_F(RecorderFailureTest, EachDrawingStepIsNamed)
{
    using Captions = std::vector<std::wstring>;
    MakeFailedChart(24, 6);
    EXPECT_EQ(CaptionsOfSample(8), (Captions{L"StretchBlt1", L"StretchBlt2", L"StretchBlt5", L"Polyline3"}));
    EXPECT_EQ(HeadlessBoxes()[0].text, L"Error text 6.\r\n"); // the handle is invalid
    EXPECT_EQ(CaptionsOfSample(9), (Captions{L"BitBlt3", L"Polyline3"}));
    EXPECT_EQ(CaptionsOfSample(10), (Captions{L"BitBlt3", L"BitBlt3", L"Polyline3"})); // minor grid
    EXPECT_EQ(CaptionsOfSample(10), (Captions{L"Polyline3"}));
    Sample(23, 1);
    EXPECT_EQ(CaptionsOfSample(24), (Captions{L"BitBlt3", L"Polyline1", L"Polyline2", L"Polyline3"}));
    GraphLines.store(0);
    EXPECT_EQ(CaptionsOfSample(24), Captions{}); // a pixel has no label
}

} // namespace
