// SPDX-License-Identifier: MIT
// Work that needs SiRF binary, on a receiver that speaks it or is brought to it and back.
#pragma once

#include "console/switching.h"

namespace console
{

inline constexpr const char* ThroughSirfOption = "--through-sirf"; // [=RATE]

struct ThroughSirf {
    std::string rate; // as typed: empty not given, "now" without a rate

    void AddTo(Parser& parser);
};

using SirfWork = std::function<void(Session&)>;

// Finds the receiver and does the work. On a receiver that speaks NMEA: with the option, goes to SiRF binary
// and, whatever becomes of the work, back to the old rate and sentences, each seen; without it throws Failure
// of the kind Protocol. A way back that fails counts more than what the work throws.
void WithSirf(Context& context, const ThroughSirf& option, const SirfWork& work);

} // namespace console
