// SPDX-License-Identifier: MIT
// Finding the receiver by listening.
#pragma once

#include <memory>

#include "console/session.h"

namespace console
{

struct Found {
    Protocol protocol;
    uint32_t rate;
};

// Listens at the session's rate until a sentence or a frame with a correct checksum arrives, or the time has
// passed.
std::optional<Protocol> Listen(Session& session, Duration limit);

// Longest time of listening at one rate.
Duration ListeningTime(uint32_t rate);

// Listens at each rate in turn, the first ones first and none twice; sends nothing. Leaves the port at the
// rate found.
std::optional<Found> Search(Session& session, std::vector<uint32_t> first);

// "at 4800 baud" or "at any rate": where the receiver is looked for with these options.
std::string PlaceOfSearch(const Options& options);

// Messages and bytes that a search has received, for its report.
struct Heard {
    uint64_t bytes = 0, messages = 0;
};

// Opens the port given by the options and finds the receiver, only at the given rate if there is one;
// remembers the rate. Throws Failure of the kinds Usage, Port, Silent, Noise.
struct Receiver {
    std::unique_ptr<Session> session;
    Found found;
    Heard heard;
};
Receiver FindReceiver(Context& context);

} // namespace console
