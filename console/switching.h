// SPDX-License-Identifier: MIT
// Changes the receiver's protocol and rate, and the session's rate with them.
#pragma once

#include "console/finder.h"
#include "console/sentence_rates.h"

namespace console
{

// One command of a switch, and the receiver's protocol and rate after it.
struct SwitchStep {
    Found expected;
    NmeaRates rates; // for a switch to NMEA
};

// The steps from one state to another; none if they are the same. The command that switches to NMEA has no
// room for 115200, and a receiver in SiRF binary can change its rate only through NMEA.
std::vector<SwitchStep> PlanSwitch(Found now, Found wanted, const NmeaRates& rates);

// The frame for a step, for a receiver that uses the protocol `speaks`; wrapped if the receiver wraps now.
Frame StepFrame(Protocol speaks, const SwitchStep& step);

// Carries out the steps and checks each of them; stops after a step with an unexpected result. Returns the
// state in which the receiver is received; no value if it is not received at any rate.
std::optional<Found> CarryOutSwitch(Session& session, Found now, const std::vector<SwitchStep>& steps);

// "NMEA at 4800 baud"
std::string FoundText(const Found& found);
Json FoundJson(const std::optional<Found>& found);

// The defaults of the window program's dialog.
NmeaRates DefaultRates();

} // namespace console
