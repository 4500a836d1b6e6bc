// SPDX-License-Identifier: MIT
// The strip chart's recorder: one column for each position fix.
//
// The chart is a sweep: columns are overwritten in place, and the picture is never shifted. So a sample takes
// the same time at any width.
#pragma once

#include <atomic>
#include <cstdint>

// Samples recorded since the program started; reader thread writes.
extern std::atomic<uint32_t> GraphSampleCount;

// Column of the latest sample, 0 .. GraphWidth - 1; reader thread writes. A paint reads it once: it shows the
// chart from this column on, round the right edge, so that the chart seems to scroll.
extern std::atomic<uint16_t> CurrentGraphColumn;

// Records the channels' values and FixTime as the chart's newest column. Reader thread, once for each fix,
// after both have been stored. Draws nothing while the chart has no size. Failures are posted, with the
// captions "StretchBlt5" (first sample), "BitBlt3" (column), "Polyline1" (major grid), "Polyline2" (line to
// the right edge) and "Polyline3" (line).
void RecordGraphSample();

// Empties the chart, as at program start.
void ResetRecorder();
