// SPDX-License-Identifier: MIT
// Switches the receiver's static navigation on or off without a user: from NMEA through SiRF binary and back.
#pragma once

#include <cstdint>

// Takes about ten seconds; user-interface thread. 0 when everything was sent, 1 when the program's window was
// closed meanwhile; 4 or 5, with a box, when the rate in SiRF binary or in NMEA has never been seen. The rate
// for the next start is changed only if the receiver has spoken SiRF binary and has not refused to leave it.
int32_t SwitchStaticNavigation(bool on);
