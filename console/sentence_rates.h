// SPDX-License-Identifier: MIT
// The intervals at which the receiver sends each kind of message.
#pragma once

#include <map>

#include "console/session.h"
#include "sirf/switch_to_nmea_command.h"

namespace console
{

// Kinds of sentences in the order of the receiver's numbers for them: GGA, GLL, ... ZDA, USER10.
std::span<const char* const> SentenceKinds();

// Number of a kind, by its name in upper or lower case; no value if there is no such kind.
std::optional<unsigned> FindSentenceKind(const std::string& name);

using NmeaRates = std::array<uint8_t, NmeaRateCount>; // seconds, 0 none

// Reads "GGA=1,GSV=5"; the other kinds are 0. Throws Failure of the kind Usage, also if no kind is on.
NmeaRates ParseNmeaRates(const std::string& text);

bool AnyIsOn(const NmeaRates& rates);

// Arrivals of one kind of message; a group of GSV counts once.
struct Arrivals {
    unsigned count = 0;
    Clock::time_point first, last;
    Duration longestGap{}; // between two of them

    // Seconds between two messages, in tenths; no value after a single message.
    std::optional<double> Interval() const;
};

// Names of sentences as in Sentence::Kind, or message ids; ids in the order of their numbers.
struct KindOrder {
    bool operator()(const std::string& a, const std::string& b) const;
};
using ArrivalTable = std::map<std::string, Arrivals, KindOrder>;

// Listens for the given time. At most a few hundred kinds are kept.
ArrivalTable MeasureRates(Session& session, Duration time);

// Counts arrivals while it exists.
class ArrivalCounter
{
public:
    ArrivalCounter();
    ArrivalTable table;

private:
    void Count(const std::string& kind);
    Listener listener_;
};

// The sentences' rates in the form of command 129; a sentence that came once counts as every ten seconds.
NmeaRates RatesFrom(const ArrivalTable& table);

} // namespace console
