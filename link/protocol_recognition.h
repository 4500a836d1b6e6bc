// SPDX-License-Identifier: MIT
// What the first message of a protocol since the last reset sets in motion; reader thread.
#pragma once

#include <atomic>
#include <cstdint>

#include "ui/active_dialog.h"

// Sets the protocol's flag, shows the protocol in an open Communication dialog and empties the text page.
void BeginProtocol(std::atomic<uint8_t>& recognised);

// Stores the port and rate at which data has really arrived, so that the next start opens them. Nothing when
// the port is none of the table, as in a program that opens its ports itself.
void StoreWorkingPort();

// Stores the rate that is typed or chosen in an open dialog that switches the receiver's protocol, as the
// rate that the receiver uses in the protocol just recognised. Nothing without the dialog, or without a rate
// of the table.
void StoreChosenRate(DialogKind kind, int control, const wchar_t* setting);
