// SPDX-License-Identifier: MIT
// The option of commands that run until they are interrupted, or for a given time.
#pragma once

#include <string>

#include "console/event_loop.h"
#include "console/options.h"
#include "console/parser.h"

namespace console
{

struct ForOption {
    std::string seconds; // as typed

    void Define(Parser& parser)
    {
        parser.Option("--for", seconds, "end after so many seconds; else when interrupted")
            .TypeName("SECONDS");
    }

    // Without the option, the result is several decades. Throws Failure of the kind Usage.
    Duration Limit() const
    {
        constexpr Duration Unlimited = std::chrono::hours(24 * 366 * 50);
        return seconds.empty() ? Unlimited : Seconds(ParseSeconds(seconds, "--for"));
    }
};

} // namespace console
