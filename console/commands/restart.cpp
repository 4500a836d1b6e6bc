// SPDX-License-Identifier: MIT
#include <cctype>
#include <cstdio>
#include <iostream>

#include "console/commands/commands.h"
#include "console/conversation.h"
#include "console/finder.h"
#include "console/fix_reports.h"
#include "console/nmea_commands.h"
#include "console/remembered_rate.h"
#include "console/switching.h"
#include "sirf/setting_values.h"

namespace console
{

namespace
{

struct RestartKind {
    const char* name;
    unsigned nmea; // reset configuration of PSRF101
    uint8_t sirf;  // and of command 128
};
constexpr RestartKind Kinds[] = {
    {"hot", 1, 0x40}, {"warm", 2, 0x02}, {"cold", 4, 0x04}, {"factory", 8, 0x08}};
constexpr const RestartKind& Factory = Kinds[3];

struct RestartOptions {
    std::string kind, seconds;
    bool wait = false;
};

const RestartKind& FindKind(const std::string& name)
{
    for (const RestartKind& kind : Kinds)
        if (name == kind.name) return kind;
    Fail(FailureKind::Usage, "no restart \"" + name + "\"; there are hot, warm, cold and factory");
}

Frame RestartPayload(const RestartKind& kind)
{
    constexpr size_t Configuration = 24, Channels = 6, AllChannels = 12;
    uint8_t payload[MaxCommandLength];
    SettingValues values = {};
    values[Channels] = AllChannels;
    PackCommand(InitializeDataSourceLayout, values, payload);
    payload[Configuration] = kind.sirf;
    return Frame(payload, payload + InitializeDataSourceLayout.length);
}

void Confirm(const Context& context)
{
    if (context.options.yes) return;
    if (!InputIsTerminal() || !ErrorIsTerminal())
        Fail(FailureKind::Usage, "a factory reset forgets all settings: give --yes if it is meant");
    EventLoop loop;
    std::fprintf(stderr, "A factory reset forgets all settings, the line rate too. Go on (y/n)? ");
    while (!InputIsWaiting()) loop.WaitFor({}, Seconds(0.05)); // a signal ends the question
    std::string answer;
    std::getline(std::cin, answer);
    for (char& c : answer) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (answer != "y" && answer != "yes") Fail(FailureKind::Failed, "nothing was sent");
}

// Watches a receiver in NMEA, which acknowledges nothing, for signs of a new start: its start-up text, a
// report without a fix after one with a fix, or a pause.
class StartWatch
{
public:
    StartWatch()
    {
        listener_.sentence = [this](const Sentence& sentence) {
            if (!sentence.hadChecksum) return;
            const bool isStartUpText =
                sentence.body.starts_with("PSRFTXT,Version") || sentence.Kind() == "PSRF150";
            const auto fix = ReportedFix(sentence);
            const Clock::time_point now = Clock::now();
            hasStarted_ |= isStartUpText || (hadFix_ && fix == false) || now - last_ >= LongPause;
            hadFix_ |= fix.value_or(false);
            last_ = now;
        };
    }

    bool HasStarted() const { return hasStarted_; }

    // True if the receiver is heard now.
    bool IsHeard() const { return Clock::now() - last_ < LongPause; }

private:
    static constexpr auto LongPause = std::chrono::milliseconds(1500);

    bool hasStarted_ = false, hadFix_ = false;
    Clock::time_point last_ = Clock::now();
    Listener listener_;
};

// A receiver needs less time until it is heard again.
constexpr auto StartLimit = std::chrono::seconds(4);

// The receiver's protocol and rate after a restart; a factory reset may change both.
void FindAgain(Context& context, Session& session, const RestartKind& kind, Found before)
{
    constexpr auto StillUnderWay = std::chrono::milliseconds(300);
    session.WaitFor({}, StillUnderWay);
    if (Listen(session, StartLimit) == before.protocol) return;
    const auto found = Search(session, {before.rate});
    if (!found) Fail(FailureKind::Lost, "the receiver is not heard at any rate after the restart");
    RememberRate(session.Port(), found->rate);
    if (found->protocol == before.protocol && found->rate == before.rate) return;
    if (&kind != &Factory)
        Fail(FailureKind::Differs, "after the restart the receiver is at " + FoundText(*found) +
                                       " instead of " + FoundText(before));
    context.output.Note("after the reset the receiver is at " + FoundText(*found));
}

void WaitForFix(Context& context, Session& session, Clock::time_point start, double limit)
{
    bool hasFix = false;
    Listener listener;
    // Messages that the receiver sent before the restart do not count.
    const Clock::time_point first = start + std::chrono::seconds(1);
    const auto take = [&](std::optional<bool> fix) {
        hasFix |= fix.value_or(false) && Clock::now() >= first;
    };
    listener.sentence = [&](const Sentence& sentence) { take(ReportedFix(sentence)); };
    listener.message = [&](const Message& message) { take(ReportedFix(message)); };
    if (!session.WaitFor([&] { return hasFix; }, start + Seconds(limit) - Clock::now()))
        Fail(FailureKind::NoAnswer, "no fix in time");
    const double seconds = std::round(std::chrono::duration<double>(Clock::now() - start).count() * 10) / 10;
    char text[32];
    std::snprintf(text, sizeof text, "%.1f", seconds);
    context.output.Line("first fix after " + std::string(text) + " s");
    context.output.object["seconds"] = seconds;
}

void Restart(Context& context, const RestartOptions& options)
{
    const RestartKind& kind = FindKind(options.kind);
    if (!options.seconds.empty() && !options.wait) Fail(FailureKind::Usage, "--for is for --wait: give both");
    const double limit = options.seconds.empty() ? 900 : ParseSeconds(options.seconds, "--for");
    const Frame payload = RestartPayload(kind);
    if (context.options.dryRun) {
        context.output.Line("> " + FrameText(FrameNmea(RestartBody(kind.nmea))));
        context.output.Line("> " + FrameText(FrameSirf(payload)));
        return;
    }
    if (&kind == &Factory) Confirm(context);

    const Receiver receiver = FindReceiver(context);
    Session& session = *receiver.session;
    const Clock::time_point start = Clock::now();
    if (receiver.found.protocol == Protocol::Sirf) {
        Require(SendCommand(session, payload, Seconds(context.options.timeoutSeconds)), "restart");
        if (&kind == &Factory || options.wait) FindAgain(context, session, kind, receiver.found);
    } else {
        const StartWatch watch;
        session.Send(FrameNmea(RestartBody(kind.nmea)));
        if (!session.WaitFor([&] { return watch.HasStarted(); }, StartLimit)) {
            if (watch.IsHeard())
                Fail(FailureKind::NoAnswer, "the receiver goes on as before: no sign of a restart was seen");
            FindAgain(context, session, kind, receiver.found);
        }
    }
    if (options.wait)
        WaitForFix(context, session, start, limit);
    else
        context.output.Line(std::string(kind.name) + " start made");
}

} // namespace

Action DefineRestart(Parser& parser)
{
    const auto options = std::make_shared<RestartOptions>();
    std::vector<std::string> names;
    for (const RestartKind& kind : Kinds) names.push_back(kind.name);
    parser.Option("KIND", options->kind, "hot, warm, cold or factory").Required().Suggest(names);
    parser.Flag("--wait", options->wait, "wait for the first fix");
    parser.Option("--for", options->seconds, "how long --wait waits (900)").TypeName("SECONDS");
    return [options](Context& context) { Restart(context, *options); };
}

} // namespace console
