// SPDX-License-Identifier: MIT
#include <cctype>
#include <cstdio>

#include "console/commands/commands.h"
#include "console/conversation.h"
#include "console/finder.h"
#include "console/message_rates.h"
#include "console/sentence_rates.h"

namespace console
{

namespace
{

struct RatesOptions {
    std::vector<std::string> assignments;
    std::string seconds;
    bool noVerify = false;
};

void PrintRate(Context& context, const std::string& kind, std::optional<double> interval)
{
    char text[32] = "-";
    if (interval) std::snprintf(text, sizeof text, "%.1f", *interval);
    context.output.Line(kind + ' ' + text);
    context.output.object["rates"][kind] = interval ? Json(*interval) : Json(nullptr);
}

void Measure(Context& context, double seconds)
{
    if (context.options.dryRun) return;
    const Receiver receiver = FindReceiver(context);
    context.output.object["rates"] = Json::object();
    for (const auto& [kind, arrivals] : MeasureRates(*receiver.session, Seconds(seconds)))
        PrintRate(context, kind, arrivals.Interval());
}

std::vector<MessageRate> ParseRates(const std::vector<std::string>& assignments, Protocol& protocol)
{
    std::vector<MessageRate> rates;
    for (const std::string& text : assignments) {
        const Assignment assignment = ParseAssignment(text);
        const bool isId = std::isdigit(static_cast<unsigned char>(assignment.name[0]));
        if (!rates.empty() && isId != (protocol == Protocol::Sirf))
            Fail(FailureKind::Usage, "sentences and message ids cannot be mixed");
        protocol = isId ? Protocol::Sirf : Protocol::Nmea;
        MessageRate rate;
        if (isId) {
            constexpr unsigned Longest = 30;
            rate.number = static_cast<unsigned>(ParseWhole(assignment.name, 1, 255, "message id"));
            rate.kind = std::to_string(rate.number);
            rate.seconds = static_cast<unsigned>(ParseWhole(assignment.value, 0, Longest, assignment.name));
        } else {
            const auto kind = FindSentenceKind(assignment.name);
            if (!kind)
                Fail(FailureKind::Usage, "no sentence \"" + assignment.name +
                                             "\"; there are GGA, GLL, GSA, GSV, RMC, VTG, MSS and ZDA");
            rate.number = *kind;
            rate.kind = SentenceKinds()[*kind];
            rate.seconds = static_cast<unsigned>(ParseWhole(assignment.value, 0, 255, assignment.name));
        }
        for (const MessageRate& other : rates)
            if (other.kind == rate.kind) Fail(FailureKind::Usage, rate.kind + " is given twice");
        rates.push_back(rate);
    }
    return rates;
}

void SetRates(Context& context, const RatesOptions& options)
{
    Protocol protocol = Protocol::Nmea;
    const std::vector<MessageRate> rates = ParseRates(options.assignments, protocol);
    if (context.options.dryRun) {
        for (const MessageRate& rate : rates)
            context.output.Line("> " + FrameText(MessageRateFrame(protocol, rate)));
        return;
    }
    const Receiver receiver = FindReceiver(context);
    Session& session = *receiver.session;
    if (receiver.found.protocol != protocol)
        Fail(FailureKind::Protocol, std::string("the receiver speaks ") +
                                        ProtocolTitle(receiver.found.protocol) +
                                        ", which has no such messages: \"toravanectl switch " +
                                        ProtocolKey(protocol) + "\" changes it");
    for (const MessageRate& rate : rates) {
        if (protocol == Protocol::Nmea) {
            session.Send(MessageRateFrame(protocol, rate));
            continue;
        }
        const Reply reply =
            SendCommand(session, MessageRatePayload(rate), Seconds(context.options.timeoutSeconds));
        // A change that is seen needs no acknowledgement.
        if (reply == Reply::Refused || options.noVerify) Require(reply, "rate of message " + rate.kind);
    }
    if (!options.noVerify) SeeMessageRates(session, rates);
    for (const MessageRate& rate : rates) PrintRate(context, rate.kind, rate.seconds);
}

} // namespace

Action DefineRates(Parser& parser)
{
    const auto options = std::make_shared<RatesOptions>();
    std::vector<std::string> kinds;
    for (const char* kind : SentenceKinds()) kinds.push_back(kind + std::string("="));
    parser
        .Option(
            "NAME=SECONDS", options->assignments,
            "sentences (GGA GLL GSA GSV RMC VTG MSS ZDA) or message ids, and seconds between two; 0 is off")
        .Suggest(kinds);
    parser.Option("--for", options->seconds, "how long to measure (11)").TypeName("SECONDS");
    parser.Flag("--no-verify", options->noVerify, "do not wait until the change is seen");
    return [options](Context& context) {
        const double seconds = options->seconds.empty() ? 11 : ParseSeconds(options->seconds, "--for");
        if (options->assignments.empty()) {
            if (options->noVerify) Fail(FailureKind::Usage, "--no-verify is for setting: give NAME=SECONDS");
            Measure(context, seconds);
        } else {
            if (!options->seconds.empty()) Fail(FailureKind::Usage, "--for is for measuring: leave it out");
            SetRates(context, *options);
        }
    };
}

} // namespace console
