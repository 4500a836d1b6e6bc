// SPDX-License-Identifier: MIT
// Behaviour that the device's own controls have and the desktop's do not.
#pragma once

#include "platform/windows/aygshell/contract.h"

// Prepares a dialog's controls: a spinner beside a list goes through all of the list's entries; edits can be
// set to accept numbers only.
void PrepareFields(HWND dialog);
