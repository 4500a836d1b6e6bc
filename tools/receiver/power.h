// SPDX-License-Identifier: MIT
#pragma once
// Power saving: the times at which the receiver sleeps between fixes.

#include "settings.h"

namespace receiver
{

struct PowerCycle {
    double onS = 0, periodS = 0; // period 0: always on

    bool Continuous() const { return periodS <= 0; }
};

// The cycle that follows from the settings.
PowerCycle PowerCycleOf(const Settings& settings);

struct PowerState {
    bool Cycling = false, Awake = true;
    double WokeAt = 0;
};

} // namespace receiver
