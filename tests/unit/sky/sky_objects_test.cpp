// SPDX-License-Identifier: MIT
#include "sky/sky_objects.h"

#include <cmath>
#include <fstream>
#include <sstream>

#include "resources/resource_ids.h"
#include "tests/unit/support/product_test.h"
#include "ui/dialog_support.h"

namespace
{

constexpr double Degree = 3.14159265358979323846 / 180;
constexpr double ToNearest = 0.5; // is added to what is stored of Sun and Moon

SYSTEMTIME TimeOf(uint16_t year, uint8_t month, uint8_t day, uint8_t hour, uint8_t minute, uint8_t second)
{
    return {year, month, 0, day, hour, minute, second, 0};
}

class SkyObjectsTest : public ProductTest
{
protected:
    // A window with the dialog's three lines.
    static HWND OpenWindow()
    {
        WNDCLASSW plain = {};
        plain.lpszClassName = L"Sky";
        plain.lpfnWndProc = DefWindowProcW;
        RegisterClassW(&plain);
        HWND window = CreateWindowExW(0, L"Sky", L"", 0, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
        for (const intptr_t control :
             {CONTROL_SBAS_VISIBLE_SVS, CONTROL_SBAS_VISIBLE_AZIMUTHS, CONTROL_SBAS_VISIBLE_ELEVATIONS})
            CreateWindowExW(0, L"STATIC", L"?", WS_CHILD, 0, 0, 10, 10, window,
                            reinterpret_cast<HMENU>(control), nullptr, nullptr);
        PublishDialog(DialogKind::Sbas, window);
        HeadlessClearInvalidations(window);
        return window;
    }
    static void UpdateAt(double latitude, double longitude)
    {
        UpdateSkyObjects(TimeOf(2026, 6, 21, 12, 0, 0), latitude, longitude);
    }
    static std::vector<std::wstring> Lines(HWND window)
    {
        return {HeadlessText(window, CONTROL_SBAS_VISIBLE_SVS),
                HeadlessText(window, CONTROL_SBAS_VISIBLE_AZIMUTHS),
                HeadlessText(window, CONTROL_SBAS_VISIBLE_ELEVATIONS)};
    }
};

// Angle between two directions.
double Apart(double elevation, double azimuth, double otherElevation, double otherAzimuth)
{
    const double rise = std::sin((elevation - otherElevation) * Degree / 2);
    const double turn = std::sin((azimuth - otherAzimuth) * Degree / 2);
    const double h =
        rise * rise + std::cos(elevation * Degree) * std::cos(otherElevation * Degree) * turn * turn;
    return 2 * std::asin(std::sqrt(std::min(1.0, h))) / Degree;
}

TEST_F(SkyObjectsTest, AgreeWithAnAstronomyPackage)
{
    std::ifstream table(SKY_REFERENCE);
    ASSERT_TRUE(table) << SKY_REFERENCE;
    std::string line;
    std::getline(table, line); // headings
    int rows = 0, old = 0;
    double worstSun = 0, worstMoon = 0, worstSatellite = 0;
    while (std::getline(table, line)) {
        std::vector<double> cells;
        std::istringstream row(line);
        for (std::string cell; std::getline(row, cell, ',');) cells.push_back(std::stod(cell));
        ASSERT_EQ(cells.size(), 8 + 2 * SkyObjectCount) << line;
        const auto part = [&](size_t i) { return static_cast<uint8_t>(cells[i]); };
        ResetSkyObjects();
        UpdateSkyObjects(TimeOf(static_cast<uint16_t>(cells[0]), part(1), part(2), part(3), part(4), part(5)),
                         cells[6], cells[7]);
        for (size_t i = 0; i < SkyObjectCount; ++i) {
            const SkyObject& object = SkyObjects[i];
            const double elevation = cells[8 + 2 * i], azimuth = cells[9 + 2 * i];
            if (i == SunRow || i == MoonRow) {
                const double apart =
                    Apart(object.elevation - ToNearest, object.azimuth - ToNearest, elevation, azimuth);
                EXPECT_LE(apart, i == SunRow ? 0.05 : 0.15) << object.id << " in " << line;
                double& worst = i == SunRow ? worstSun : worstMoon;
                worst = std::max(worst, apart);
                continue;
            }
            EXPECT_NEAR(object.elevation, elevation, 0.01) << object.id << " in " << line;
            worstSatellite = std::max(worstSatellite, std::fabs(object.elevation - elevation));
            if (object.elevation < 0) {
                EXPECT_EQ(object.azimuth, 0) << object.id << " keeps its azimuth in " << line;
                continue;
            }
            const double apart = Apart(object.elevation, object.azimuth, elevation, azimuth);
            EXPECT_LE(apart, 0.01) << object.id << " in " << line;
            worstSatellite = std::max(worstSatellite, apart);
        }
        ++rows;
        old += cells[0] < 1583;
    }
    EXPECT_GE(rows, 200);
    EXPECT_GE(old, 5);
    std::printf("%d rows; degrees apart at most: Sun %.4f, Moon %.4f, satellites %.4f\n", rows, worstSun,
                worstMoon, worstSatellite);
}

TEST_F(SkyObjectsTest, TableBeginsBelowTheHorizon)
{
    constexpr int Ids[] = {100, 101, 120, 122, 124, 126, 127, 128, 129, 134, 135, 137, 138};
    constexpr double Longitudes[] = {0, 0, -15.5, -142, 21.5, 25, 64, 55, 140, 178, -133, 145, -107.3};
    for (size_t i = 0; i < SkyObjectCount; ++i) {
        EXPECT_EQ(SkyObjects[i].id, Ids[i]);
        EXPECT_EQ(SkyObjects[i].longitude, Longitudes[i]);
        EXPECT_EQ(SkyObjects[i].elevation, -90);
        EXPECT_EQ(SkyObjects[i].azimuth, 0);
    }
}

TEST_F(SkyObjectsTest, PlotReadsTheSamePlaces)
{
    UpdateAt(47.3, 8.5);
    for (const SkyObject& object : SkyObjects) {
        EXPECT_EQ(object.plottedElevation.load(), static_cast<float>(object.elevation));
        EXPECT_EQ(object.plottedAzimuth.load(), static_cast<float>(object.azimuth));
    }
}

TEST_F(SkyObjectsTest, SatelliteWestOfAReceiverOnTheEquator)
{
    UpdateAt(0, 0);
    EXPECT_NEAR(SkyObjects[2].azimuth, 270, 1e-9);
    EXPECT_GT(SkyObjects[2].elevation, 70);
}

TEST_F(SkyObjectsTest, SetSatelliteKeepsItsAzimuth)
{
    UpdateAt(50, 0);
    const double azimuth = SkyObjects[2].azimuth;
    EXPECT_GT(azimuth, 180);
    UpdateAt(50, 160);
    EXPECT_LT(SkyObjects[2].elevation, 0);
    EXPECT_EQ(SkyObjects[2].azimuth, azimuth);
    EXPECT_EQ(SkyObjects[2].plottedAzimuth.load(), static_cast<float>(azimuth));
}

TEST_F(SkyObjectsTest, LinesShowWhatIsInView)
{
    HWND window = OpenWindow();
    UpdateAt(47.3, 8.5);
    EXPECT_EQ(Lines(window), (std::vector<std::wstring>{L"120 124 126 127 128 ", L"211 163 158 117 125 ",
                                                        L"  31   34   33   14   20 "}));
    EXPECT_EQ(HeadlessInvalidations(window), std::vector<bool>{true}) << "once, with erase";
}

TEST_F(SkyObjectsTest, LinesBeginAnewWithEachFix)
{
    HWND window = OpenWindow();
    UpdateAt(47.3, 8.5);
    UpdateAt(90, 0); // nothing geostationary can be seen from a pole
    EXPECT_EQ(Lines(window), (std::vector<std::wstring>{L"", L"", L""}));
    EXPECT_EQ(HeadlessInvalidations(window).size(), 2u);
}

TEST_F(SkyObjectsTest, WithoutADialogOnlyTheTableChanges)
{
    HWND window = OpenWindow();
    WithdrawDialog();
    UpdateAt(47.3, 8.5);
    EXPECT_GT(SkyObjects[2].elevation, 0);
    EXPECT_EQ(Lines(window), (std::vector<std::wstring>{L"?", L"?", L"?"}));
    EXPECT_TRUE(HeadlessInvalidations(window).empty());
}

TEST_F(SkyObjectsTest, AnyInputGivesFinitePlaces)
{
    for (const double latitude : {-1e15, -90.0, 90.0, 120.0, 1e15})
        for (const double longitude : {-1e15, 0.0, 720.0, 1e15})
            for (const int rest : {0, 255}) {
                const auto b = static_cast<uint8_t>(rest);
                UpdateSkyObjects(TimeOf(static_cast<uint16_t>(rest * 257), b, b, b, b, b), latitude,
                                 longitude);
                for (const SkyObject& object : SkyObjects) {
                    EXPECT_TRUE(std::isfinite(object.elevation));
                    EXPECT_TRUE(std::isfinite(object.azimuth));
                }
            }
}

} // namespace
