// SPDX-License-Identifier: MIT
// The console program's command line: a line of the input is an argument. Nothing is carried out.
#include <cstdlib>

#include "console/command_line.h"
#include "tests/fuzz/input.h"

using namespace console;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    Input input(data, size);
    std::vector<std::string> arguments;
    while (!input.Ended() && arguments.size() < 40) arguments.push_back(input.Line());
    CommandLine line;
    Options options;
    try {
        const Action action = line.Parse(arguments, options);
        if (!action || line.chosen.empty()) std::abort();
    } catch (const CLI::ParseError& end) { // --help or --version
        if (end.get_exit_code() != 0) std::abort();
        if (line.Help().empty()) std::abort();
    } catch (const Failure& failure) {
        if (failure.kind != FailureKind::Usage || failure.message.empty()) std::abort();
    }
    return 0;
}
