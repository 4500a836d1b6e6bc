// SPDX-License-Identifier: MIT
// The one wait of the user-interface thread.
#pragma once

#include <cstdint>

#include "platform/platform.h"

// Lets `milliseconds` pass while it serves messages that other threads send: the reader thread may be writing
// a text into a dialog at any moment, and a plain sleep would leave both waiting for each other. Serves
// nothing else: no input, timer, paint or posted message.
void WaitServingSentMessages(uint32_t milliseconds);
