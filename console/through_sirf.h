// SPDX-License-Identifier: MIT
// Work that needs SiRF binary: on a receiver in this protocol, or on one that is switched to it and back.
#pragma once

#include "console/switching.h"

namespace console
{

inline constexpr const char* ThroughSirfOption = "--through-sirf"; // [=RATE]

struct ThroughSirf {
    std::string rate; // as typed; empty: not given, "now": without a rate

    void AddTo(Parser& parser);
};

using SirfWork = std::function<void(Session&)>;

// Finds the receiver and does the work. If the receiver uses NMEA and the option is given, it is switched to
// SiRF binary before, and afterwards, even if the work fails, back to the old rate and sentences; both steps
// are checked. Without the option throws Failure of the kind Protocol. A failure on the way back replaces the
// work's own failure.
void WithSirf(Context& context, const ThroughSirf& option, const SirfWork& work);

} // namespace console
