// SPDX-License-Identifier: MIT
#include "replay.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <unistd.h>

#include "chart_picture.h"
#include "common/command_line.h"
#include "graph/channels.h"
#include "graph/recorder.h"
#include "headless.h"
#include "link/link_state.h"
#include "link/reader_thread.h"
#include "link/write_queue.h"
#include "output.h"
#include "sky.h"
#include "ui/page_lines.h"

namespace
{

constexpr uint32_t PortNumber = 3;

// Moves the first sample's place to the value 0 of its bands, as the button Zero does, and draws it there.
void ZeroAtFirstSample()
{
    for (const Channel channel : {ChannelNorthing, ChannelEasting, ChannelAltitude})
        GraphChannel[channel].ValueZero.store(GraphChannel[channel].PublishedValue.load());
    for (GraphChannelRecord& channel : GraphChannel) channel.Previous.y = -1;
    ResetRecorder();
    RecordGraphSample();
}

// Feeds bytes to the reception, message by message; each message makes at most one sample.
void FeedBytes(const unsigned char* bytes, size_t count, const ReplayOptions& options)
{
    while (count) {
        const uint32_t samples = GraphSampleCount.load();
        const uint32_t routed = RouteUpToMessage(bytes, static_cast<uint32_t>(count));
        bytes += routed;
        count -= routed;
        if (samples == GraphSampleCount.load()) continue;
        if (options.samples) PrintSample();
        if (options.zero && GraphSampleCount.load() == 1) ZeroAtFirstSample();
    }
}

// The current page, if it has changed since the last time.
void PrintChangedPage(std::string& last)
{
    std::string page = PageText();
    if (page == last) return;
    std::printf("%s%s", last.empty() ? "" : "\n", page.c_str());
    last = std::move(page);
}

// Reads the available bytes of a file, at least one; none at its end. Does not wait until the buffer is full,
// because a stream may stay open.
size_t ReadSome(std::FILE* file, unsigned char* buffer, size_t size, bool follow)
{
    if (!follow) return std::fread(buffer, 1, size, file);
    const auto count = read(fileno(file), buffer, static_cast<unsigned>(size));
    return count > 0 ? static_cast<size_t>(count) : 0;
}

void Feed(const std::string& name, const ReplayOptions& options, std::string& shownPage)
{
    std::FILE* const file = name == "-" ? stdin : std::fopen(name.c_str(), "rb");
    if (!file) EndWithError(name + ": " + std::strerror(errno));
    unsigned char buffer[65536];
    errno = 0;
    while (const size_t count = ReadSome(file, buffer, sizeof buffer, options.follow)) {
        FeedBytes(buffer, count, options);
        if (!options.follow) continue;
        if (options.page) PrintChangedPage(shownPage);
        if (const int failed = FinishOutput(ReplayName)) std::exit(failed);
    }
    if (errno) EndWithError(name + ": " + std::strerror(errno));
    if (file != stdin) std::fclose(file);
}

} // namespace

bool Replay(const ReplayOptions& options)
{
    HeadlessReset();
    HeadlessPort& port = HeadlessAddPort(PortNumber);
    StartTextView();
    PortHandle.store(
        CreateFileW(L"COM3:", GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    if (!options.chart.empty()) StartChartPicture(options.chartWidth, options.chartHeight);
    if (options.sky) OpenSkyDialog();
    std::string shownPage;
    for (const std::string& file : options.files) Feed(file, options, shownPage);

    if (!options.chart.empty()) WriteChartPicture(options.chart, options.chartWidth, options.chartHeight);
    if (options.page) PrintChangedPage(shownPage);
    if (options.stats) PrintStats();
    if (options.messages) PrintMessages();
    if (options.sky) PrintSky();
    if (options.commands) PrintCommands(port.writes);
    return NmeaMessageCount.load() + SirfMessageCount.load() > 0;
}
