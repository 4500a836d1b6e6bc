// SPDX-License-Identifier: MIT
// The dialogs of the menu "SiRF". Most are completely described by a command's layout: when they open, and on
// "Get", they poll the receiver for its settings; on "Set" they check the fields in order and send the
// command. User-interface thread.
#pragma once

#include <atomic>
#include <cstdint>

#include "sirf/setting_values.h"
#include "ui/dialog.h"

// Shows the dialog with this number; false if the number is not one of these dialogs.
bool ShowSirfDialog(uint16_t number);

// Dialogs that do more than their layout describes, or have none. Fields, buttons and first poll come from
// the layout if they are not given here.
extern const Dialog InitializeDataSourceDialog, SwitchToNmeaDialog, PollSoftwareVersionDialog,
    TricklePowerDialog, SbasDialog;

// "Get": polls the open dialog's settings. If a poll is refused, the box names it only when the user has
// requested it.
void GetSettings(HWND dialog);

// The poll at the opening of a dialog; sent only to a receiver that will understand it.
void PollUnderstood(HWND dialog);

// True if SiRF binary has been recognised, so that a poll will be understood.
bool ReceiverSpeaksSirf();

void SendCommand(const CommandLayout& layout, const SettingValues& values);

// Set when the receiver restarts or changes its rate after a command; nothing reads it.
extern std::atomic<uint8_t> InitializeSent;
