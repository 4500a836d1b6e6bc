// SPDX-License-Identifier: MIT
// Actions on the first message of a protocol after a reset; reader thread.
#pragma once

#include <atomic>
#include <cstdint>

#include "ui/active_dialog.h"

// Sets the protocol's flag, shows the protocol in an open Communication dialog and empties the text page.
void BeginProtocol(std::atomic<uint8_t>& recognised);

// Stores the port and rate at which data has really arrived, so that the next start opens them. Does nothing
// when the table does not have the port, as in a program that opens its ports itself.
void StoreWorkingPort();

// Stores the rate that is typed or chosen in an open dialog for switching the receiver's protocol. It is
// stored as the receiver's rate in the protocol that was just recognised. Does nothing if no such dialog is
// open, or if the table does not have the rate.
void StoreChosenRate(DialogKind kind, int control, const wchar_t* setting);
