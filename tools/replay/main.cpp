// SPDX-License-Identifier: MIT
// toravane-replay: feeds recorded receiver logs to the program's own reception.
#include "common/command_line.h"
#include "options.h"
#include "replay.h"

int main(int argumentCount, char** arguments)
{
    constexpr int NothingValid = 1;
    ReplayOptions options;
    if (const auto exitCode = ParseOptions(argumentCount, arguments, options)) return *exitCode;
    const bool anyMessage = Replay(options);
    if (const int failed = FinishOutput(ReplayName)) return failed;
    if (anyMessage) return 0;
    FailTool(ReplayName, "no valid message of NMEA or SiRF binary was received");
    return NothingValid;
}
