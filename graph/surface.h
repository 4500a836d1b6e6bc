// SPDX-License-Identifier: MIT
// The chart's pictures as arrays of pixels, and the procedures that draw into them.
//
// Both threads use the pixels without a lock: the reader thread draws samples, the user-interface thread
// makes the patterns and copies the pixels to the window; a paint may show a column that is only half drawn.
// A device context could not be shared in this way: it serves one thread at a time, and the other thread's
// calls fail.
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/platform.h"

// A picture; rows from the top, each pixel 0x00RRGGBB.
struct Surface {
    uint32_t* Pixels;      // null: there is no picture, and drawing into it fails
    int32_t Width, Height; // pixels
    int32_t Stride;        // pixels from one row to the next
};

// The strip chart, and two patterns, of which only column 0 is used: an empty column, and a column of the
// minor grid. All have the chart's size. The user-interface thread makes and frees them while no reader
// thread runs.
extern Surface GraphBitmap, BackgroundColumn, TickColumn;

// Size of the chart in pixels; 0 before the main window has made it. At most 32767.
extern std::atomic<uint16_t> GraphWidth, GraphHeight;

constexpr COLORREF ColorWhite = 0xFFFFFF;

// Drawing. Parts outside the surface are not drawn. Colours are 0x00BBGGRR, the top byte is ignored. If the
// surface has no pixels, the result is 0 and the calling thread's last error is set.

// Fills a column with one colour.
int32_t FillColumn(const Surface& surface, int32_t column, COLORREF color);

// Copies column 0 of `pattern`, which has the same height, into a column of `surface`.
int32_t CopyColumn(const Surface& surface, int32_t column, const Surface& pattern);

// Copies column 0 of `pattern`, which has the same height, into every column of `surface`.
int32_t CopyToAllColumns(const Surface& surface, const Surface& pattern);

// Draws a line between two points, both included: one pixel in each column of a flat line, in each row of a
// steep one. The order of the two points does not matter. They are at most 2^30 apart on either axis.
int32_t DrawLine(const Surface& surface, POINT from, POINT to, COLORREF color);

int32_t DrawPixel(const Surface& surface, POINT point, COLORREF color);
