#include "graph/channels.h"

namespace
{

constexpr POINT NoPoint = {0, -1};
constexpr POINT Origin = {0, 0};

} // namespace

// Name, zero, min, max, band, colour, visible. The bands stack without gaps from the bottom row up.
GraphChannelRecord GraphChannel[ChannelCount] = {
    {L"SVsInFix", 0, 0, 12, 255, 267, 0xFFFF00, 1, 0, 0, NoPoint, Origin},
    {L"HDOP", 0, 0, 10, 235, 255, 0xC0C000, 1, 0, 0, NoPoint, Origin},
    {L"EHPE", 0, 0, 20, 215, 235, 0xFF00FF, 1, 0, 0, NoPoint, Origin},
    {L"Northing", 6592520, -40, 40, 175, 215, 0xC000C0, 1, 0, 0, NoPoint, Origin},
    {L"Easting", 723400, -40, 40, 135, 175, 0xFF0000, 1, 0, 0, NoPoint, Origin},
    {L"VDOP", 0, 0, 10, 115, 135, 0xC00000, 1, 0, 0, NoPoint, Origin},
    {L"EVPE", 0, 0, 25, 90, 115, 0x00FF00, 1, 0, 0, NoPoint, Origin},
    {L"Altitude", 70, -50, 50, 40, 90, 0x00C000, 1, 0, 0, NoPoint, Origin},
    {L"Speed", 0, 0, 2, 20, 40, 0x0000FF, 1, 0, 0, NoPoint, Origin},
    {L"Course", 0, 0, 360, 0, 20, 0x0000C0, 1, 0, 0, NoPoint, Origin},
};

SYSTEMTIME FixTime;

void SetChannelValue(Channel channel, double value)
{
    GraphChannel[channel].Value = value;
    GraphChannel[channel].PublishedValue.store(static_cast<float>(value), std::memory_order_relaxed);
}

void ResetChannels()
{
    for (GraphChannelRecord& channel : GraphChannel) {
        channel.Value = 0;
        channel.PublishedValue.store(0);
        channel.Previous = NoPoint;
        channel.Current = Origin;
    }
    FixTime = {};
}
