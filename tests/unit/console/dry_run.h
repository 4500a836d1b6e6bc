// SPDX-License-Identifier: MIT
// The console program's commands with --dry-run, in the test's own process.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "console/command_line.h"

// The lines that a command with --dry-run prints, each without the "> " before it: the messages that it would
// send. Empty if the command refuses its arguments as wrong usage; any other end fails the test.
inline std::vector<std::string> DryRun(std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), "--dry-run");
    console::CommandLine line;
    console::Context context;
    std::string printed;
    try {
        const console::Action action = line.Parse(arguments, context.options);
        testing::internal::CaptureStdout();
        try {
            action(context);
        } catch (const console::Failure&) {
            testing::internal::GetCapturedStdout();
            throw;
        }
        printed = testing::internal::GetCapturedStdout();
    } catch (const console::Failure& failure) {
        EXPECT_EQ(console::Describe(failure.kind).exitStatus, 2) << failure.message;
        return {};
    }
    std::vector<std::string> sent;
    for (size_t start = 0; start < printed.size();) {
        const size_t end = std::min(printed.find('\n', start), printed.size());
        EXPECT_EQ(printed.substr(start, 2), "> ");
        sent.push_back(printed.substr(start + 2, end - start - 2));
        start = end + 1;
    }
    return sent;
}
