// SPDX-License-Identifier: MIT
// The command line of toravane-receiver.
#pragma once

#include "script.h"

#include <optional>
#include <string>
#include <vector>

namespace receiver
{

constexpr const char* ProgramName = "toravane-receiver";

struct Options {
    Config config;
    std::string link, play, script, record;
    std::vector<Action> startFaults; // from --fault, in order
    double speed = 1, durationS = 0; // duration 0: until stopped
    bool repeat = false, verbose = false;
};

// Fills `options`. No value if the receiver has to start; otherwise the program's exit code: after --help and
// --version, or after one line on standard error with the error.
std::optional<int> ParseOptions(int argumentCount, const char* const* arguments, Options& options);

} // namespace receiver
