// SPDX-License-Identifier: MIT
// The option of commands that go on until they are interrupted, or for a time.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "console/event_loop.h"
#include "console/options.h"

namespace console
{

struct ForOption {
    std::string seconds; // as typed

    void Define(CLI::App& app)
    {
        app.add_option("--for", seconds, "end after so many seconds; else when interrupted")
            ->type_name("SECONDS");
    }

    // Decades without the option. Throws Failure of the kind Usage.
    Duration Limit() const
    {
        constexpr Duration Unlimited = std::chrono::hours(24 * 366 * 50);
        return seconds.empty() ? Unlimited : Seconds(ParseSeconds(seconds, "--for"));
    }
};

} // namespace console
