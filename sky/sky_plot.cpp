// SPDX-License-Identifier: MIT
#include "sky/sky_plot.h"

#include <cmath>

#include "sky/sky_objects.h"
#include "sky/vectors_and_time.h"
#include "text/format.h"
#include "ui/error_boxes.h"
#include "ui/screen_scale.h"

namespace
{

constexpr int CentreX = 90, CentreY = 122, HorizonRadius = 50, MiddleRadius = 25, BodyRadius = 9; // pixels
constexpr double PixelsPerDegree = 5.0 / 9, LowestElevation = -10;
constexpr uint32_t LabelCapacity = 12;

int StartRow = 0, Step = 1; // of the next picture

struct Shape {
    const wchar_t* caption; // of the box when it cannot be drawn
    bool failed = false;    // at the last attempt
};
Shape Horizon = {L"Ellipse1"}, MiddleCircle = {L"Ellipse2"}, Body = {L"Ellipse3"}, Plate = {L"Rectangle"};

void DrawCircle(HDC dc, int x, int y, int radius, Shape& shape)
{
    CheckPaint(Ellipse(dc, x - radius, y - radius, x + radius, y + radius), shape.caption, shape.failed);
}

// Rectangle of a label whose centre is at the place.
RECT PlaceLabel(HDC dc, int x, int y, const wchar_t* label)
{
    RECT area = {};
    DrawTextW(dc, label, -1, &area, DT_CALCRECT);
    const int width = area.right - area.left, height = area.bottom - area.top;
    area.left = x - width / 2;
    area.top = y - height / 2;
    area.right = area.left + width;
    area.bottom = area.top + height;
    return area;
}

void DrawDirection(HDC dc, int x, int y, const wchar_t* label)
{
    RECT area = PlaceLabel(dc, x, y, label);
    DrawTextW(dc, label, -1, &area, DT_LEFT);
}

// South is up and east is left, as in a map of the sky seen from below.
void DrawObject(HDC dc, int top, const SkyObject& object)
{
    const double elevation = object.plottedElevation.load(), azimuth = object.plottedAzimuth.load();
    if (!(elevation > LowestElevation)) return;
    const double radius = (90 - elevation) * PixelsPerDegree;
    const double angle = (azimuth + 180) * RadiansPerDegree;
    const uint8_t x = static_cast<uint8_t>(CentreX + static_cast<int>(std::sin(angle) * radius + 0.5));
    const uint8_t y = static_cast<uint8_t>(CentreY - static_cast<int>(std::cos(angle) * radius - 0.5));

    const bool isSun = &object == &SkyObjects[SunRow], isMoon = &object == &SkyObjects[MoonRow];
    wchar_t label[LabelCapacity];
    if (isSun || isMoon)
        Format(label, L"%s", isSun ? L"S" : L"M");
    else
        Format(label, L"%d", object.id);
    const int centreX = OnScreen(x), centreY = top + OnScreen(y);
    RECT area = PlaceLabel(dc, centreX, centreY, label);
    if (isSun || isMoon)
        DrawCircle(dc, centreX, centreY, OnScreen(BodyRadius), Body);
    else
        CheckPaint(Rectangle(dc, area.left - 1, area.top - 1, area.right + 2, area.bottom + 1), Plate.caption,
                   Plate.failed);
    DrawTextW(dc, label, -1, &area, DT_LEFT);
}

} // namespace

void DrawSkyPlot(HDC dc, int top)
{
    const int centreX = OnScreen(CentreX), centreY = top + OnScreen(CentreY),
              radius = OnScreen(HorizonRadius);
    DrawCircle(dc, centreX, centreY, radius, Horizon);
    DrawCircle(dc, centreX, centreY, OnScreen(MiddleRadius), MiddleCircle);
    DrawDirection(dc, centreX, centreY - radius, L" S ");
    DrawDirection(dc, centreX, centreY + radius, L" N ");
    DrawDirection(dc, centreX - radius, centreY, L" E ");
    DrawDirection(dc, centreX + radius, centreY, L" W ");

    constexpr int LastRow = static_cast<int>(SkyObjectCount) - 1;
    for (int row = StartRow; row >= 0 && row <= LastRow; row += Step) DrawObject(dc, top, SkyObjects[row]);
    StartRow = LastRow - StartRow;
    Step = -Step;
}

void ResetSkyPlot()
{
    StartRow = 0;
    Step = 1;
    Horizon.failed = MiddleCircle.failed = Body.failed = Plate.failed = false;
}
