#pragma once
// The command line.

#include "script.h"

#include <string>
#include <vector>

namespace receiver
{

struct Options {
    Config config;
    std::string link, play, script, record;
    std::vector<Action> startFaults; // from --fault, in order
    double speed = 1, durationS = 0; // duration 0: until stopped
    bool repeat = false, verbose = false, help = false, version = false;
};

// False with a one-line text in `error`. After --help or --version the rest is not looked at.
bool ParseOptions(const std::vector<std::string>& arguments, Options& options, std::string& error);

extern const char* const HelpText;

} // namespace receiver
