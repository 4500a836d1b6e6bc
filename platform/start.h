// SPDX-License-Identifier: MIT
// The entry of the program, called by each platform's start-up code. Provided by app/main.cpp.
#pragma once

#include "platform/platform.h"

// Runs the program to its end. `commandLine` is without the program's name, `show` is the value that the
// system gave to the program. Returns the exit code of the process.
int RunProgram(HINSTANCE instance, const wchar_t* commandLine, int show);
