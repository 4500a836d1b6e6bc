// SPDX-License-Identifier: MIT
#include "tests/unit/graph/support/chart_fixture.h"

char PixelName(uint32_t pixel)
{
    constexpr uint32_t Channels[] = {0x00FFFF, 0x00C0C0, 0xFF00FF, 0xC000C0, 0x0000FF, // 0x00RRGGBB
                                     0x0000C0, 0x00FF00, 0x00C000, 0xFF0000, 0xC00000};
    if (pixel == 0xFFFFFF) return '.';
    if (pixel == 0xC0C0C0) return '-';
    if (pixel == 0x808080) return '=';
    for (uint32_t i = 0; i < ChannelCount; ++i)
        if (pixel == Channels[i]) return static_cast<char>('0' + i);
    return '?';
}

void ChartTest::MakeSmallChart(int width, int height)
{
    CreateChart(nullptr, width, height);
    for (GraphChannelRecord& channel : GraphChannel) channel.Visible.store(0);
    GraphChannel[0].Visible.store(1);
    const uint16_t top = static_cast<uint16_t>(height - 1);
    SetBand(0, 0, static_cast<float>(top), 0, top);
}

void ChartTest::SetBand(uint32_t channel, float min, float max, uint16_t floor, uint16_t ceiling)
{
    GraphChannel[channel].ValueZero.store(0);
    GraphChannel[channel].ValueMin.store(min);
    GraphChannel[channel].ValueMax.store(max);
    GraphChannel[channel].PixelMin.store(floor);
    GraphChannel[channel].PixelMax.store(ceiling);
}

void ChartTest::SetTime(uint32_t secondOfDay)
{
    FixTime.wHour = static_cast<WORD>(secondOfDay / 3600);
    FixTime.wMinute = static_cast<WORD>(secondOfDay / 60 % 60);
    FixTime.wSecond = static_cast<WORD>(secondOfDay % 60);
}

void ChartTest::Sample(uint32_t secondOfDay, double value)
{
    SetTime(secondOfDay);
    SetChannelValue(ChannelSvsInFix, value);
    RecordGraphSample();
}

Rows ChartTest::Picture(const Surface& surface)
{
    Rows rows;
    for (int y = 0; y < surface.Height; ++y) {
        rows.emplace_back();
        for (int x = 0; x < surface.Width; ++x)
            rows.back() += PixelName(surface.Pixels[y * surface.Stride + x]);
    }
    return rows;
}

std::string ChartTest::Column(int x, const Surface& surface)
{
    std::string column;
    for (int y = 0; y < surface.Height; ++y) column += PixelName(surface.Pixels[y * surface.Stride + x]);
    return column;
}

std::vector<std::wstring> ChartTest::BoxCaptions()
{
    std::vector<std::wstring> captions;
    for (const HeadlessBox& box : HeadlessBoxes()) captions.push_back(box.caption);
    return captions;
}
