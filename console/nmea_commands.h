// SPDX-License-Identifier: MIT
// Bodies of the NMEA commands that change the receiver.
#pragma once

#include <cstdint>
#include <string>

namespace console
{

std::string SerialPortBody(bool nmea, uint32_t rate);              // PSRF100
std::string RestartBody(unsigned configuration);                   // PSRF101, with the receiver's data
std::string SentenceRateBody(unsigned sentence, unsigned seconds); // PSRF103, with checksums

} // namespace console
