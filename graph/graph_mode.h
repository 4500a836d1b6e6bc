// SPDX-License-Identifier: MIT
// Selects the main window's view: text page or chart.
#pragma once

#include <atomic>
#include <cstdint>

enum class GraphModeValue : uint8_t { TextPage = 0, Chart = 1 };

// Any key in the main window toggles; the Graph Options dialog sets. User-interface thread writes.
extern std::atomic<GraphModeValue> GraphMode;
