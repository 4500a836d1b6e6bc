// SPDX-License-Identifier: MIT
// A command of the program: its options, and the action that carries it out.
#pragma once

#include <functional>

#include "console/options.h"
#include "console/output.h"
#include "console/parser.h"

namespace console
{

struct Context {
    Options options;
    Output output;
};

using Action = std::function<void(Context&)>;

struct Command {
    const char* name;
    const char* summary; // for --help and the manual page: a phrase without full stop

    // Adds the command's arguments and options (and its own commands, if it has some), with descriptions, and
    // returns the action that carries it out. The action throws Failure if the exit status is not 0.
    Action (*define)(Parser& parser);
};

// Refuses --json: for commands whose standard output is the result itself.
inline void RefuseJson(const Context& context, const char* command)
{
    if (context.options.json)
        Fail(FailureKind::Usage,
             std::string(command) + ": standard output is the result itself: leave out --json");
}

} // namespace console
