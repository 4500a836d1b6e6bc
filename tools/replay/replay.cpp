#include "replay.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "chart_picture.h"
#include "graph/recorder.h"
#include "headless.h"
#include "link/reader_thread.h"
#include "link/write_queue.h"
#include "output.h"
#include "sky.h"
#include "ui/page_lines.h"

namespace
{

constexpr uint32_t PortNumber = 3;

void Feed(const std::string& name, bool printSamples)
{
    FILE* const file = name == "-" ? stdin : std::fopen(name.c_str(), "rb");
    if (!file) EndWithError(name + ": " + std::strerror(errno));
    uint32_t samples = GraphSampleCount.load();
    unsigned char buffer[65536];
    size_t count;
    while ((count = std::fread(buffer, 1, sizeof buffer, file)) > 0)
        for (size_t i = 0; i < count; ++i) {
            RouteReceivedByte(buffer[i]);
            if (samples == GraphSampleCount.load()) continue;
            samples = GraphSampleCount.load(); // a byte completes one message at most
            if (printSamples) PrintSample();
        }
    const bool failed = std::ferror(file);
    if (failed) EndWithError(name + ": " + std::strerror(errno));
    if (file != stdin) std::fclose(file);
}

} // namespace

void Replay(const ReplayOptions& options)
{
    HeadlessReset();
    HeadlessPort& port = HeadlessAddPort(PortNumber);
    StartTextView();
    PortHandle.store(
        CreateFileW(L"COM3:", GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    if (!options.chart.empty()) StartChartPicture(options.chartWidth, options.chartHeight);
    if (options.sky) OpenSkyDialog();
    for (const std::string& file : options.files) Feed(file, options.samples);

    if (!options.chart.empty()) WriteChartPicture(options.chart, options.chartWidth, options.chartHeight);
    if (options.page) PrintPage();
    if (options.stats) PrintStats();
    if (options.messages) PrintMessages();
    if (options.sky) PrintSky();
    if (options.commands) PrintCommands(port.writes);
    if (std::fflush(stdout) || std::ferror(stdout))
        EndWithError("standard output: " + std::string(std::strerror(errno)));
}
