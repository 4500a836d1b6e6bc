// SPDX-License-Identifier: MIT
// The chart as the main window has it: made with the window, painted in chart mode, freed with the window.
// User-interface thread.
#pragma once

#include "platform/platform.h"

// Makes the chart's pictures for a window area of the given size in pixels, the chart all white
// ("StretchBlt4"), and loads the chart's settings. Without an area there is no chart, and the settings are
// loaded all the same.
void CreateChart(HWND window, int width, int height);

// Frees the pictures; failures are shown as "DeleteDC1" to "DeleteDC4". No reader thread may run any more.
void DeleteChart();

// Copies the chart to the window, `top` pixels below its upper edge, the newest column leftmost. A failure
// ("BitBlt1", "BitBlt2") is told once until the copy works again: closing the box uncovers the window, which
// then paints again.
void PaintChart(HDC dc, int top);
