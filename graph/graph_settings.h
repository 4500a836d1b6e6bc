// SPDX-License-Identifier: MIT
// Time scales of the chart, and the settings that the Graph Options dialog changes and stores. User-interface
// thread, except the two values that the recorder reads.
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
extern std::atomic<int32_t> TimeScaleIdx; // row of TimeScale as it was stored; may be any number

// The row to use for drawing: the first one when the stored index names none.
const TimeScaleRow& SelectedTimeScale();

// Fits the bands of the channels to the chart's height, then applies the stored settings. Called once at
// start, when the chart's size is known.
void LoadGraphSettings();

// Stores all settings. Values are stored as whole numbers. A missing value is read as -1 (2147483647 for the
// channels' values), so these two numbers cannot be stored.
void SaveGraphSettings();

// Sets lines and time scale to their state at program start; ResetChannels does the rest.
void ResetGraphSettings();
