// The chart as the main window has it: made with the window, painted in chart mode, freed with the window.
// User-interface thread.
#pragma once

#include "platform/platform.h"

// Makes the chart's pictures for a window area of the given size in pixels and loads the chart's settings.
void CreateChart(HWND window, int width, int height);

// Frees the device contexts; failures are shown as "DeleteDC1" to "DeleteDC4".
void DeleteChart();

// Copies the chart to the window, `top` pixels below its upper edge.
void PaintChart(HDC dc, int top);

// Applies the stored settings of the chart over its defaults.
void LoadGraphSettings();
