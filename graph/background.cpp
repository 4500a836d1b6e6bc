// SPDX-License-Identifier: MIT
#include "graph/background.h"

#include <cmath>

#include "graph/channels.h"
#include "graph/surface.h"
#include "ui/error_boxes.h"

namespace
{

// Limit of the loops; two numbers are never so many powers of ten apart.
constexpr uint32_t MaxScalingRounds = 40;

// Largest power of ten that is not above `range`. It does not use the library's logarithm: its last digit,
// and with it the number of ticks, differs between systems.
double PowerOfTenBelow(double range)
{
    double power = 1;
    for (uint32_t i = 0; i < MaxScalingRounds && power * 10 <= range; ++i) power *= 10;
    for (uint32_t i = 0; i < MaxScalingRounds && power > range; ++i) power /= 10;
    return power;
}

// Distance between two ticks as a value: 1, 2 or 5 times a power of ten, and ten to twenty pixels.
float TickStep(uint32_t channel, float range)
{
    float step = static_cast<float>(PowerOfTenBelow(static_cast<double>(range)));
    const auto spacing = [&] { return TickSpacingPixels(channel, step); };
    for (uint32_t i = 0; i < MaxScalingRounds && spacing() >= 100; ++i) step *= 0.1f;
    if (spacing() >= 50) step *= 0.2f;
    if (spacing() >= 20) step *= 0.5f;
    for (uint32_t i = 0; i < MaxScalingRounds && spacing() <= 1; ++i) step *= 10.0f;
    if (spacing() < 5) step *= 5.0f;
    if (spacing() <= 9) step *= 2.0f;
    return step;
}

void DrawRow(const Surface& pattern, int32_t height, COLORREF color)
{
    DrawPixel(pattern, {0, GraphHeight.load() - 1 - height}, color);
}

void DrawEdge(int32_t height)
{
    DrawRow(TickColumn, height, BandEdgeColor);
    DrawRow(BackgroundColumn, height, GridColor);
}

} // namespace

uint16_t TickSpacingPixels(uint32_t channel, float step)
{
    const GraphChannelRecord& record = GraphChannel[channel];
    const int32_t band = int32_t{record.PixelMax.load()} - record.PixelMin.load();
    const float spacing = std::fabs(step / (record.ValueMax.load() - record.ValueMin.load()) * float(band));
    return spacing < 65535.0f ? static_cast<uint16_t>(spacing) : uint16_t{65535};
}

void DrawChannelTicks(uint32_t channel)
{
    const GraphChannelRecord& record = GraphChannel[channel];
    const float min = record.ValueMin.load(), max = record.ValueMax.load();
    const int32_t floor = record.PixelMin.load(), ceiling = record.PixelMax.load();
    if (min == max || floor == ceiling) return;

    const float low = min < max ? min : max, high = min < max ? max : min;
    const double step = double{TickStep(channel, high - low)};
    // A tick on a limit is the band's edge. Within a thousandth of a step from the edge no tick is drawn: an
    // error in the last bit of a step must not cause a tick beside the edge.
    const double margin = step / 1000;
    // Ticks are counted: if the limits have many digits, adding a small step to a tick's value would not
    // change it.
    const double firstTick = std::floor(double{low} / step), lastTick = std::ceil(double{high} / step);
    const uint32_t mostTicks = GraphHeight.load() + 2u;
    for (uint32_t i = 0; i < mostTicks && firstTick + i <= lastTick; ++i) {
        const double value = (firstTick + i) * step;
        if (!(value - double{min} > margin && double{max} - value > margin)) continue;
        const double share = (value - double{min}) / (double{max} - double{min});
        DrawRow(TickColumn, static_cast<int32_t>(static_cast<float>(share * (ceiling - floor) + floor)),
                GridColor);
    }

    DrawEdge(floor);
    DrawEdge(ceiling);
}

void ResetGraphBackground()
{
    if (!GraphWidth.load() || !GraphHeight.load()) return;
    CheckGdiResult(FillColumn(BackgroundColumn, 0, ColorWhite), L"StretchBlt1");
    CheckGdiResult(FillColumn(TickColumn, 0, ColorWhite), L"StretchBlt2");
    for (uint32_t i = 0; i < ChannelCount; ++i)
        if (GraphChannel[i].Visible.load()) DrawChannelTicks(i);
}
