// SPDX-License-Identifier: MIT
#include "sky/sky_plot.h"

#include <algorithm>
#include <limits>

#include "sky/sky_objects.h"
#include "tests/unit/support/product_test.h"

namespace
{

using Shapes = std::vector<std::string>;

constexpr char Horizon[] = "Ellipse 40 72 140 172", Middle[] = "Ellipse 65 97 115 147";

bool operator==(const HeadlessTextOut& text, const HeadlessTextOut& other)
{
    return text.x == other.x && text.y == other.y && text.text == other.text;
}

class SkyPlot : public ProductTest
{
protected:
    SkyPlot()
    {
        HeadlessSetClientSize(240, 294);
        Window = MakeMainWindow();
    }

    void Draw() const
    {
        InvalidateRect(Window, nullptr, TRUE);
        PAINTSTRUCT paint;
        HDC dc = BeginPaint(Window, &paint);
        DrawSkyPlot(dc, 0);
        EndPaint(Window, &paint);
    }
    // The drawn objects, without the circles that are always there.
    Shapes DrawObjects() const
    {
        Draw();
        Shapes shapes = HeadlessPaintedShapes(Window);
        EXPECT_GE(shapes.size(), 2u);
        EXPECT_EQ(shapes[0], Horizon);
        EXPECT_EQ(shapes[1], Middle);
        shapes.erase(shapes.begin(), shapes.begin() + 2);
        return shapes;
    }
    std::vector<std::wstring> Labels() const
    {
        std::vector<std::wstring> labels;
        for (const HeadlessTextOut& text : HeadlessPaintedTexts(Window)) labels.push_back(text.text);
        labels.erase(labels.begin(), labels.begin() + 4); // directions
        return labels;
    }
    static void Place(uint32_t row, double elevation, double azimuth)
    {
        SkyObjects[row].plottedElevation.store(static_cast<float>(elevation));
        SkyObjects[row].plottedAzimuth.store(static_cast<float>(azimuth));
    }

