// SPDX-License-Identifier: MIT
// When each kind of message arrived last, in the rows of the SiRF Set Message Rate dialog. A message id keeps
// the row that it was first given, for as long as the protocol stays recognised. Reader thread.
#pragma once

#include <cstdint>

// Forgets all rows.
void ClearArrivalList();

// Shows the arrival of a message, now, in the dialog if it is open. Answers to commands are not listed.
void ShowArrival(uint8_t messageId);
