// SPDX-License-Identifier: MIT
// toravane-replay without its command line.
#pragma once

#include "options.h"

// Feeds the files to the reception of a freshly started system and prints the output that the options select.
// A file that cannot be read or written ends the process. False if the files contain no valid message.
bool Replay(const ReplayOptions& options);
