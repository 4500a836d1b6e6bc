// SPDX-License-Identifier: MIT
// The command line: global options, and all commands.
#pragma once

#include <CLI/CLI.hpp>
#include <span>
#include <utility>
#include <vector>

#include "console/command.h"

namespace console
{

// All commands, in the order of the help.
std::span<const Command> Commands();

// The whole command line, parsed or not; the manual page and the completion are made from it, too.
class CommandLine
{
public:
    CommandLine();

    CLI::App& App() { return app_; }

    // Parses the arguments into `options` and returns the chosen command's action. Its name, as in "profile
    // apply", is in `chosen` even if parsing throws. Throws Failure of the kind Usage, and CLI::ParseError
    // with the exit code 0 for --help and --version.
    Action Parse(std::vector<std::string> arguments, Options& options);

    // Help of the command for which it was requested.
    std::string Help() const;

    std::string chosen;

private:
    CLI::App app_;
    std::string port_, rate_, timeout_; // as typed
    std::vector<std::string> helpWords_;
    Options flags_;
    std::vector<std::pair<CLI::App*, Action>> actions_;
};

} // namespace console
