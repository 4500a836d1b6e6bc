// SPDX-License-Identifier: MIT
// The dialogs of the menu "NMEA". Each sends one command, and has a grey box with the receiver's own text.
// User-interface thread.
#pragma once

#include "ui/dialog.h"

// Shows the dialog with that template; false where it is none of these.
bool ShowNmeaDialog(uint16_t number);

extern const Dialog SetSerialPortDialog; // another rate or protocol, and the program's own port after it
extern const Dialog
    NavigationInitializationDialog;        // restarts, with or without a position and time to start from
extern const Dialog NmeaMessageRateDialog; // how often each sentence comes, and when each came last
extern const Dialog DevelopmentDataDialog; // any sentence that the user types
extern const Dialog SelectDatumDialog;     // the geodetic datum of the receiver's positions

// Sends a command; the grey box then shows only what the receiver sends from now on.
void SendDialogCommand(const char* body);
