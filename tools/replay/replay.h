// SPDX-License-Identifier: MIT
// toravane-replay without its command line.
#pragma once

#include "options.h"

// Feeds the files through a freshly started system's reception and prints what the options ask for. A file
// that cannot be read or written ends the process. False when no valid message was in them.
bool Replay(const ReplayOptions& options);
