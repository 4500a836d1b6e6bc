// SPDX-License-Identifier: MIT
// The chart's pictures as arrays of pixels, and the few procedures that draw into them.
//
// Pixels belong to both threads: the reader thread draws samples, the user-interface thread rebuilds the
// patterns and copies the finished pixels to the window, without a lock; a paint may catch a column half
// drawn. A device context could not be shared like that: it serves one thread at a time, and the calls of the
// other fail.
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/platform.h"

// A picture; rows from the top, each pixel 0x00RRGGBB.
struct Surface {
    uint32_t* Pixels;      // null: there is no picture, everything drawn into it fails
    int32_t Width, Height; // pixels
    int32_t Stride;        // pixels from one row to the next
};

// The strip chart, and two patterns of which only column 0 is used: what an empty column looks like, and what
// a column of the minor grid looks like. All have the chart's size. Made and freed by the user-interface
// thread while no reader thread runs.
extern Surface GraphBitmap, BackgroundColumn, TickColumn;

// Size of the chart in pixels; 0 before the main window has made it. At most 32767.
extern std::atomic<uint16_t> GraphWidth, GraphHeight;

constexpr COLORREF ColorWhite = 0xFFFFFF;

// Drawing. What lies outside of the surface is left out. Colours are 0x00BBGGRR, the top byte is ignored.
// The result is 0, and the calling thread's last error set, when the surface has no pixels.

// Makes a column one colour.
int32_t FillColumn(const Surface& surface, int32_t column, COLORREF color);

// Copies column 0 of `pattern`, which is as high, into a column of `surface`.
int32_t CopyColumn(const Surface& surface, int32_t column, const Surface& pattern);

// Copies column 0 of `pattern`, which is as high, into every column of `surface`.
int32_t CopyToAllColumns(const Surface& surface, const Surface& pattern);

// Joins two points, both ends drawn: one pixel in each column of a flat line, in each row of a steep one. The
// picture does not depend on which end comes first. The points are at most 2^30 apart on either axis.
int32_t DrawLine(const Surface& surface, POINT from, POINT to, COLORREF color);

int32_t DrawPixel(const Surface& surface, POINT point, COLORREF color);
