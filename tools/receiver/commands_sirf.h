// SPDX-License-Identifier: MIT
#pragma once
// Commands in SiRF binary form: set commands, polls, restarts, the switch to NMEA.

#include "receiver.h"

#include <span>

namespace receiver
{

// Carries out one command (payload, MID first; not empty) and queues its answer: MID 11 or 12, and the
// message that a poll requests.
void HandleSirfCommand(Receiver& receiver, std::span<const uint8_t> payload);

} // namespace receiver
