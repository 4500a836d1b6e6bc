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

// True if an argument takes any number of values.
bool Repeats(const CLI::Option& option);

// The whole command line, parsed or not; the manual page and the completion are made from it, too.
class CommandLine
{
public:
    CommandLine();

    const CLI::App& App() const { return app_; }
    const ParserNotes& Notes() const { return notes_; }

    // Parses the arguments into `options` and returns the chosen command's action. Its name, as in "profile
    // apply", is in `chosen` even if parsing throws. Throws Failure of the kind Usage, and CLI::ParseError
    // with the exit code 0 for --help and --version.
    Action Parse(std::vector<std::string> arguments, Options& options);

    // Help of the command for which it was requested.
    std::string Help() const;

    std::string chosen;

private:
    // The command that was given, an inner one if there is one; the program itself if there is none.
    const CLI::App& Given() const;

    void DefineHelp();
    void TakeRate(Options& options) const;

    // Throws Failure for a command that does not exist, with the place where the commands are listed.
    [[noreturn]] static void FailUnknown(const CLI::App& within, const std::string& word);

    // Throws Failure for arguments that the library did not accept.
    [[noreturn]] void FailParsing(const CLI::ParseError& error) const;

    CLI::App app_;
    ParserNotes notes_;
    std::string port_, rate_, timeout_; // as typed
    std::vector<std::string> helpWords_;
    Options flags_;
    std::vector<std::pair<CLI::App*, Action>> actions_;
};

} // namespace console
