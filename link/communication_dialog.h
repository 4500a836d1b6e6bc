// SPDX-License-Identifier: MIT
// The Communication dialog: connects the program to the receiver, by hand or by search, shows what arrives,
// and opens and closes the receiver's log.
#pragma once

#include "ui/dialog.h"

// Closing the dialog leaves the port and the log as they are.
extern const Dialog CommunicationDialog;
