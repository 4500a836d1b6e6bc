// SPDX-License-Identifier: MIT
// The program's command line: one action without a user, then the end of the program.
#pragma once

#include "platform/platform.h"

// Keeps the first 255 characters. Once, before the main window exists.
void StoreCommandLine(const wchar_t* text);

bool HasCommandLine();

// Carries the command line out, or says in a box why not, and asks the main window to close. `hasPort` and
// `hasRate`: whether a port and a rate are stored.
void RunCommandLine(bool hasPort, bool hasRate);
