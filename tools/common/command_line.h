// SPDX-License-Identifier: MIT
// For all tools: reads options, prints --help and --version, reports errors.
#pragma once

#include <optional>
#include <string>

#include <CLI/CLI.hpp>

constexpr int ExitBadUse = 2; // bad option, unusable file, failed output

// Reads the options. No value if the tool has to continue. Otherwise its exit code: 0 after --help and
// --version, or ExitBadUse with one line on standard error, with the option and the reason.
std::optional<int> ParseCommandLine(CLI::App& app, int argumentCount, const char* const* arguments);

// Prints "TOOL: MESSAGE" on standard error. Returns ExitBadUse.
int FailTool(const std::string& tool, const std::string& message);

// Exit code at the end of every tool that prints: 0, or ExitBadUse with a message if standard output is
// closed, full or disconnected.
int FinishOutput(const std::string& tool);

// Refuses an empty text.
extern const CLI::Validator NotEmpty;
