// SPDX-License-Identifier: MIT
// The sky as a picture: Sun, Moon and SBAS satellites between two circles, the horizon and 45 degrees.
#pragma once

#include "platform/platform.h"

// Draws the picture at its place, pixels 31..149 from the left and 62..182 below `top`; a dialog keeps this
// area free. On a screen with more than 96 dots per inch all of that is larger, as dialogs are. `top` is 0,
// or negative when the dialog is scrolled. A failing drawing call shows a box. Every second picture is drawn
// in reverse order, so that each of two overlapping objects is on top in turn. User-interface thread.
void DrawSkyPlot(HDC dc, int top);

// Sets everything to its state at program start.
void ResetSkyPlot();
