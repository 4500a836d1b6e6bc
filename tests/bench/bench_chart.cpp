// SPDX-License-Identifier: MIT
// The cost of one sample of the strip chart, with a new column each and ten visible channels: it must not
// grow with the chart's width. Also the cost of a repaint of the whole window.
//
// `bench_chart --samples WIDTH COUNT` only records this number of samples, so that their instructions can be
// counted.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>

#include "graph/background.h"
#include "graph/channels.h"
#include "graph/chart.h"
#include "graph/graph_settings.h"
#include "graph/recorder.h"
#include "headless.h"
#include "ui/page_lines.h"

namespace
{

constexpr int Height = 268; // of the default bands

void StartChart(int width)
{
    HeadlessReset();
    ResetChannels();
    ResetGraphSettings();
    ResetRecorder();
    CreateChart(nullptr, width, Height);
}

// One sample a second, with values that wander through their bands.
void RecordSecond(uint32_t second)
{
    FixTime.wHour = static_cast<WORD>(second / 3600 % 24);
    FixTime.wMinute = static_cast<WORD>(second / 60 % 60);
    FixTime.wSecond = static_cast<WORD>(second % 60);
    for (uint32_t i = 0; i < ChannelCount; ++i) {
        const GraphChannelRecord& channel = GraphChannel[i];
        const double share = (second * (i + 3) % 97) / 96.0;
        const double low = double{channel.ValueMin.load()}, high = double{channel.ValueMax.load()};
        SetChannelValue(static_cast<Channel>(i),
                        double{channel.ValueZero.load()} + low + share * (high - low));
    }
    RecordGraphSample();
}

void BM_Sample(benchmark::State& state)
{
    StartChart(static_cast<int>(state.range(0)));
    uint32_t second = 0;
    for (auto _ : state) RecordSecond(second++);
    DeleteChart();
}
BENCHMARK(BM_Sample)->Arg(240)->Arg(640)->Arg(1920)->Arg(4096);

// The same without the sample itself.
void BM_SampleOfAChartWithoutSize(benchmark::State& state)
{
    StartChart(0);
    uint32_t second = 0;
    for (auto _ : state) RecordSecond(second++);
}
BENCHMARK(BM_SampleOfAChartWithoutSize);

void BM_Background(benchmark::State& state)
{
    StartChart(240);
    for (auto _ : state) ResetGraphBackground();
    DeleteChart();
}
BENCHMARK(BM_Background);

// A window's pixels.
struct Screen {
    HDC dc = CreateCompatibleDC(nullptr);
    HBITMAP bitmap;
    HGDIOBJ before;

    Screen(int width, int height)
    {
        BITMAPINFO info = {};
        info.bmiHeader = {sizeof info.bmiHeader, width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
        void* pixels = nullptr;
        bitmap = CreateDIBSection(dc, &info, DIB_RGB_COLORS, &pixels, nullptr, 0);
        before = SelectObject(dc, bitmap);
    }
    ~Screen()
    {
        SelectObject(dc, before);
        DeleteObject(bitmap);
        DeleteDC(dc);
    }
};

void BM_PaintChart(benchmark::State& state)
{
    const int width = static_cast<int>(state.range(0));
    StartChart(width);
    for (uint32_t second = 0; second < 100; ++second) RecordSecond(second);
    const Screen screen(width, Height);
    for (auto _ : state) PaintChart(screen.dc, 0);
    DeleteChart();
}
BENCHMARK(BM_PaintChart)->Arg(240)->Arg(1920);

// The program's part of a page: its nineteen lines, of which the longest has fifty characters.
void BM_CopyPage(benchmark::State& state)
{
    for (uint32_t line = 0; line < TextLineCount; ++line)
        SetTextLine(line, L" EstimatedHorizontalPrecisionError: 12.34 m       ");
    wchar_t text[TextLineCapacity];
    for (auto _ : state)
        for (uint32_t line = 0; line < TextLineCount; ++line)
            benchmark::DoNotOptimize(CopyTextLine(line, text));
}
BENCHMARK(BM_CopyPage);

} // namespace

int main(int argc, char** argv)
{
    if (argc == 4 && std::strcmp(argv[1], "--samples") == 0) {
        StartChart(std::atoi(argv[2]));
        const uint32_t count = static_cast<uint32_t>(std::atoi(argv[3]));
        for (uint32_t second = 0; second < count; ++second) RecordSecond(second);
        return 0;
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
