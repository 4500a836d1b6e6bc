// SPDX-License-Identifier: MIT
// A reception that has received nothing yet, for tests of the console program.
#pragma once

#include "graph/channels.h"
#include "headless.h"
#include "link/link_state.h"
#include "nmea/sentence_assembler.h"
#include "nmea/sentence_decoder.h"
#include "sirf/frame_assembler.h"
#include "sirf/message_decoder.h"

inline void StartReceptionAfresh()
{
    HeadlessReset();
    ResetLinkState();
    ResetChannels();
    ResetNmeaAssembler();
    ResetNmeaDecoder();
    ResetSirfFramer();
    ResetSirfDecoder();
}
