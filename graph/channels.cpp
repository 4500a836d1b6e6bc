// SPDX-License-Identifier: MIT
#include "graph/channels.h"

#include "graph/latest_fix.h"

namespace
{

constexpr POINT NoPoint = {0, -1};
constexpr POINT Origin = {0, 0};

struct ChannelDefaults {
    const wchar_t* name;
    float zero, min, max;
    uint16_t floor, ceiling;
    COLORREF color;
};

// The bands stack without gaps from the bottom row up.
constexpr ChannelDefaults Defaults[] = {
    {L"SVsInFix", 0, 0, 12, 255, 267, 0xFFFF00},         // cyan
    {L"HDOP", 0, 0, 10, 235, 255, 0xC0C000},             // dark cyan
    {L"EHPE", 0, 0, 20, 215, 235, 0xFF00FF},             // magenta
    {L"Northing", 6592520, -40, 40, 175, 215, 0xC000C0}, // dark magenta
    {L"Easting", 723400, -40, 40, 135, 175, 0xFF0000},   // blue
    {L"VDOP", 0, 0, 10, 115, 135, 0xC00000},             // dark blue
    {L"EVPE", 0, 0, 25, 90, 115, 0x00FF00},              // green
    {L"Altitude", 70, -50, 50, 40, 90, 0x00C000},        // dark green
    {L"Speed", 0, 0, 2, 20, 40, 0x0000FF},               // red
    {L"Course", 0, 0, 360, 0, 20, 0x0000C0},             // dark red
};
static_assert(sizeof Defaults / sizeof *Defaults == ChannelCount);

constexpr GraphChannelRecord Initial(Channel channel)
{
    const ChannelDefaults& row = Defaults[channel];
    return {row.name,  row.zero, row.min, row.max, row.floor, row.ceiling,
            row.color, 1,        0,       0,       NoPoint,   Origin};
}

} // namespace

constinit GraphChannelRecord GraphChannel[ChannelCount] = {
    Initial(ChannelSvsInFix), Initial(ChannelHdop),  Initial(ChannelEhpe), Initial(ChannelNorthing),
    Initial(ChannelEasting),  Initial(ChannelVdop),  Initial(ChannelEvpe), Initial(ChannelAltitude),
    Initial(ChannelSpeed),    Initial(ChannelCourse)};

SYSTEMTIME FixTime;

void SetChannelValue(Channel channel, double value)
{
    GraphChannel[channel].Value = value;
    GraphChannel[channel].PublishedValue.store(static_cast<float>(value), std::memory_order_relaxed);
}

void ResetChannels()
{
    for (uint32_t i = 0; i < ChannelCount; ++i) {
        GraphChannelRecord& channel = GraphChannel[i];
        const ChannelDefaults& row = Defaults[i];
        channel.ValueZero.store(row.zero);
        channel.ValueMin.store(row.min);
        channel.ValueMax.store(row.max);
        channel.PixelMin.store(row.floor);
        channel.PixelMax.store(row.ceiling);
        channel.Color.store(row.color);
        channel.Visible.store(1);
        channel.Value = 0;
        channel.PublishedValue.store(0);
        channel.Previous = NoPoint;
        channel.Current = Origin;
    }
    FixTime = {};
    ResetLatestFix();
}
