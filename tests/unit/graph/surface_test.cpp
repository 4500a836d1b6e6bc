// SPDX-License-Identifier: MIT
#include "graph/surface.h"

#include <random>

#include "tests/unit/graph/support/chart_fixture.h"

namespace
{

constexpr COLORREF Cyan = 0xFFFF00; // shown as '0'

class SurfaceTest : public ProductTest
{
protected:
    static constexpr int Width = 7, Height = 5, Margin = 64;

    // A white picture inside a larger one, whose other pixels must stay as they are.
    SurfaceTest() : m_pixels(Margin + Width * Height + Margin, 0xFFFFFF)
    {
        m_surface = {m_pixels.data() + Margin, Width, Height, Width};
    }
    ~SurfaceTest() override
    {
        for (int i = 0; i < Margin; ++i) {
            EXPECT_EQ(m_pixels[static_cast<size_t>(i)], 0xFFFFFFu);
            EXPECT_EQ(m_pixels[m_pixels.size() - 1 - static_cast<size_t>(i)], 0xFFFFFFu);
        }
    }

    Rows Picture() const
    {
        Rows rows;
        for (int y = 0; y < Height; ++y) {
            rows.emplace_back();
            for (int x = 0; x < Width; ++x) rows.back() += PixelName(m_surface.Pixels[y * Width + x]);
        }
        return rows;
    }

    Rows Line(POINT from, POINT to)
    {
        std::fill(m_pixels.begin(), m_pixels.end(), 0xFFFFFFu);
        EXPECT_EQ(DrawLine(m_surface, from, to, Cyan), 1);
        return Picture();
    }

