// Switches the receiver's static navigation on or off without a user: from NMEA through SiRF binary and back.
#pragma once

#include <cstdint>

// Takes about ten seconds; user-interface thread. 0 when everything was sent; 4 or 5, with a box, when the
// rate in SiRF binary or in NMEA has never been seen.
int32_t SwitchStaticNavigation(bool on);
