// SPDX-License-Identifier: MIT
// Switches the receiver's static navigation on or off without a user: from NMEA through SiRF binary and back.
#pragma once

#include <cstdint>

// Takes about ten seconds; user-interface thread. Returns 0 when everything was sent, 1 when the program's
// window was closed meanwhile; 4 or 5, with a box, when the rate for SiRF binary or for NMEA is not known.
// The rate for the next start is changed only if the receiver has sent SiRF binary and has not refused to
// leave it.
int32_t SwitchStaticNavigation(bool on);
