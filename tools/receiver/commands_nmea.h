// SPDX-License-Identifier: MIT
#pragma once
// Commands in NMEA form: PSRF100, 101, 103, 105 and 106.

#include "receiver.h"

#include <string_view>

namespace receiver
{

// Carries out one command, given its body without '$' and checksum. What is wrong with a command that is
// not carried out is said in a PSRFTXT line when development data are on (PSRF105,1).
void HandleNmeaCommand(Receiver& receiver, std::string_view body);

// Queues "$PSRFTXT,text".
void SendNmeaText(Receiver& receiver, std::string_view text);

// The lines that a start prints: version, rate, time, position, clock and channels.
void SendStartText(Receiver& receiver);

} // namespace receiver
