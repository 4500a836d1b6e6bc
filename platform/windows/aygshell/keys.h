// SPDX-License-Identifier: MIT
// The device's keys, which the desktop's keyboard stands for: the arrows and Enter are the joystick, Escape
// is Back, F1 and F2 are the soft keys.
#pragma once

#include "platform/windows/aygshell/contract.h"

// From now on the calling thread's keys mean what they mean on the device, and its boxes come up on the
// screen.
void WatchThread();
void StopWatching();

// Erases in the edit that has the focus, as the Back key that a dialog was told of does by default.
void SendBackToFocus(LPARAM hotKey);
