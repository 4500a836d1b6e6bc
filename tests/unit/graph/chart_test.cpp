// SPDX-License-Identifier: MIT
#include "graph/chart.h"

#include <algorithm>

#include "graph/graph_mode.h"
#include "platform/start.h"
#include "resources/resource_ids.h"
#include "tests/unit/graph/support/chart_fixture.h"

namespace
{

// ---- Creation and end ---------------------------------------------------------------------------------

TEST_F(ChartTest, ChartIsMadeWhiteAndSettingsAreLoaded)
{
    StoreSetting(L"HDOPValueMax", 250);
    CreateChart(nullptr, 240, 180);
    EXPECT_EQ(GraphWidth.load(), 240);
    EXPECT_EQ(GraphHeight.load(), 180);
    EXPECT_EQ(Picture(), Rows(180, std::string(240, '.')));
    EXPECT_EQ(Column(0, BackgroundColumn), std::string(180, '.'));
    EXPECT_EQ(Column(0, TickColumn), std::string(180, '.'));
    EXPECT_EQ(GraphChannel[1].ValueMax.load(), 250);
    EXPECT_EQ(GraphChannel[0].PixelMax.load(), 180); // bands of that height
    EXPECT_TRUE(HeadlessBoxes().empty());
}

TEST_F(ChartTest, WithoutAnAreaOnlyTheSettingsAreLoaded)
{
    StoreSetting(L"HDOPValueMax", 250);
    for (const SIZE size : {SIZE{0, 268}, {240, 0}, {-5, 10}, {10, -5}}) {
        GraphChannel[1].ValueMax.store(10);
        CreateChart(nullptr, size.cx, size.cy);
        EXPECT_EQ(GraphChannel[1].ValueMax.load(), 250);
        EXPECT_EQ(HeadlessGdiObjects(), 0u);
        PaintChart(nullptr, 0);
        DeleteChart();
    }
    EXPECT_TRUE(HeadlessBoxes().empty());
}

TEST_F(ChartTest, SizesAreLimitedToWhatASweepCanCount)
{
    HeadlessFailCall("CreateDIBSection", 1, ERROR_NOT_ENOUGH_MEMORY, FailMode::FromHereOn);
    CreateChart(nullptr, 100000, 70000);
    EXPECT_EQ(GraphWidth.load(), 32767);
    EXPECT_EQ(GraphHeight.load(), 32767);
}

TEST_F(ChartTest, FailedFillIsNamed)
{
    HeadlessFailCall("StretchBlt", 1, ERROR_GEN_FAILURE);
    CreateChart(nullptr, 240, 268);
    EXPECT_EQ(BoxCaptions(), std::vector<std::wstring>{L"StretchBlt4"});
}

TEST_F(ChartTest, EverythingIsFreed)
{
    CreateChart(nullptr, 240, 268);
    EXPECT_EQ(HeadlessGdiObjects(), 8u); // four contexts with a bitmap each
    DeleteChart();
    EXPECT_EQ(HeadlessGdiObjects(), 0u);
    EXPECT_EQ(GraphWidth.load(), 0);
    EXPECT_EQ(GraphBitmap.Pixels, nullptr);
    DeleteChart(); // twice is harmless
    EXPECT_TRUE(HeadlessBoxes().empty());
}

TEST_F(ChartTest, ContextsThatCannotBeDeletedAreNamed)
{
    CreateChart(nullptr, 240, 268);
    HeadlessFailCall("DeleteDC", 1, ERROR_INVALID_HANDLE, FailMode::FromHereOn);
    DeleteChart();
    EXPECT_EQ(BoxCaptions(),
              (std::vector<std::wstring>{L"DeleteDC1", L"DeleteDC2", L"DeleteDC3", L"DeleteDC4"}));
}

TEST_F(ChartTest, AnyCallOfTheCreationMayFail)
{
    for (uint32_t n = 1;; ++n) {
        HeadlessClearFaults();
        HeadlessFailAnyCall(n, ERROR_NOT_ENOUGH_MEMORY);
        CreateChart(nullptr, 24, 30);
        const std::string failed = HeadlessFailedCall();
        HeadlessClearFaults();
        for (uint32_t second = 0; second < 30; ++second) Sample(second, second);
        DeleteChart();
        if (failed == "ReleaseDC") HeadlessReset(); // that one could not be given back
        EXPECT_EQ(HeadlessGdiObjects(), 0u) << failed;
        ResetRecorder();
        if (failed.empty()) break;
        ASSERT_LT(n, 500u);
    }
}

// ---- Painting -----------------------------------------------------------------------------------------

// A window's area in memory.
class PaintTest : public ChartTest
{
protected:
    static constexpr int Width = 12, Height = 8, Top = 3;

