// SPDX-License-Identifier: MIT
#include <cstdlib>

#include "console/commands/commands.h"
#include "console/dates.h"
#include "console/finder.h"
#include "console/fix_reports.h"
#include "console/remembered_rate.h"
#include "console/sentence_rates.h"
#include "console/switching.h"
#include "graph/channels.h"

namespace console
{

namespace
{

// The checks in their order. If an earlier problem makes a check impossible, its result stays unknown.
constexpr const char* Checks[] = {"port", "permission", "holder", "bytes", "text",
                                  "rate", "protocol",   "fix",    "date",  "load"};

class Report
{
public:
    explicit Report(Output& output) : output_(output) { output.object["checks"] = Json::array(); }

    void Ok(const std::string& message) { Add("ok", Colour::Good, message); }
    void Problem(const std::string& message)
    {
        Add("problem", Colour::Bad, message);
        ++problems_;
    }
    void Unknown(const std::string& message) { Add("unknown", Colour::Doubtful, message); }

    // The other results are unknown; throws if there is a problem.
    void End()
    {
        while (next_ < std::size(Checks)) Unknown("depends on what stands above");
        if (problems_)
            throw Failure{FailureKind::Failed,
                          std::to_string(problems_) + (problems_ == 1 ? " problem" : " problems"), true};
    }

private:
    void Add(const char* state, Colour colour, const std::string& message)
    {
        const std::string check = Checks[next_++];
        output_.Line(check + ": " + output_.Coloured(colour, state) + ": " + message);
        output_.object["checks"].push_back({{"check", check}, {"state", state}, {"message", message}});
    }

    Output& output_;
    size_t next_ = 0;
    int problems_ = 0;
};

// Result for a line without a valid message.
struct Noise {
    uint64_t bytes = 0, printable = 0;

    bool IsText() const { return bytes && printable * 10 >= bytes * 9; }
};

void CheckFix(Report& report, std::optional<bool> hasFix)
{
    if (!hasFix)
        report.Unknown("no message that reports it came");
    else if (*hasFix)
        report.Ok("the receiver has one");
    else
        report.Problem("none: give the antenna a free view of the sky for some minutes");
}

void CheckDate(Report& report, bool known)
{
    if (!known) {
        report.Unknown("no message with a date came");
        return;
    }
    const Date raw = {FixTime.wYear, FixTime.wMonth, FixTime.wDay};
    if (!IsDate(raw)) {
        report.Problem("the receiver reports a date that there is not");
        return;
    }
    const Correction correction = CorrectDate(raw, {Today(), ReferenceKind::Clock}, ReleaseDate());
    constexpr int64_t HalfYear = 26 * 7;
    const std::string text = FormatDate(raw);
    if (correction.epochs)
        report.Problem(text + " lies " + std::to_string(1024 * correction.epochs) + " weeks before " +
                       FormatDate(correction.corrected) +
                       ": --correct-dates of relay, monitor and convert mends it");
    else if (std::abs(DaysOf(raw) - DaysOf(correction.reference)) > HalfYear)
        report.Problem(text + " is far from " + FormatDate(correction.reference) +
                       ": \"toravanectl date\" explains");
    else
        report.Ok(text);
}

void CheckLoad(Report& report, double bytesPerSecond, uint32_t rate)
{
    constexpr double BitsPerByte = 10, Heavy = 90;
    const double percent = bytesPerSecond * BitsPerByte * 100 / rate;
    char text[80];
    std::snprintf(text, sizeof text, "%.0f %% of %u baud", percent, static_cast<unsigned>(rate));
    if (percent <= Heavy)
        report.Ok(text);
    else
        report.Problem(std::string(text) + ": messages may be left out: raise the rate, or send less with "
                                           "\"toravanectl rates\"");
}

void Examine(Context& context, Report& report)
{
    std::string port;
    try {
        port = ChoosePort(context.options);
    } catch (const Failure& failure) { // none, or several
        report.Problem(failure.message);
        return;
    }
    const auto info = InspectPort(port);
    if (!info) {
        report.Problem(port + " is not there: plug it in, or choose another (\"toravanectl ports\")");
        return;
    }
    report.Ok(port);
    std::unique_ptr<Session> session;
    const auto remembered = RememberedRate(port);
    const uint32_t start = context.options.rate.value_or(remembered.value_or(4800));
    try {
        session = std::make_unique<Session>(context, port, start);
    } catch (const Failure& failure) {
        if (info->state != "denied") {
            report.Ok("it may be opened");
            report.Problem(failure.message);
        } else {
            report.Problem(failure.message);
        }
        return;
    }
    report.Ok("it may be opened");
    if (info->holder.empty())
        report.Ok("held by nobody else");
    else
        report.Problem("open in " + info->holder + ", too, which takes bytes away: end that program first");

    Noise noise;
    std::optional<bool> hasFix; // by any message
    bool dateKnown = false;
    Listener listener;
    listener.bytes = [&](std::span<const uint8_t> bytes) {
        noise.bytes += bytes.size();
        for (const uint8_t b : bytes) noise.printable += (b >= 0x20 && b <= 0x7E) || b == '\r' || b == '\n';
    };
    const auto takeFix = [&](std::optional<bool> fix) {
        if (fix) hasFix = hasFix.value_or(false) || *fix;
    };
    std::string kind;
    listener.sentence = [&](const Sentence& sentence) {
        kind = sentence.hadChecksum ? sentence.Kind() : "";
        takeFix(ReportedFix(sentence));
    };
    bool geodeticDate = false;
    listener.message = [&](const Message& message) {
        kind.clear();
        constexpr size_t DayOffset = 14, Length = 91;
        geodeticDate = message.Id() == 41 && message.payload.size() >= Length && message.payload[DayOffset];
        takeFix(ReportedFix(message));
    };
    listener.decoded = [&] {
        dateKnown |= geodeticDate || (kind == "RMC" && FixTime.wMonth && FixTime.wDay);
        geodeticDate = false;
    };

    std::optional<Found> found;
    if (context.options.rate) {
        if (const auto protocol = Listen(*session, ListeningTime(start))) found = Found{*protocol, start};
    } else {
        found = Search(*session, {start});
    }
    if (noise.bytes == 0) {
        report.Problem("no byte " + PlaceOfSearch(context.options) +
                       ": is the receiver on, and connected to this port?");
        return;
    }
    report.Ok("bytes arrive");
    if (!found) {
        report.Problem(noise.IsText() ? "text, but no sentence with a right checksum: is it a receiver?"
                                      : "noise: another rate, another protocol, or a bad line");
        return;
    }
    report.Ok(found->protocol == Protocol::Nmea ? "readable text" : "binary messages");
    report.Ok(std::to_string(found->rate) + " baud");
    report.Ok(ProtocolTitle(found->protocol));
    RememberRate(port, found->rate);

    constexpr double MeasuringSeconds = 5;
    const uint64_t before = session->BytesReceived();
    session->WaitFor({}, Seconds(MeasuringSeconds));
    CheckFix(report, hasFix);
    CheckDate(report, dateKnown);
    CheckLoad(report, static_cast<double>(session->BytesReceived() - before) / MeasuringSeconds, found->rate);
}

void Doctor(Context& context)
{
    if (context.options.dryRun) return; // it never sends anything
    Report report(context.output);
    Examine(context, report);
    report.End();
}

} // namespace

Action DefineDoctor(Parser&)
{
    return Doctor;
}

} // namespace console
