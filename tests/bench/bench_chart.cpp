// What one sample of the strip chart costs: a new column each, ten visible channels. It must not grow with
// the chart's width.

#include <benchmark/benchmark.h>

#include "graph/background.h"
#include "graph/channels.h"
#include "graph/chart.h"
#include "graph/graph_settings.h"
#include "graph/recorder.h"
#include "headless.h"

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

} // namespace
