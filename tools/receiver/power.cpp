// SPDX-License-Identifier: MIT
#include "power.h"

#include <algorithm>

namespace receiver
{

PowerCycle PowerCycleOf(const Settings& settings)
{
    constexpr double pushToFixOnS = 5.0; // time for a fix and for its messages
    const TricklePower trickle = TricklePowerOf(settings);
    if (trickle.pushToFix) {
        const double period = LowPowerOf(settings).pushToFixPeriodS;
        if (period > pushToFixOnS) return {pushToFixOnS, period};
    }
    if (trickle.dutyPerMille > 0 && trickle.dutyPerMille < 1000) {
        // Milliseconds divided by per mille are seconds. There is at most one fix per second.
        const double period = static_cast<double>(trickle.onTimeMs) / trickle.dutyPerMille;
        return {trickle.onTimeMs * 0.001, std::max(1.0, period)};
    }
    const AdvancedPower advanced = AdvancedPowerOf(settings);
    if (advanced.enabled && advanced.fixes > 0) {
        return {static_cast<double>(advanced.fixes), static_cast<double>(advanced.fixes + advanced.betweenS)};
    }
    return {};
}

} // namespace receiver
