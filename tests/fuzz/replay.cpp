// SPDX-License-Identifier: MIT
// The replay tool with any input: two bytes choose the options, all others are the log.
#include "tools/replay/replay.h"

#include <cstdio>
#include <cstdlib>
#include <string>

#include "graph/chart.h"
#include "tests/fuzz/input.h"
#include "tests/support/fresh_program.h"
#include "tests/support/whole_program.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    Input input(data, size);
    const uint8_t is = input.Byte(), chartSize = input.Byte();
    std::string log = input.Rest();
    if (log.empty()) return 0;

    ReplayOptions options;
    options.page = is & 1;
    options.stats = is & 2;
    options.samples = is & 4;
    options.messages = is & 8;
    options.sky = is & 16;
    options.commands = is & 32;
    // Seldom: compressing the picture takes most of the time.
    if (is >= 0xC0) options.chart = "/dev/null";
    options.chartWidth = 1 + chartSize % 16 * 4;
    options.chartHeight = 1 + chartSize / 16 * 20;
    options.files = {"-"};

    std::FILE* const stdinBefore = stdin;
    std::FILE* const stdoutBefore = stdout;
    stdin = fmemopen(log.data(), log.size(), "r");
    static std::FILE* const nowhere = std::fopen("/dev/null", "w");
    stdout = nowhere;
    if (!stdin || !stdout) std::abort();
    StartAfresh();
    Replay(options);
    std::fclose(stdin);
    stdin = stdinBefore;
    stdout = stdoutBefore;
    DeleteChart();
    CloseEverything();
    return 0;
}
