// SPDX-License-Identifier: MIT
// Shows the time of the last arrival of each kind of message in the rows of the SiRF Set Message Rate dialog.
// A message id keeps its first row as long as the protocol stays recognised. Reader thread.
#pragma once

#include <cstdint>

// Forgets all rows.
void ClearArrivalList();

// Shows that a message has arrived now, if the dialog is open. Answers to commands are not listed.
void ShowArrival(uint8_t messageId);