    HWND Window;
};

constexpr uint32_t Prn120 = 2, Prn124 = 4, LastRow = 12;

TEST_F(SkyPlot, CirclesAndDirections) // characters are 6 x 13 pixels
{
    Draw();
    EXPECT_EQ(HeadlessPaintedShapes(Window), (Shapes{Horizon, Middle}));
    const std::vector<HeadlessTextOut> texts = HeadlessPaintedTexts(Window);
    ASSERT_EQ(texts.size(), 4u);
    EXPECT_TRUE(texts[0] == (HeadlessTextOut{90 - 9, 72 - 6, L" S "}));
    EXPECT_TRUE(texts[1] == (HeadlessTextOut{90 - 9, 172 - 6, L" N "}));
    EXPECT_TRUE(texts[2] == (HeadlessTextOut{40 - 9, 122 - 6, L" E "}));
    EXPECT_TRUE(texts[3] == (HeadlessTextOut{140 - 9, 122 - 6, L" W "}));
}

TEST_F(SkyPlot, GrowsWithTheDotsPerInch) // the labels do so by their font
{
    HeadlessSetDotsPerInch(144);
    Place(SunRow, 90, 0);
    Place(Prn120, 0, 0);
    Draw();
    EXPECT_EQ(HeadlessPaintedShapes(Window),
              (Shapes{"Ellipse 60 108 210 258", "Ellipse 98 146 172 220", "Ellipse 122 170 148 196",
                      "Rectangle 125 251 146 266"}));
    EXPECT_TRUE(HeadlessPaintedTexts(Window)[0] == (HeadlessTextOut{135 - 9, 108 - 6, L" S "}));
}

struct PlaceRow {
    const char* name;
    double elevation, azimuth;
    int x, y; // of the object's centre
};

// x = 90 + trunc(-r sin az + 0.5), y = 122 - trunc(-r cos az - 0.5) with r = (90 - elevation) 5/9
constexpr PlaceRow Places[] = {
    {"zenith", 90, 0, 90, 122},
    {"north on the horizon", 0, 0, 90, 172},
    {"east on the horizon", 0, 90, 40 + 1, 122},
    {"south on the horizon", 0, 180, 90, 122 - 49},
    {"west on the horizon", 0, 270, 140, 122},
    {"south-west half-way up", 45, 225, 90 + 18, 122 - 17},
    {"a little below the horizon", -9, 270, 145, 122},
    {"half a degree above the zenith", 90.5, 90, 90, 122},
};

TEST_F(SkyPlot, PlacesOfTheSun)
{
    for (const PlaceRow& row : Places) {
        Place(SunRow, row.elevation, row.azimuth);
        char expected[64];
        std::snprintf(expected, sizeof expected, "Ellipse %d %d %d %d", row.x - 9, row.y - 9, row.x + 9,
                      row.y + 9);
        EXPECT_EQ(DrawObjects(), Shapes{expected}) << row.name;
        const std::vector<HeadlessTextOut> texts = HeadlessPaintedTexts(Window);
        ASSERT_EQ(texts.size(), 5u);
        EXPECT_TRUE(texts[4] == (HeadlessTextOut{row.x - 3, row.y - 6, L"S"})) << row.name;
    }
}

TEST_F(SkyPlot, LabelsOfSunMoonAndSatellites)
{
    Place(SunRow, 30, 90);
    Place(MoonRow, 40, 180);
    Place(Prn124, 0, 270);
    const Shapes shapes = DrawObjects();
    ASSERT_EQ(shapes.size(), 3u);
    EXPECT_EQ(shapes[0].substr(0, 7), "Ellipse");
    EXPECT_EQ(shapes[1].substr(0, 7), "Ellipse");
    // The label is 18 x 13 pixels around 140, 122: from 131, 116 to 149, 129.
    EXPECT_EQ(shapes[2], "Rectangle 130 115 151 130");
    EXPECT_EQ(Labels(), (std::vector<std::wstring>{L"S", L"M", L"124"}));
}

TEST_F(SkyPlot, EachSatelliteHasItsNumber)
{
    for (uint32_t row = 0; row <= LastRow; ++row) Place(row, 45, 25.0 * row);
    Draw();
    EXPECT_EQ(Labels(), (std::vector<std::wstring>{L"S", L"M", L"120", L"122", L"124", L"126", L"127", L"128",
                                                   L"129", L"134", L"135", L"137", L"138"}));
}

TEST_F(SkyPlot, OrderAlternates)
{
    for (uint32_t row = 0; row <= LastRow; ++row) Place(row, 45, 25.0 * row);
    const Shapes forwards = DrawObjects();
    const std::vector<std::wstring> labels = Labels();
    const Shapes backwards = DrawObjects();
    const std::vector<std::wstring> labelsBackwards = Labels();
    EXPECT_EQ(labels.front(), L"S");
    EXPECT_EQ(labelsBackwards.front(), L"138");
    EXPECT_EQ(backwards, Shapes(forwards.rbegin(), forwards.rend()));
    EXPECT_EQ(labelsBackwards, std::vector<std::wstring>(labels.rbegin(), labels.rend()));
    EXPECT_EQ(DrawObjects(), forwards);
}

TEST_F(SkyPlot, ObjectsFarBelowTheHorizonAreNotDrawn)
{
    Place(SunRow, -10, 90);
    Place(MoonRow, -10.01, 90);
    Place(Prn120, -90, 0);
    Place(Prn124, std::numeric_limits<double>::quiet_NaN(), 0);
    EXPECT_EQ(DrawObjects(), Shapes{});
    EXPECT_EQ(Labels(), std::vector<std::wstring>{});
    Place(SunRow, -9.99, 90); // up to 5.6 pixels outside of the circle
    EXPECT_EQ(DrawObjects(), Shapes{"Ellipse 26 113 44 131"});
}

TEST_F(SkyPlot, ObjectsCoverTheCircles)
{
    Place(Prn120, 0, 270);
    Draw();
    const std::vector<uint32_t> pixels = HeadlessPixels(Window);
    const auto at = [&](int x, int y) { return pixels[static_cast<size_t>(y * 240 + x)]; };
    EXPECT_EQ(at(130, 120), 0u) << "the rectangle's outline";
    EXPECT_EQ(at(90, 97), 0u) << "the circle of 45 degrees";
    EXPECT_EQ(at(90, 110), 0xFFFFFFu) << "inside of it";
}

TEST_F(SkyPlot, FailingCallsAreNamed)
{
    struct Row {
        const char* call;
        uint32_t number;
        const wchar_t* caption;
    };
    constexpr Row Rows[] = {{"Ellipse", 1, L"Ellipse1"},
                            {"Ellipse", 2, L"Ellipse2"},
                            {"Ellipse", 3, L"Ellipse3"},
                            {"Rectangle", 1, L"Rectangle"}};
    Place(SunRow, 30, 90);
    Place(Prn120, 30, 180);
    for (const Row& row : Rows) {
        HeadlessClearFaults();
        HeadlessClearBoxes();
        HeadlessFailCall(row.call, row.number, ERROR_NOT_ENOUGH_MEMORY);
        Draw();
        EXPECT_TRUE(HeadlessBoxes().empty()); // a box would paint again during this paint
        HeadlessPumpMessages();
        ASSERT_EQ(HeadlessBoxes().size(), 1u) << row.call;
        EXPECT_EQ(HeadlessBoxes()[0].caption, row.caption);
        Draw();
    }
}

TEST_F(SkyPlot, FailuresOfAnEarlierRunAreForgotten)
{
    HeadlessFailCall("Ellipse", 1, ERROR_NOT_ENOUGH_MEMORY, FailMode::FromHereOn);
    for (int run = 0; run < 2; ++run) {
        ResetSkyPlot();
        Draw();
        HeadlessPumpMessages();
    }
    EXPECT_EQ(HeadlessBoxes().size(), 4u); // both circles, twice
}

TEST_F(SkyPlot, LastingFailuresAreToldOnce)
{
    Place(SunRow, 30, 90);
    Place(Prn120, 30, 180);
    for (const size_t times : {1u, 2u}) {
        HeadlessFailCall("Ellipse", 1, ERROR_NOT_ENOUGH_MEMORY, FailMode::FromHereOn);
        HeadlessFailCall("Rectangle", 1, ERROR_NOT_ENOUGH_MEMORY, FailMode::FromHereOn);
        for (int i = 0; i < 10; ++i) {
            Draw();
            HeadlessPumpMessages();
        }
        EXPECT_EQ(HeadlessBoxes().size(), 4 * times);
        HeadlessClearFaults();
        Draw(); // works again
    }
}

TEST_F(SkyPlot, LeavesNoDrawingObjects)
{
    const uint32_t before = HeadlessGdiObjects();
    Place(SunRow, 30, 90);
    Draw();
    EXPECT_EQ(HeadlessGdiObjects(), before);
}

} // namespace
