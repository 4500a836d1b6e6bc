// SPDX-License-Identifier: MIT
// The end of a run after an error that a device would not survive, or only by luck.
#pragma once

#include <string>

// Exit code of the process after DeviceFault.
constexpr int FaultExitCode = 3;

// Prints the error and the program's position to standard error, and ends the process.
[[noreturn]] void DeviceFault(const std::string& what);
