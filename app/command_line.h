// SPDX-License-Identifier: MIT
// The program's command line: one action without a user, then the program ends.
#pragma once

#include "platform/platform.h"

// Keeps the first 255 characters. Called once, before the main window exists.
void StoreCommandLine(const wchar_t* text);

bool HasCommandLine();

// Carries out the command line, or shows in a box why it cannot, and asks the main window to close. `hasPort`
// and `hasRate`: true if a port and a rate are stored.
void RunCommandLine(bool hasPort, bool hasRate);
