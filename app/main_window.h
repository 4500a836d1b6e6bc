// SPDX-License-Identifier: MIT
// The one top-level window: text page or chart, the menu that leads to the dialogs, the actions of the start.
// User-interface thread.
#pragma once

#include "platform/platform.h"

// Registers the class and creates and shows the window; `show` is the value that the system gave to the
// program. False when another copy runs, which is brought to the front, or when the system refuses. After a
// true result the program calls LeaveOnlyCopy at its end.
bool InitInstance(HINSTANCE instance, int show);
