// SPDX-License-Identifier: MIT
// How the chart is drawn: its time scales, and the settings that the Graph Options dialog edits and stores.
// User-interface thread, but for the two values that the recorder reads.
#pragma once

#include <atomic>
#include <cstdint>

struct TimeScaleRow {
    const wchar_t* Label;
    uint32_t SecondsPerColumn;
    uint16_t MinorGrid, MajorGrid; // columns from one line to the next
};
constexpr uint32_t TimeScaleCount = 6;
extern const TimeScaleRow TimeScale[TimeScaleCount];

// Written by the user-interface thread, read by both.
extern std::atomic<int32_t> GraphLines;   // 0: each sample is a dot; else samples are joined by lines
extern std::atomic<int32_t> TimeScaleIdx; // row of TimeScale as it was stored: any number

// The row to draw with: the first one when the stored index names none.
const TimeScaleRow& SelectedTimeScale();

// Fits the bands of the channels to the chart's height, then applies the stored settings. Once at start,
// after the chart's size is known.
void LoadGraphSettings();

// Stores every setting. Values are stored as whole numbers; one that is not stored reads as -1, or 2147483647
// for the channels' values, so these two cannot be stored.
void SaveGraphSettings();

// Lines and time scale as when the program starts; ResetChannels does the rest.
void ResetGraphSettings();
