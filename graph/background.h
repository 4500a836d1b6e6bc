// SPDX-License-Identifier: MIT
// The two column patterns of the chart: the edges of the bands for every column, and the ticks for the
// columns of the minor grid. Any thread.
#pragma once

#include <cstdint>

// Colours of the grid.
constexpr uint32_t GridColor = 0xC0C0C0;     // major grid lines, ticks, band edges of ordinary columns
constexpr uint32_t BandEdgeColor = 0x808080; // band edges of tick columns

// Rebuilds both patterns from the settings of the visible channels. Failures: "StretchBlt1", "StretchBlt2".
// Does nothing while the chart has no size.
void ResetGraphBackground();

// Draws the edges of a channel's band into both patterns and its ticks into the tick pattern. Draws nothing
// when the band or its range of values is empty.
void DrawChannelTicks(uint32_t channel);

// Pixels between two ticks of a channel whose values differ by `step`; at most 65535, also when the band is
// drawn upside down.
uint16_t TickSpacingPixels(uint32_t channel, float step);
