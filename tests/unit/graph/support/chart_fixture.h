// SPDX-License-Identifier: MIT
// Fixture of the chart's tests: small charts, and pictures as text.
#pragma once

#include <string>
#include <vector>

#include "graph/channels.h"
#include "graph/chart.h"
#include "graph/graph_settings.h"
#include "graph/recorder.h"
#include "graph/surface.h"
#include "tests/unit/support/product_test.h"

// A picture as rows of characters: '.' white, '-' the grid's light grey, '=' the ticks' dark grey, the digit
// i channel i in its default colour, '?' anything else.
using Rows = std::vector<std::string>;

class ChartTest : public ProductTest
{
protected:
    ~ChartTest() override { DeleteChart(); }

    // A chart of this size on which only channel 0 is visible; values 0 to `height` - 1 are drawn at exactly
    // these heights, so that a value is the height of its pixel.
    static void MakeSmallChart(int width, int height);

    // Records a sample of channel 0.
    static void Sample(uint32_t secondOfDay, double value);

    static Rows Picture(const Surface& surface = GraphBitmap);
    static std::string Column(int x, const Surface& surface = GraphBitmap); // from the top row down
    static void SetBand(uint32_t channel, float min, float max, uint16_t floor, uint16_t ceiling);
    static void SetTime(uint32_t secondOfDay);

    static std::vector<std::wstring> BoxCaptions();
};

char PixelName(uint32_t pixel);
