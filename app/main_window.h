// SPDX-License-Identifier: MIT
// The one top-level window: text page or chart, the menu that leads to the dialogs, the actions of the start.
// User-interface thread.
#pragma once

#include "platform/platform.h"

// Registers the class and creates and shows the window; `show` as the system gave it to the program. False
// when another copy runs, which is brought to the front, or when the system refuses. LeaveOnlyCopy follows
// the end of a program for which it was true.
bool InitInstance(HINSTANCE instance, int show);
