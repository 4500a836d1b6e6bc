// SPDX-License-Identifier: MIT
// A command of the program: its options, and what carries it out.
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
    // returns what carries it out. That throws Failure when it does not end with 0.
    Action (*define)(Parser& parser);
};

// For commands whose standard output is the result itself: refuses --json.
inline void RefuseJson(const Context& context, const char* command)
{
    if (context.options.json)
        Fail(FailureKind::Usage,
             std::string(command) + ": standard output is the result itself: leave out --json");
}

} // namespace console
