// SPDX-License-Identifier: MIT
// Command line of toravane-replay.
#pragma once

#include <optional>
#include <string>
#include <vector>

constexpr const char* ReplayName = "toravane-replay";

struct ReplayOptions {
    bool page = false, stats = false, samples = false, messages = false, sky = false, commands = false;
    bool follow = false;                     // print samples and pages when they arrive
    bool zero = false;                       // the chart's positions count from the first sample
    std::string chart;                       // file to write the chart's picture to, "": none
    int chartWidth = 240, chartHeight = 268; // pixels
    std::vector<std::string> files;          // "-": standard input
};

// Fills `options`. No value if the tool has to continue; otherwise its exit code: after --help and --version,
// or after one line on standard error with the error.
std::optional<int> ParseOptions(int argumentCount, const char* const* arguments, ReplayOptions& options);

// One line on standard error, exit code 2.
[[noreturn]] void EndWithError(const std::string& message);
