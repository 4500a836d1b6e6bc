// SPDX-License-Identifier: MIT
// The one command that reception sends; the decoder of sentences declares it.
#include "link/link_state.h"
#include "nmea/command_encoder.h"
#include "nmea/sentence_decoder.h"

// A hot start makes the receiver print its start-up text.
void AskForStartUpText()
{
    if (!CommandLinePending.load()) NmeaSendFromReader("PSRF101,0,0,0,0,0,0,12,1");
}
