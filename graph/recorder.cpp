// SPDX-License-Identifier: MIT
#include "graph/recorder.h"

#include "graph/background.h"
#include "graph/channels.h"
#include "graph/graph_settings.h"
#include "graph/surface.h"
#include "ui/error_boxes.h"

std::atomic<uint32_t> GraphSampleCount{0};
std::atomic<uint16_t> CurrentGraphColumn{0};

namespace
{

constexpr int32_t NoColumn = -1;
int32_t LastGraphColumn = NoColumn; // latest column prepared; none until the first sample

// Seconds since the beginning of the UTC day. No decoder knows the day of the week, so the day does not
// count, and the sweep starts again each midnight.
uint32_t SecondOfDay()
{
    return ((FixTime.wDayOfWeek * 24u + FixTime.wHour) * 60u + FixTime.wMinute) * 60u + FixTime.wSecond;
}

void StartChart(int32_t column)
{
    LastGraphColumn = column;
    ResetGraphBackground();
    CheckGdiResult(CopyToAllColumns(GraphBitmap, BackgroundColumn), L"StretchBlt5");
}

void PrepareColumn(int32_t column, const TimeScaleRow& scale)
{
    CheckGdiResult(CopyColumn(GraphBitmap, column, BackgroundColumn), L"BitBlt3");
    if (column % scale.MajorGrid == 0)
        CheckGdiResult(FillColumn(GraphBitmap, column, GridColor), L"Polyline1");
    else if (column % scale.MinorGrid == 0)
        CheckGdiResult(CopyColumn(GraphBitmap, column, TickColumn), L"BitBlt3");
}

// Empties the columns after the latest one, up to and including the new one. If the fix time has gone back,
// the columns go round the right edge.
void PrepareColumns(int32_t current, int32_t width, const TimeScaleRow& scale)
{
    if (LastGraphColumn == current) return;
    while (LastGraphColumn != current) {
        LastGraphColumn = (LastGraphColumn + 1) % width;
        PrepareColumn(LastGraphColumn, scale);
    }
    for (GraphChannelRecord& channel : GraphChannel)
        channel.Previous.x = (current == 0 ? width : current) - 1;
}

// Height above the bottom row. Values outside the band's range, and values that are no number, are drawn on
// its edges; so only values between them are converted.
int32_t HeightOf(const GraphChannelRecord& channel)
{
    const float min = channel.ValueMin.load(), max = channel.ValueMax.load();
    const int32_t floor = channel.PixelMin.load(), ceiling = channel.PixelMax.load();
    const float value = static_cast<float>(channel.Value) - channel.ValueZero.load();
    if (!(value <= max) || max == min) return ceiling;
    if (value < min) return floor;
    return static_cast<int32_t>((value - min) / (max - min) * float(ceiling - floor) + float(floor));
}

void PlotChannel(GraphChannelRecord& channel, int32_t column, int32_t width, int32_t height, bool lines)
{
    const COLORREF color = channel.Color.load();
    POINT &previous = channel.Previous, &current = channel.Current;
    // No line leads to the first point of a channel, not even over the right edge: the line starts at the
    // point itself.
    const bool isFirst = previous.y == -1;
    current.y = static_cast<uint16_t>(height - HeightOf(channel) - 1); // a band may end above the top row
    if (previous.x == width - 1 && !isFirst && lines) {
        current.x = width; // the line leaves at the right edge and comes in again at the left
        CheckGdiResult(DrawLine(GraphBitmap, previous, current, color), L"Polyline2");
    }
    current.x = column;
    if (column == 0) previous.x = -1;
    if (isFirst) previous = current;
    if (lines)
        CheckGdiResult(DrawLine(GraphBitmap, previous, current, color), L"Polyline3");
    else
        DrawPixel(GraphBitmap, current, color);
    previous = current;
}

} // namespace

void RecordGraphSample()
{
    GraphSampleCount.store(GraphSampleCount.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
    const int32_t width = GraphWidth.load(), height = GraphHeight.load();
    if (!width || !height) return;

    const TimeScaleRow& scale = SelectedTimeScale();
    const int32_t current =
        static_cast<int32_t>(SecondOfDay() / scale.SecondsPerColumn % static_cast<uint32_t>(width));
    CurrentGraphColumn.store(static_cast<uint16_t>(current));
    if (LastGraphColumn == NoColumn)
        StartChart(current);
    else
        PrepareColumns(current, width, scale);
    const bool lines = GraphLines.load() != 0;
    for (GraphChannelRecord& channel : GraphChannel)
        if (channel.Visible.load()) PlotChannel(channel, current, width, height, lines);
}

void ResetRecorder()
{
    GraphSampleCount.store(0);
    CurrentGraphColumn.store(0);
    LastGraphColumn = NoColumn;
}
