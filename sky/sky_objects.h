// Where the Sun, the Moon and the SBAS satellites stand in the sky of the receiver.
#pragma once

#include <cstdint>

// Computes all places for a UTC date and time and a position (degrees, north and east positive; east may run
// to 360) and shows them in the open dialog. Reader thread, after a fix.
void UpdateSkyObjects(uint16_t year, uint8_t month, uint8_t day, uint8_t hour, uint8_t minute, uint8_t second,
                      double latitude, double longitude);
