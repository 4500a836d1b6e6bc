// SPDX-License-Identifier: MIT
// The sky as a picture: Sun, Moon and SBAS satellites between two circles, the horizon and 45 degrees.
#pragma once

#include "platform/platform.h"

// Draws the picture at its place, pixels 31..149 from the left and 62..182 below `top`, which a dialog keeps
// free for it; `top` is 0, or negative when the dialog is scrolled. A failing drawing call shows a box.
// Objects that cover each other take turns in lying on top: every second picture is drawn in reverse order.
// User-interface thread.
void DrawSkyPlot(HDC dc, int top);

// Everything as when the program starts.
void ResetSkyPlot();
