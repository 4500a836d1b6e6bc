// SPDX-License-Identifier: MIT
// Menu bars at the screen's lower edge: soft keys on a keypad device, a row of words on a touch screen.
#pragma once

#include "platform/windows/aygshell/contract.h"

// Makes the bar that a resource describes, for a window; an empty one without its buttons. Null when the
// resource is missing.
HWND MakeMenuBar(HWND parent, HINSTANCE instance, UINT resource, bool empty);

HWND MenuBarOf(HWND parent); // null: it has none

// Presses a button of a bar, 0 the first, when the messages before have been served.
void PressSoftKey(HWND bar, int button);

// True if the bar's window wants to get a key, and nothing else is to be done with it.
bool IsKeyOverridden(HWND bar, WPARAM key);
