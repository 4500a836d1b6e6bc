// SPDX-License-Identifier: MIT
// The search for the port and the rate at which a receiver speaks.
#pragma once

#include <cstdint>

#include "platform/platform.h"

// Tries the ports first..last (0 to 9, both included) in this order, each at the rate that its driver has and
// at every rate from the lowest up, and shows in the Communication dialog's lists where it is. Stops at the
// first port and rate at which either protocol is recognised and leaves that port open; returns whether it
// found one. Takes 2 s for a port that can be opened and 1.5 s for each rate; ports that cannot be opened are
// passed over in silence. User-interface thread, with the port closed.
bool SearchPorts(HWND dialog, int32_t first, int32_t last);
