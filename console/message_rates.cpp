// SPDX-License-Identifier: MIT
#include "console/message_rates.h"

#include <algorithm>

#include "console/nmea_commands.h"
#include "sirf/setting_values.h"

namespace console
{

namespace
{

// A kind that is on may take twice its interval and this reserve until it comes.
constexpr auto Reserve = std::chrono::seconds(2);

// A kind with a longer interval is not waited for a second time.
constexpr auto LongestAwaited = std::chrono::seconds(10);

// Messages of one kind come at slightly different times after the second.
constexpr auto Unsteadiness = std::chrono::milliseconds(700);

// A kind that is off must stay away for so long after the last one. One that was being sent at the time of
// the command may still arrive.
constexpr auto Quiet = std::chrono::seconds(3);

enum class Verdict { Undecided, AsWanted, DoesNotCome, ComesMoreOften, ComesLessOften, StillComes };
constexpr const char* Differences[] = {
    "", "", " does not come", " comes more often", " comes less often", " still comes"};

Verdict Judge(const ArrivalTable& table, const MessageRate& rate, Clock::time_point start)
{
    const Clock::time_point now = Clock::now();
    const auto found = table.find(rate.kind);
    const bool hasCome = found != table.end();
    if (rate.seconds == 0) {
        if (now - (hasCome ? found->second.last : start) >= Quiet) return Verdict::AsWanted;
        return now - start >= 2 * Quiet ? Verdict::StillComes : Verdict::Undecided;
    }
    const Duration interval = std::chrono::seconds(rate.seconds);
    if (!hasCome) return now - start > 2 * interval + Reserve ? Verdict::DoesNotCome : Verdict::Undecided;
    const Arrivals& arrivals = found->second;
    const bool isAwaitedTwice = interval <= LongestAwaited,
               isComplete = arrivals.count > (isAwaitedTwice ? 1 : 0);
    const Duration sinceLast = now - arrivals.last;
    if (isAwaitedTwice &&
        std::max(arrivals.longestGap, isComplete ? Duration() : sinceLast) > 2 * interval + Reserve / 2)
        return Verdict::ComesLessOften;
    // A kind that comes each few seconds leaves gaps of that length; one that comes more often does not.
    const Duration gap = std::max({arrivals.first - start, arrivals.longestGap, sinceLast});
    if (isComplete && (rate.seconds == 1 || gap >= interval - Unsteadiness)) return Verdict::AsWanted;
    return now - arrivals.first > 2 * interval + Reserve ? Verdict::ComesMoreOften : Verdict::Undecided;
}

} // namespace

Frame MessageRatePayload(const MessageRate& rate)
{
    uint8_t payload[MaxCommandLength];
    SettingValues values = {};
    // In the order of the layout's rows.
    values[0] = rate.seconds;
    values[1] = rate.number;
    PackCommand(SetMessageRateLayout, values, payload);
    return Frame(payload, payload + SetMessageRateLayout.length);
}

Frame MessageRateFrame(Protocol protocol, const MessageRate& rate)
{
    if (protocol == Protocol::Nmea) return FrameNmea(SentenceRateBody(rate.number, rate.seconds));
    return FrameSirf(MessageRatePayload(rate));
}

std::vector<MessageRate> SentenceRates(const NmeaRates& rates)
{
    std::vector<MessageRate> list;
    for (unsigned kind = 0; kind < rates.size(); ++kind)
        list.push_back({SentenceKinds()[kind], kind, rates[kind]});
    return list;
}

void SeeMessageRates(Session& session, std::span<const MessageRate> rates)
{
    const Clock::time_point start = Clock::now();
    const ArrivalCounter counter;
    std::string differences;
    for (const MessageRate& rate : rates) {
        Verdict verdict;
        // Time alone decides, too, without an event that would end one long wait.
        while ((verdict = Judge(counter.table, rate, start)) == Verdict::Undecided)
            session.WaitFor({}, Seconds(0.1));
        if (verdict == Verdict::AsWanted) continue;
        differences +=
            (differences.empty() ? "" : ", ") + rate.kind + Differences[static_cast<size_t>(verdict)];
    }
    if (!differences.empty()) Fail(FailureKind::Differs, differences);
}

} // namespace console
