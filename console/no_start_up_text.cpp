// SPDX-License-Identifier: MIT
// This program never sends on its own. This is a separate file, so that a test that contains both programs
// can link the routine of the window program instead.
#include "nmea/sentence_decoder.h"

void AskForStartUpText() {}
