// SPDX-License-Identifier: MIT
#include "console/message_rates.h"

#include <algorithm>

#include "console/nmea_commands.h"
#include "console/sentence_rates.h"
#include "sirf/setting_values.h"

namespace console
{

namespace
{

// A kind that is on may take twice its interval and this reserve until it comes.
constexpr auto Reserve = std::chrono::seconds(2);

// A kind that is off must stay away for so long after the last one. One that was being sent at the time of
// the command may still arrive.
constexpr auto Quiet = std::chrono::seconds(3);

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

void SeeMessageRates(Session& session, std::span<const MessageRate> rates)
{
    const Clock::time_point start = Clock::now();
    const ArrivalCounter counter;
    std::string differences;
    for (const MessageRate& rate : rates) {
        const auto hasCome = [&] { return counter.table.contains(rate.kind); };
        const auto isQuiet = [&] {
            const auto found = counter.table.find(rate.kind);
            return Clock::now() - (found == counter.table.end() ? start : found->second.last) >= Quiet;
        };
        if (rate.seconds) {
            const auto end = start + std::chrono::seconds(2 * rate.seconds) + Reserve;
            if (session.WaitFor(hasCome, end - Clock::now())) continue;
        } else {
            // Time alone makes it quiet, without an event that would end one long wait.
            const auto end = start + 2 * Quiet;
            while (!isQuiet() && Clock::now() < end) session.WaitFor(isQuiet, Seconds(0.1));
            if (isQuiet()) continue;
        }
        differences += (differences.empty() ? "" : ", ") + rate.kind +
                       (rate.seconds ? " does not come" : " still comes");
    }
    if (!differences.empty()) Fail(FailureKind::Differs, differences);
}

} // namespace console
