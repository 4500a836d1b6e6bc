// SPDX-License-Identifier: MIT
// Searches for the port and rate of the receiver.
#pragma once

#include <cstdint>

#include "platform/platform.h"

// Tries the ports first..last (0 to 9, both included) in this order, each at the present rate of its driver
// and then at every rate from the lowest to the highest. The lists of the Communication dialog show the port
// and rate that are being tried. Stops at the first port and rate at which either protocol is recognised,
// leaves that port open and returns true; false if none was found. Takes 2 s for a port that can be opened
// and 1.5 s for each rate; ports that cannot be opened are skipped silently. User-interface thread, with the
// port closed.
bool SearchPorts(HWND dialog, int32_t first, int32_t last);
