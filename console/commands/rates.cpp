// SPDX-License-Identifier: MIT
#include <cctype>
#include <cstdio>

#include "console/commands/commands.h"
#include "console/conversation.h"
#include "console/finder.h"
#include "console/nmea_commands.h"
#include "console/sentence_rates.h"
#include "sirf/setting_values.h"

namespace console
{

namespace
{

struct RatesOptions {
    std::vector<std::string> assignments;
    std::string seconds;
    bool noVerify = false;
};

// One kind of message and its wanted interval.
struct Wish {
    std::string kind; // the name under which it is counted: "GGA", "41"
    unsigned number, seconds;
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

std::vector<Wish> ParseWishes(const std::vector<std::string>& assignments, Protocol& protocol)
{
    std::vector<Wish> wishes;
    for (const std::string& text : assignments) {
        const Assignment assignment = ParseAssignment(text);
        const bool isId = std::isdigit(static_cast<unsigned char>(assignment.name[0]));
        if (!wishes.empty() && isId != (protocol == Protocol::Sirf))
            Fail(FailureKind::Usage, "sentences and message ids cannot be mixed");
        protocol = isId ? Protocol::Sirf : Protocol::Nmea;
        Wish wish;
        if (isId) {
            constexpr unsigned Longest = 30;
            wish.number = static_cast<unsigned>(ParseWhole(assignment.name, 1, 255, "message id"));
            wish.kind = std::to_string(wish.number);
            wish.seconds = static_cast<unsigned>(ParseWhole(assignment.value, 0, Longest, assignment.name));
        } else {
            const auto kind = FindSentenceKind(assignment.name);
            if (!kind)
                Fail(FailureKind::Usage, "no sentence \"" + assignment.name +
                                             "\"; there are GGA, GLL, GSA, GSV, RMC, VTG, MSS and ZDA");
            wish.number = *kind;
            wish.kind = SentenceKinds()[*kind];
            wish.seconds = static_cast<unsigned>(ParseWhole(assignment.value, 0, 255, assignment.name));
        }
        for (const Wish& other : wishes)
            if (other.kind == wish.kind) Fail(FailureKind::Usage, wish.kind + " is given twice");
        wishes.push_back(wish);
    }
    return wishes;
}

Frame RatePayload(const Wish& wish)
{
    uint8_t payload[MaxCommandLength];
    SettingValues values = {};
    // In the order of the layout's rows.
    values[0] = wish.seconds;
    values[1] = wish.number;
    PackCommand(SetMessageRateLayout, values, payload);
    return Frame(payload, payload + SetMessageRateLayout.length);
}

Frame RateFrame(Protocol protocol, const Wish& wish)
{
    if (protocol == Protocol::Nmea) return FrameNmea(SentenceRateBody(wish.number, wish.seconds));
    return FrameSirf(RatePayload(wish));
}

// Checks that a kind of message arrives, or no longer arrives. If not, adds the difference to the text.
void Verify(Session& session, const ArrivalCounter& counter, const Wish& wish, Clock::time_point sent,
            std::string& differences)
{
    constexpr auto Reserve = std::chrono::seconds(2), Quiet = std::chrono::seconds(3);
    const auto cameSince = [&](Clock::time_point since) {
        const auto found = counter.table.find(wish.kind);
        return found != counter.table.end() && found->second.last > since;
    };
    const auto add = [&](const char* what) {
        differences += (differences.empty() ? "" : ", ") + wish.kind + what;
    };
    if (wish.seconds) {
        const auto end = sent + std::chrono::seconds(2 * wish.seconds) + Reserve;
        if (!session.WaitFor([&] { return cameSince(sent); }, end - Clock::now())) add(" does not come");
        return;
    }
    // Messages that the receiver was sending at the time of the command may still arrive.
    const auto isQuiet = [&] {
        const auto found = counter.table.find(wish.kind);
        const auto last = found == counter.table.end() ? sent : std::max(sent, found->second.last);
        return Clock::now() - last >= Quiet;
    };
    const auto end = sent + 2 * Quiet;
    while (!isQuiet() && Clock::now() < end) session.WaitFor(isQuiet, Seconds(0.1));
    if (!isQuiet()) add(" still comes");
}

void SetRates(Context& context, const RatesOptions& options)
{
    Protocol protocol = Protocol::Nmea;
    const std::vector<Wish> wishes = ParseWishes(options.assignments, protocol);
    if (context.options.dryRun) {
        for (const Wish& wish : wishes) context.output.Line("> " + FrameText(RateFrame(protocol, wish)));
        return;
    }
    const Receiver receiver = FindReceiver(context);
    Session& session = *receiver.session;
    if (receiver.found.protocol != protocol)
        Fail(FailureKind::Protocol, std::string("the receiver speaks ") +
                                        ProtocolTitle(receiver.found.protocol) +
                                        ", which has no such messages: \"toravanectl switch " +
                                        ProtocolKey(protocol) + "\" changes it");
    ArrivalCounter counter;
    std::vector<Clock::time_point> sent;
    for (const Wish& wish : wishes) {
        if (protocol == Protocol::Nmea)
            session.Send(RateFrame(protocol, wish));
        else if (SendCommand(session, RatePayload(wish), Seconds(context.options.timeoutSeconds)) ==
                 Reply::Refused)
            Require(Reply::Refused, "rate of message " + wish.kind);
        sent.push_back(Clock::now());
    }
    std::string differences;
    if (!options.noVerify)
        for (size_t i = 0; i < wishes.size(); ++i) Verify(session, counter, wishes[i], sent[i], differences);
    if (!differences.empty()) Fail(FailureKind::Differs, differences);
    for (const Wish& wish : wishes) PrintRate(context, wish.kind, wish.seconds);
}

} // namespace

Action DefineRates(Parser& parser)
{
    const auto options = std::make_shared<RatesOptions>();
    parser
        .Option(
            "NAME=SECONDS", options->assignments,
            "sentences (GGA GLL GSA GSV RMC VTG MSS ZDA) or message ids, and seconds between two; 0 is off")
        .TypeName("");
    parser.Option("--for", options->seconds, "how long to measure (11)").TypeName("SECONDS");
    parser.Flag("--no-verify", options->noVerify, "do not wait until the change is seen");
    return [options](Context& context) {
        const double seconds = options->seconds.empty() ? 11 : ParseSeconds(options->seconds, "--for");
        if (options->assignments.empty())
            Measure(context, seconds);
        else
            SetRates(context, *options);
    };
}

} // namespace console
