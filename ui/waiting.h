// SPDX-License-Identifier: MIT
// The only wait of the user-interface thread.
#pragma once

#include <cstdint>

#include "platform/platform.h"

// Waits for `milliseconds` and meanwhile serves messages that other threads send: the reader thread may write
// a text into a dialog at any moment, and after a plain sleep both would wait for each other. Serves nothing
// else: no input, timer, paint or posted message.
void WaitServingSentMessages(uint32_t milliseconds);
