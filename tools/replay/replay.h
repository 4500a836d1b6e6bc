// toravane-replay without its command line.
#pragma once

#include "options.h"

// Feeds the files through a freshly started system's reception and prints what the options ask for. A file
// that cannot be read or written ends the process.
void Replay(const ReplayOptions& options);
