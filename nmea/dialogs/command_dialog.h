// SPDX-License-Identifier: MIT
// The dialogs of the menu "NMEA". Each sends one command, and has a grey box that shows the receiver's text.
// User-interface thread.
#pragma once

#include "ui/dialog.h"

// Shows the dialog with this number; false if the number is not one of these dialogs.
bool ShowNmeaDialog(uint16_t number);

extern const Dialog
    SetSerialPortDialog; // changes the receiver's rate or protocol, then the rate of the program's port
extern const Dialog
    NavigationInitializationDialog;        // restarts, with or without a position and time to start from
extern const Dialog NmeaMessageRateDialog; // interval of each sentence, and time of its last arrival
extern const Dialog DevelopmentDataDialog; // any sentence that the user types
extern const Dialog SelectDatumDialog;     // the geodetic datum of the receiver's positions

// Sends a command; the grey box then shows only text that the receiver sends after it.
void SendDialogCommand(const char* body);
