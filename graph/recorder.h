// The strip chart's recorder: one column for each position fix.
#pragma once

#include <atomic>
#include <cstdint>

// Samples recorded since the program started; reader thread writes.
extern std::atomic<uint32_t> GraphSampleCount;

// Records the channels' values and FixTime as the chart's newest column. Reader thread, once per fix, after
// both have been stored.
void RecordGraphSample();
