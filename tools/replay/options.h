// Command line of toravane-replay.
#pragma once

#include <string>
#include <vector>

struct ReplayOptions {
    bool page = false, stats = false, samples = false, messages = false, sky = false, commands = false;
    std::string chart;                       // file to write the chart's picture to, "": none
    int chartWidth = 240, chartHeight = 268; // pixels
    std::vector<std::string> files;          // "-": standard input
};

// Fills `options`. --help and --version print and end the process with 0; anything wrong prints one line on
// standard error and ends it with 2.
void ParseOptions(int argumentCount, char** arguments, ReplayOptions& options);

// One line on standard error, exit code 2.
[[noreturn]] void EndWithError(const std::string& message);
