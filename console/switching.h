// SPDX-License-Identifier: MIT
// Changing the receiver's protocol and rate, and going along with it.
#pragma once

#include "console/finder.h"
#include "console/sentence_rates.h"

namespace console
{

// One command on the way, and where the receiver is after it.
struct SwitchStep {
    Found expected;
    NmeaRates rates; // for a way to NMEA
};

// The way from one state to another; empty when they are the same. The command that leads to NMEA has no room
// for 115200, and a receiver in SiRF binary changes its rate by way of NMEA.
std::vector<SwitchStep> PlanSwitch(Found now, Found wanted, const NmeaRates& rates);

// The frame for a step, to a receiver that speaks `speaks`; wrapped if the receiver wraps now.
Frame StepFrame(Protocol speaks, const SwitchStep& step);

// Goes the way, each step seen, and stops where one leads elsewhere. Returns where the receiver is heard;
// nothing when it is not heard at any rate.
std::optional<Found> CarryOutSwitch(Session& session, Found now, const std::vector<SwitchStep>& steps);

// "NMEA at 4800 baud"
std::string FoundText(const Found& found);
Json FoundJson(const std::optional<Found>& found);

// The defaults of the window program's dialog.
NmeaRates DefaultRates();

} // namespace console