    std::vector<uint32_t> m_pixels;
    Surface m_surface;
};

TEST_F(SurfaceTest, ColoursAreStoredWithRedOnTop)
{
    EXPECT_EQ(DrawPixel(m_surface, {0, 0}, 0x112233), 1);
    EXPECT_EQ(m_surface.Pixels[0], 0x332211u);
}

TEST_F(SurfaceTest, TopByteOfAColourIsIgnored)
{
    DrawPixel(m_surface, {0, 0}, 0xAB112233);
    EXPECT_EQ(m_surface.Pixels[0], 0x332211u);
}

TEST_F(SurfaceTest, LineDrawsBothEnds)
{
    EXPECT_EQ(Line({1, 1}, {5, 1}), (Rows{".......", ".00000.", ".......", ".......", "......."}));
    EXPECT_EQ(Line({3, 0}, {3, 4}), (Rows{"...0...", "...0...", "...0...", "...0...", "...0..."}));
    EXPECT_EQ(Line({2, 2}, {2, 2}), (Rows{".......", ".......", "..0....", ".......", "......."}));
    EXPECT_EQ(Line({1, 0}, {5, 4}), (Rows{".0.....", "..0....", "...0...", "....0..", ".....0."}));
}

TEST_F(SurfaceTest, SlantedLineStepsInItsMiddle)
{
    EXPECT_EQ(Line({0, 0}, {6, 2}), (Rows{"00.....", "..000..", ".....00", ".......", "......."}));
    EXPECT_EQ(Line({2, 4}, {3, 0}), (Rows{"...0...", "...0...", "...0...", "..0....", "..0...."}));
}

TEST_F(SurfaceTest, LineIsTheSameFromBothEnds)
{
    std::mt19937 random(1);
    std::uniform_int_distribution<LONG> place(-9, 12);
    for (int i = 0; i < 5000; ++i) {
        const POINT a = {place(random), place(random)}, b = {place(random), place(random)};
        EXPECT_EQ(Line(a, b), Line(b, a)) << a.x << ',' << a.y << ' ' << b.x << ',' << b.y;
    }
}

// By the definition: of all pixels of a column (or row) the nearest to the ideal line; of two equally near
// ones, the lower or right one.
TEST_F(SurfaceTest, ClippedLineIsThePartOfTheWholeOneThatCanBeSeen)
{
    std::mt19937 random(2);
    std::uniform_int_distribution<LONG> place(-40, 40);
    for (int i = 0; i < 5000; ++i) {
        const POINT a = {place(random), place(random)}, b = {place(random), place(random)};
        const bool steep = std::abs(b.y - a.y) > std::abs(b.x - a.x);
        Rows expected(Height, std::string(Width, '.'));
        for (int y = 0; y < Height; ++y)
            for (int x = 0; x < Width; ++x) {
                const int along = steep ? y : x, across = steep ? x : y;
                const int a0 = steep ? a.y : a.x, a1 = steep ? a.x : a.y;
                const int b0 = steep ? b.y : b.x, b1 = steep ? b.x : b.y;
                if (along < std::min(a0, b0) || along > std::max(a0, b0)) continue;
                const double ideal = a0 == b0 ? a1 : a1 + double(b1 - a1) * (along - a0) / (b0 - a0);
                if (std::floor(ideal + 0.5 + 1e-9) == across)
                    expected[static_cast<size_t>(y)][static_cast<size_t>(x)] = '0';
            }
        EXPECT_EQ(Line(a, b), expected) << a.x << ',' << a.y << ' ' << b.x << ',' << b.y;
    }
}

TEST_F(SurfaceTest, FarEndsAreClippedWithoutWalkingThere)
{
    EXPECT_EQ(Line({3, 2}, {3, 65535}), (Rows{".......", ".......", "...0...", "...0...", "...0..."}));
    constexpr LONG Far = 1 << 29;
    EXPECT_EQ(Line({-Far, -Far}, {Far, Far}), (Rows{"0......", ".0.....", "..0....", "...0...", "....0.."}));
    EXPECT_EQ(Line({-Far, 2}, {Far, 2}), (Rows{".......", ".......", "0000000", ".......", "......."}));
}

TEST_F(SurfaceTest, WhatLiesOutsideIsLeftOut)
{
    const Rows white(Height, std::string(Width, '.'));
    for (const POINT point : {POINT{-1, 0}, {0, -1}, {Width, 0}, {0, Height}, {3, 65535}}) {
        EXPECT_EQ(DrawPixel(m_surface, point, Cyan), 1);
        EXPECT_EQ(Picture(), white);
    }
    EXPECT_EQ(Line({-5, 0}, {-1, 4}), white);
    for (const int column : {-1, Width}) {
        EXPECT_EQ(FillColumn(m_surface, column, Cyan), 1);
        EXPECT_EQ(CopyColumn(m_surface, column, m_surface), 1);
        EXPECT_EQ(Picture(), white);
    }
}

TEST_F(SurfaceTest, FillsOneColumn)
{
    EXPECT_EQ(FillColumn(m_surface, 6, Cyan), 1);
    for (const std::string& row : Picture()) EXPECT_EQ(row, "......0");
}

TEST_F(SurfaceTest, CopiesColumnZeroOfAPattern)
{
    uint32_t pixels[Height * 3] = {};
    const Surface pattern = {pixels, 2, Height, 3};
    FillColumn(pattern, 0, 0xC0C0C0);
    DrawPixel(pattern, {0, 1}, Cyan);
    DrawPixel(pattern, {1, 0}, 0x808080); // of an ignored column
    EXPECT_EQ(CopyColumn(m_surface, 2, pattern), 1);
    EXPECT_EQ(Picture(), (Rows{"..-....", "..0....", "..-....", "..-....", "..-...."}));
    EXPECT_EQ(CopyToAllColumns(m_surface, pattern), 1);
    EXPECT_EQ(Picture(), (Rows{"-------", "0000000", "-------", "-------", "-------"}));
}

TEST_F(SurfaceTest, WithoutPixelsEveryProcedureFails)
{
    const Surface none = {};
    const auto failed = [](int32_t result) {
        const bool told = GetLastError() == ERROR_INVALID_HANDLE;
        SetLastError(ERROR_SUCCESS);
        return result == 0 && told;
    };
    EXPECT_TRUE(failed(FillColumn(none, 0, Cyan)));
    EXPECT_TRUE(failed(CopyColumn(none, 0, m_surface)));
    EXPECT_TRUE(failed(CopyColumn(m_surface, 0, none)));
    EXPECT_TRUE(failed(CopyToAllColumns(none, m_surface)));
    EXPECT_TRUE(failed(CopyToAllColumns(m_surface, none)));
    EXPECT_TRUE(failed(DrawLine(none, {0, 0}, {1, 1}, Cyan)));
    EXPECT_TRUE(failed(DrawPixel(none, {0, 0}, Cyan)));
}

} // namespace
