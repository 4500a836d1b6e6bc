// SPDX-License-Identifier: MIT
// The dialogs of the menu "SiRF". Most follow a command's layout alone: they poll the receiver for its
// settings when they open and on "Get", and on "Set" check the fields in their order and send the command.
// User-interface thread.
#pragma once

#include <atomic>
#include <cstdint>

#include "sirf/setting_values.h"
#include "ui/dialog.h"

// Shows the dialog with that template; false where it is none of these.
bool ShowSirfDialog(uint16_t number);

// Those that do more than their layout says, or have none; their fields, buttons and first poll are their
// layout's where they name none.
extern const Dialog InitializeDataSourceDialog, SwitchToNmeaDialog, PollSoftwareVersionDialog,
    TricklePowerDialog, SbasDialog;

// "Get": polls the open dialog's settings. Only a poll that the user has asked for is named when it is
// refused.
void GetSettings(HWND dialog);

// The poll of a dialog that opens, from a receiver that will understand it.
void PollUnderstood(HWND dialog);

// True if SiRF binary has been recognised, so that a poll will be understood.
bool ReceiverSpeaksSirf();

void SendCommand(const CommandLayout& layout, const SettingValues& values);

// Set when the receiver begins anew, by a command or at another rate; read by nothing.
extern std::atomic<uint8_t> InitializeSent;
