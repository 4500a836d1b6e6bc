// SPDX-License-Identifier: MIT
// The chart of the main window: made with the window, painted in chart mode, freed with the window.
// User-interface thread.
#pragma once

#include "platform/platform.h"

// Makes the chart's pictures for a window area of the given size in pixels of the screen, the chart all white
// ("StretchBlt4"), and loads the chart's settings. If the area is empty, there is no chart, but the settings
// are loaded. On a screen with more than 96 dots per inch the chart has fewer pixels, which are shown larger.
void CreateChart(HWND window, int width, int height);

// Frees the pictures; failures are shown as "DeleteDC1" to "DeleteDC4". The reader thread must have ended.
void DeleteChart();

// Copies the chart to the window, `top` pixels below its upper edge, with the newest column at the left. A
// failure ("BitBlt1", "BitBlt2") is shown once until the copy works again: closing the box uncovers the
// window, which then paints again.
void PaintChart(HDC dc, int top);
