// SPDX-License-Identifier: MIT
#pragma once
// NMEA sentences that the receiver sends.

#include "navigation.h"

#include <string>
#include <string_view>
#include <vector>

namespace receiver
{

// '$', body, checksum if wanted, CR LF.
Bytes FrameNmea(std::string_view body, bool checksum = true);
uint8_t NmeaChecksum(std::string_view body); // exclusive or of all characters

// The sentence bodies of one message (GSV has up to three), without '$' and checksum; empty for numbers
// without a sentence.
std::vector<std::string> NmeaBodies(NmeaMessage message, const Fix& fix, const Settings& settings);

} // namespace receiver
