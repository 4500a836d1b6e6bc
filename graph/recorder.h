// SPDX-License-Identifier: MIT
// The strip chart's recorder: one column for each position fix.
//
// The chart is a sweep: columns are overwritten in place, and the picture is never shifted. A sample costs
// the same at any width.
#pragma once

#include <atomic>
#include <cstdint>

// Samples recorded since the program started; reader thread writes.
extern std::atomic<uint32_t> GraphSampleCount;

// Column of the latest sample, 0 .. GraphWidth - 1; reader thread writes. A paint reads it once: the chart is
// shown from this column on, round the right edge, so that it looks as if it scrolled.
extern std::atomic<uint16_t> CurrentGraphColumn;

// Records the channels' values and FixTime as the chart's newest column. Reader thread, once per fix, after
// both have been stored. Draws nothing while the chart has no size. Failures are posted, labelled
// "StretchBlt5" (first sample), "BitBlt3" (column), "Polyline1" (major grid), "Polyline2" (line to the right
// edge) and "Polyline3" (line).
void RecordGraphSample();

// An empty chart, as when the program starts.
void ResetRecorder();
