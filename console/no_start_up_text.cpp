// SPDX-License-Identifier: MIT
// Nothing is sent unasked by this program. In a file of its own, so that a test that holds the window program
// too can have that one's instead.
#include "nmea/sentence_decoder.h"

void AskForStartUpText() {}
