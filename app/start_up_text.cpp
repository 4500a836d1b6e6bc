// SPDX-License-Identifier: MIT
// The only command that reception sends; the sentence decoder declares it.
#include "link/link_state.h"
#include "nmea/command_encoder.h"
#include "nmea/sentence_decoder.h"

// A hot start makes the receiver print its start-up text.
void AskForStartUpText()
{
    if (!CommandLinePending.load()) NmeaSendFromReader("PSRF101,0,0,0,0,0,0,12,1");
}
