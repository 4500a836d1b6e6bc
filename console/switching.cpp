// SPDX-License-Identifier: MIT
#include "console/switching.h"

#include <algorithm>

#include "console/nmea_commands.h"

namespace console
{

namespace
{

// Longest time that a receiver needs before it sends in its new state.
constexpr auto SwitchLimit = std::chrono::seconds(4);

// The highest rate for which the command to NMEA has room.
constexpr uint32_t LargestNmeaRate = 57600;

// Listens for a message of one protocol.
bool ListenFor(Session& session, Protocol protocol, Duration limit)
{
    bool heard = false;
    Listener listener;
    listener.sentence = [&](const Sentence& sentence) {
        heard |= protocol == Protocol::Nmea && sentence.hadChecksum;
    };
    listener.message = [&](const Message&) { heard |= protocol == Protocol::Sirf; };
    return session.WaitFor([&] { return heard; }, limit);
}

// Longest pause between two messages of a receiver after a step. A step within NMEA leaves the sentences as
// they are; nothing is known about them here.
Duration LongestPause(Protocol speaks, const SwitchStep& step)
{
    if (speaks == Protocol::Nmea || step.expected.protocol == Protocol::Sirf) return {};
    unsigned shortest = 256;
    for (const uint8_t seconds : step.rates)
        if (seconds) shortest = std::min<unsigned>(shortest, seconds);
    return std::chrono::seconds(shortest);
}

std::optional<Found> Follow(Session& session, Found wanted, uint32_t oldRate, Duration longestPause)
{
    session.SetRate(wanted.rate);
    if (ListenFor(session, wanted.protocol, SwitchLimit)) return wanted;
    if (const auto found = Search(session, {oldRate, wanted.rate})) return found;
    // The receiver may have been silent for longer than its turn in the search.
    for (const uint32_t rate : {oldRate, wanted.rate}) {
        session.SetRate(rate);
        const Duration limit = ListeningTime(rate) + (rate == wanted.rate ? longestPause : Duration());
        if (const auto protocol = Listen(session, limit)) return Found{*protocol, rate};
    }
    return {};
}

} // namespace

std::vector<SwitchStep> PlanSwitch(Found now, Found wanted, const NmeaRates& rates)
{
    std::vector<SwitchStep> steps;
    if (now.protocol == wanted.protocol && now.rate == wanted.rate) return steps;
    const Found byNmea = {Protocol::Nmea, std::min(wanted.rate, LargestNmeaRate)};
    const bool isDirect = now.protocol == Protocol::Nmea;
    if (!isDirect) steps.push_back({byNmea, rates});
    if (isDirect || wanted.protocol != byNmea.protocol || wanted.rate != byNmea.rate)
        steps.push_back({wanted, rates});
    return steps;
}

Frame StepFrame(Protocol speaks, const SwitchStep& step)
{
    if (speaks == Protocol::Nmea)
        return FrameNmea(SerialPortBody(step.expected.protocol == Protocol::Nmea, step.expected.rate));
    uint8_t seconds[NmeaRateCount], payload[SwitchToNmeaLength];
    std::copy(step.rates.begin(), step.rates.end(), seconds);
    PackSwitchToNmea(DebugMessages::Unchanged, seconds, true, step.expected.rate, payload);
    return FrameSirf(payload);
}

std::optional<Found> CarryOutSwitch(Session& session, Found now, const std::vector<SwitchStep>& steps)
{
    for (const SwitchStep& step : steps) {
        session.Send(StepFrame(now.protocol, step));
        const auto found = Follow(session, step.expected, now.rate, LongestPause(now.protocol, step));
        if (!found || found->protocol != step.expected.protocol || found->rate != step.expected.rate)
            return found;
        now = *found;
    }
    return now;
}

std::string FoundText(const Found& found)
{
    return std::string(ProtocolTitle(found.protocol)) + " at " + std::to_string(found.rate) + " baud";
}

Json FoundJson(const std::optional<Found>& found)
{
    if (!found) return nullptr;
    return {{"protocol", ProtocolKey(found->protocol)}, {"rate", found->rate}};
}

NmeaRates DefaultRates()
{
    NmeaRates rates;
    std::copy(std::begin(DefaultNmeaSeconds), std::end(DefaultNmeaSeconds), rates.begin());
    return rates;
}

} // namespace console