    PaintTest()
    {
        BITMAPINFO info = {};
        info.bmiHeader = {sizeof info.bmiHeader, Width, -(Height + Top), 1, 32, BI_RGB, 0, 0, 0, 0, 0};
        void* bits = nullptr;
        m_dc = CreateCompatibleDC(nullptr);
        SelectObject(m_dc, CreateDIBSection(m_dc, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
        m_pixels = static_cast<uint32_t*>(bits);
        MakeSmallChart(Width, Height);
    }
    std::vector<uint32_t> Paint()
    {
        std::fill_n(m_pixels, Width * (Height + Top), 0x123456u);
        PaintChart(m_dc, Top);
        return {m_pixels, m_pixels + Width * (Height + Top)};
    }

    HDC m_dc;
    uint32_t* m_pixels;
};

TEST_F(PaintTest, NewestColumnIsLeftmostAndTheOneBeforeItRightmost)
{
    for (uint32_t second = 0; second < 3 * Width; ++second) {
        Sample(second, second % 7);
        ASSERT_EQ(CurrentGraphColumn.load(), second % Width);
        const std::vector<uint32_t> shown = Paint();
        for (int i = 0; i < Top * Width; ++i) ASSERT_EQ(shown[static_cast<size_t>(i)], 0x123456u);
        for (int y = 0; y < Height; ++y)
            for (int x = 0; x < Width; ++x) {
                const int column = static_cast<int>((second + static_cast<uint32_t>(x)) % Width);
                ASSERT_EQ(shown[static_cast<size_t>((y + Top) * Width + x)],
                          GraphBitmap.Pixels[y * GraphBitmap.Stride + column]);
            }
    }
    EXPECT_TRUE(HeadlessBoxes().empty());
}

TEST_F(PaintTest, OnAScreenWithSmallDotsEachPixelIsLarger)
{
    DeleteChart();
    HeadlessSetDotsPerInch(192);
    MakeSmallChart(Width, Height);
    EXPECT_EQ(GraphWidth.load(), Width / 2);
    EXPECT_EQ(GraphHeight.load(), Height / 2);
    for (uint32_t second = 0; second < Width; ++second) Sample(second, second % 4);
    ASSERT_EQ(CurrentGraphColumn.load(), 5u);
    const std::vector<uint32_t> shown = Paint();
    for (int y = 0; y < Height; ++y)
        for (int x = 0; x < Width; ++x)
            ASSERT_EQ(shown[static_cast<size_t>((y + Top) * Width + x)],
                      GraphBitmap.Pixels[y / 2 * GraphBitmap.Stride + (5 + x / 2) % 6]);
}

TEST_F(PaintTest, AChartFillsItsAreaAtEachNumberOfDots)
{
    for (const int dots : {96, 120, 144, 168, 192}) {
        DeleteChart();
        HeadlessSetDotsPerInch(dots);
        MakeSmallChart(Width - 1, Height - 1);
        const std::vector<uint32_t> shown = Paint();
        EXPECT_EQ(shown[static_cast<size_t>((Height + Top - 1) * Width - 2)], 0xFFFFFFu) << dots;
    }
}

TEST_F(PaintTest, BeforeTheFirstSampleTheChartIsWhite)
{
    EXPECT_EQ(Paint().back(), 0xFFFFFFu);
}

TEST_F(PaintTest, AtColumnZeroOneCopyIsEnough)
{
    Sample(0, 1);
    HeadlessFailCall("BitBlt", 2, ERROR_GEN_FAILURE);
    Paint();
    EXPECT_EQ(HeadlessFailedCall(), "");
    HeadlessClearFaults();
    Sample(1, 1);
    HeadlessFailCall("BitBlt", 2, ERROR_GEN_FAILURE);
    Paint();
    EXPECT_EQ(HeadlessFailedCall(), "BitBlt");
}

// ---- In the program -----------------------------------------------------------------------------------

class ChartInProgramTest : public ChartTest
{
protected:
    static constexpr WPARAM KeyDown = 0x28;

    ChartInProgramTest()
    {
        StoreSetting(L"CommPortIdx", 3);
        StoreSetting(L"BaudrateIdx", 2);
        m_port = &HeadlessAddPort(3);
    }
    static int RunToTheEnd()
    {
        HeadlessUser([] { HeadlessCommand(HeadlessMainWindow(), COMMAND_EXIT); });
        return RunProgram(nullptr, L"", SW_SHOWNORMAL);
    }
    static void ToggleByKey()
    {
        HeadlessUser([] { HeadlessKey(HeadlessMainWindow(), KeyDown); });
    }
    void Fix(const char* time)
    {
        HeadlessReceive(*m_port, Sentence("GPGGA," + std::string(time) +
                                          ",5913.1000,N,01241.8000,E,1,07,1.5,80.0,M,0,M,,"));
    }
    static std::ptrdiff_t Boxes(const wchar_t* caption)
    {
        const std::vector<std::wstring> captions = BoxCaptions();
        return std::count(captions.begin(), captions.end(), caption);
    }

    HeadlessPort* m_port;
};

TEST_F(ChartInProgramTest, FixIsShownInTheWindowBelowTheMenu)
{
    constexpr int Bar = 26; // height of the headless command bar
    bool repainted = false;
    std::vector<uint32_t> shown, expected;
    ToggleByKey();
    HeadlessUser([&] {
        HeadlessClearInvalidations(HeadlessMainWindow());
        Fix("000107");
        HeadlessPass(200);
        repainted = !HeadlessInvalidations(HeadlessMainWindow()).empty();
        shown = HeadlessPixels(HeadlessMainWindow());
        EXPECT_EQ(CurrentGraphColumn.load(), 67);
        RECT client;
        GetClientRect(HeadlessMainWindow(), &client);
        EXPECT_EQ(GraphWidth.load(), client.right);
        EXPECT_EQ(GraphHeight.load(), client.bottom - Bar);
        for (int y = 0; y < GraphBitmap.Height; ++y)
            for (int x = 0; x < GraphBitmap.Width; ++x)
                expected.push_back(GraphBitmap.Pixels[y * GraphBitmap.Stride + (67 + x) % GraphBitmap.Width]);
    });
    EXPECT_EQ(RunToTheEnd(), 0);
    EXPECT_TRUE(repainted);
    ASSERT_GT(shown.size(), expected.size());
    EXPECT_TRUE(std::equal(expected.begin(), expected.end(),
                           shown.begin() + static_cast<std::ptrdiff_t>(shown.size() - expected.size())));
    EXPECT_EQ(PixelName(expected[expected.size() - static_cast<size_t>(240)]), '9'); // course 0, bottom left
    EXPECT_EQ(HeadlessGdiObjects(), 0u);
}

TEST_F(ChartInProgramTest, KeyToTheChartShowsItOnlyWithTheNextFix)
{
    HeadlessUser([] { HeadlessClearInvalidations(HeadlessMainWindow()); });
    ToggleByKey();
    HeadlessUser([&] { EXPECT_TRUE(HeadlessInvalidations(HeadlessMainWindow()).empty()); });
    RunToTheEnd();
}

TEST_F(ChartInProgramTest, FailedCopyIsToldOnceUntilItWorksAgain)
{
    const auto paint = [] {
        InvalidateRect(HeadlessMainWindow(), nullptr, FALSE);
        HeadlessPumpMessages();
    };
    ToggleByKey();
    HeadlessUser([&] {
        Fix("000001"); // column 1: two copies
        HeadlessPass(200);
        HeadlessFailCall("BitBlt", 1, ERROR_GEN_FAILURE, FailMode::FromHereOn);
        for (int i = 0; i < 5; ++i) paint();
        EXPECT_EQ(BoxCaptions(), (std::vector<std::wstring>{L"BitBlt1", L"BitBlt2"}));
        HeadlessClearFaults();
        paint();
        HeadlessFailCall("BitBlt", 1, ERROR_GEN_FAILURE, FailMode::FromHereOn);
        paint();
        EXPECT_EQ(Boxes(L"BitBlt1"), 2);
        EXPECT_EQ(Boxes(L"BitBlt2"), 2);
    });
    RunToTheEnd();
}

// A box on the reader thread would stop reception.
TEST_F(ChartInProgramTest, WhatFailsOnTheReaderThreadIsToldOncePerLabelByTheOther)
{
    HeadlessFailCall("CreateDIBSection", 1, ERROR_NOT_ENOUGH_MEMORY, FailMode::FromHereOn);
    HeadlessDuringBox([&] {
        for (const char* time : {"000002", "000003", "000004"}) Fix(time);
        HeadlessPass(1000);
        EXPECT_EQ(GraphSampleCount.load(), 4u); // reception goes on
    });
    HeadlessUser([&] {
        Fix("000001");
        HeadlessPass(1000);
    });
    RunToTheEnd();
    EXPECT_EQ(BoxCaptions(), (std::vector<std::wstring>{L"StretchBlt1", L"StretchBlt2", L"StretchBlt5",
                                                        L"Polyline3", L"BitBlt3"}));
    for (const HeadlessBox& box : HeadlessBoxes()) EXPECT_TRUE(box.onUserInterfaceThread);
}

// Pixels of a column must not drive each other out of a processor's cache.
TEST_F(PaintTest, RowsLieAnOddNumberOfCacheLinesApart)
{
    for (const int width : {1, 16, 17, 240, 256, 1024, 4096}) {
        DeleteChart();
        CreateChart(nullptr, width, 4);
        EXPECT_GE(GraphBitmap.Stride, width);
        EXPECT_LT(GraphBitmap.Stride, width + 32);
        EXPECT_EQ(GraphBitmap.Stride % 32, 16) << width;
    }
}

} // namespace
