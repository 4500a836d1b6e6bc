// SPDX-License-Identifier: MIT
// The end of a run that a device would not have survived, or would have survived by luck.
#pragma once

#include <string>

// Exit code of the process after DeviceFault.
constexpr int FaultExitCode = 3;

// Says on the standard error stream what happened, and where the program was, and ends the process.
[[noreturn]] void DeviceFault(const std::string& what);
