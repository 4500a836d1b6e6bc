// SPDX-License-Identifier: MIT
// Common to all tools: reading options, printing --help and --version, ending with an error.
#pragma once

#include <optional>
#include <string>

#include <CLI/CLI.hpp>

constexpr int ExitBadUse = 2; // bad option, file that cannot be used, output that cannot be written

// Reads the options. Nothing when the tool is to go on. Otherwise its exit code: 0 after --help and
// --version, or ExitBadUse with one line on standard error, which names the option and the reason.
std::optional<int> ParseCommandLine(CLI::App& app, int argumentCount, const char* const* arguments);

// "TOOL: MESSAGE" on standard error. Returns ExitBadUse.
int FailTool(const std::string& tool, const std::string& message);

// To be returned at the end of every tool that prints: 0, or ExitBadUse with a message when standard output
// is closed, full or cut off.
int FinishOutput(const std::string& tool);

// Refuses an empty text.
extern const CLI::Validator NotEmpty;
