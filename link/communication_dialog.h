// SPDX-License-Identifier: MIT
// The Communication dialog: connects the program to the receiver, by hand or by search, shows what arrives,
// and opens and closes the receiver's log.
#pragma once

#include "ui/dialog.h"

// The port and the log stay as they are when it is closed.
extern const Dialog CommunicationDialog;
