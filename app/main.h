// The program's main routine, which each platform's start-up code calls.
#pragma once

#include "platform/platform.h"

// Runs the program to its end; `commandLine` without the program's name. Returns the process' exit code.
int RunProgram(HINSTANCE instance, const wchar_t* commandLine, int show);
