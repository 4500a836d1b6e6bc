// SPDX-License-Identifier: MIT
// The chart of any size with any settings and any samples, shown and saved in between.
#include "graph/chart.h"
#include "graph/background.h"
#include "graph/channels.h"
#include "graph/graph_settings.h"
#include "graph/recorder.h"
#include "graph/surface.h"
#include "tests/fuzz/input.h"
#include "tests/support/fresh_program.h"
#include "tests/support/whole_program.h"

namespace
{

void SetChannel(Input& input)
{
    GraphChannelRecord& channel = GraphChannel[input.Below(ChannelCount)];
    switch (input.Below(8)) {
    case 0: channel.ValueZero.store(input.Raw<float>()); break;
    case 1: channel.ValueMin.store(static_cast<float>(input.Raw<int32_t>())); break; // as they are stored
    case 2: channel.ValueMax.store(static_cast<float>(input.Raw<int32_t>())); break;
    case 3: channel.PixelMin.store(input.Raw<uint16_t>()); break;
    case 4: channel.PixelMax.store(input.Raw<uint16_t>()); break;
    case 5: channel.Color.store(input.Raw<uint32_t>()); break;
    case 6: channel.Visible.store(input.Byte()); break;
    default: // a band within the chart
        channel.PixelMin.store(input.Byte());
        channel.PixelMax.store(input.Byte());
        channel.ValueMin.store(static_cast<float>(input.Raw<int16_t>()));
        channel.ValueMax.store(static_cast<float>(input.Raw<int16_t>()));
    }
}

void Sample(Input& input)
{
    const uint8_t how = input.Byte();
    if (how & 1) { // any time at all
        FixTime.wHour = input.Byte();
        FixTime.wMinute = input.Byte();
        FixTime.wSecond = input.Byte();
    } else {
        const uint32_t second = input.Raw<uint32_t>() % 86400;
        FixTime.wHour = static_cast<WORD>(second / 3600);
        FixTime.wMinute = static_cast<WORD>(second / 60 % 60);
        FixTime.wSecond = static_cast<WORD>(second % 60);
    }
    for (uint32_t i = 0; i < how / 2 % 11u; ++i)
        SetChannelValue(static_cast<Channel>(i),
                        how & 64 ? input.Raw<double>() : input.Raw<int16_t>() / 16.0);
    RecordGraphSample();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    Input input(data, size);
    const int width = input.Byte() % 64, height = input.Byte(); // what a sample may cost grows with both

    StartAfresh();
    HDC screen = CreateCompatibleDC(nullptr);
    CreateChart(nullptr, width, height);
    while (!input.Ended()) switch (input.Below(8)) {
        case 0: SetChannel(input); break;
        case 1: GraphLines.store(input.Byte()); break;
        case 2: TimeScaleIdx.store(input.Byte() % 2 ? input.Raw<int32_t>() : input.Byte() % 6); break;
        case 3: ResetGraphBackground(); break;
        case 4: PaintChart(screen, input.Byte()); break;
        case 5:
            if (input.Byte() % 8) break; // slow
            SaveGraphSettings();
            LoadGraphSettings();
            break;
        default: Sample(input);
        }
    PaintChart(screen, 0);
    DeleteChart();
    DeleteDC(screen);
    ExpectNothingLeft();
    return 0;
}
