// SPDX-License-Identifier: MIT
#pragma once
// Commands in NMEA form: PSRF100, 101, 103, 105 and 106.

#include "receiver.h"

#include <string_view>

namespace receiver
{

// Carries out one command, given its body without '$' and checksum. If a command is not carried out and
// development data are on (PSRF105,1), a PSRFTXT line contains the reason.
void HandleNmeaCommand(Receiver& receiver, std::string_view body);

// Queues the sentence "$PSRFTXT,text".
void SendNmeaText(Receiver& receiver, std::string_view text);

// The lines that are printed at a start: version, rate, time, position, clock and channels.
void SendStartText(Receiver& receiver);

} // namespace receiver
