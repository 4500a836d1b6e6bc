// SPDX-License-Identifier: MIT
#include <cmath>
#include <cstdio>

#include "console/commands/commands.h"
#include "console/correction_options.h"
#include "console/finder.h"
#include "console/for_option.h"
#include "console/track.h"
#include "text/utf8.h"
#include "ui/page_lines.h"

namespace console
{

namespace
{

struct Arguments {
    ForOption duration;
    bool plain = false;
    CorrectionOptions correction;
};

// "2008-06-21T10:00:35Z 47.3769 8.5417 459.5 m, 10 m/s, 90 deg, 3D, 9 satellites, HDOP 1.1"
std::string FixLine(const Sample& sample)
{
    std::string line = sample.time ? FormatTime(*sample.time) : "-";
    if (sample.rawTime && sample.rawTime != sample.time)
        line += " (reported as " + FormatTime(*sample.rawTime) + ")";
    if (!sample.IsPoint()) return line + " no fix";
    const FixReport& fix = sample.fix;
    const auto add = [&line](const char* before, double value, int decimals, const char* after) {
        if (std::isfinite(value)) line += before + Number(value, decimals) + after;
    };
    add(" ", fix.LatitudeDegrees, 7, "");
    add(" ", fix.LongitudeDegrees, 7, "");
    add(" ", fix.AltitudeMslMetres, 1, " m");
    add(", ", fix.SpeedMetresPerSecond, 2, " m/s");
    add(", ", fix.CourseDegrees, 1, " deg");
    line += fix.Mode == FixMode::ThreeD ? ", 3D" : ", 2D";
    if (fix.SatellitesInFix >= 0) line += ", " + std::to_string(fix.SatellitesInFix) + " satellites";
    add(", HDOP ", fix.Hdop, 1, "");
    return line;
}

// The text page on a terminal; each line has its place.
class Page
{
public:
    explicit Page(Output& output) : output_(output) { output_.Raw(HideCursor + Home + ClearBelow); }

    ~Page()
    {
        try {
            output_.Raw(ShowCursor);
        } catch (const Failure&) { // the terminal is closed, and its cursor with it
        }
    }

    Page(const Page&) = delete;

    // `dates` is the line about corrected dates; it may be empty.
    void Paint(const std::string& dates)
    {
        std::string text = Home;
        for (uint32_t i = 0; i < LastTextLine; ++i) { // the last line explains keys of the window program
            wchar_t line[TextLineCapacity];
            CopyTextLine(i, line);
            text += ToUtf8(line) + ClearRight + "\r\n";
        }
        output_.Raw(text + dates + ClearBelow);
    }

private:
    inline static const std::string Home = "\x1b[H", ClearRight = "\x1b[K", ClearBelow = "\x1b[J";
    inline static const std::string HideCursor = "\x1b[?25l\x1b[?7l",
                                    ShowCursor = "\x1b[?7h\x1b[?25h"; // and no line wrap

    Output& output_;
};

class Monitor
{
public:
    Monitor(Context& context, const Arguments& arguments)
        : output_(context.output),
          asJson_(context.options.json),
          correction_(arguments.correction),
          notes_(context.output),
          gatherer_([this](const Sample& sample) { Take(sample); })
    {
        listener_.decoded = [this] { Decoded(); };
        if (asJson_ || arguments.plain || !OutputIsTerminal()) return;
        terminal_.emplace();
        if (terminal_->TakesSequences()) page_.emplace(output_);
    }

    // Shows the reports that arrive until the time is over; then returns false.
    bool Run(Session& session, Clock::time_point end)
    {
        // A pause on the line ends the messages of one moment.
        constexpr Duration Pause = std::chrono::milliseconds(150), LongestQuiet = std::chrono::seconds(1);
        const auto wait = [&](Duration limit) {
            const Clock::time_point now = Clock::now();
            if (now >= end) return false;
            return session.WaitFor([this] { return std::exchange(changed_, false); },
                                   std::min(limit, end - now));
        };
        const Clock::time_point begin = Clock::now();
        if (wait(LongestQuiet))
            while (wait(Pause) && Clock::now() - begin < LongestQuiet) continue;
        gatherer_.Flush();
        if (page_) page_->Paint(dates_);
        return Clock::now() < end;
    }

private:
    void Decoded()
    {
        changed_ = true;
        if (LatestFix.InViewReports == satelliteReports_) return;
        satelliteReports_ = LatestFix.InViewReports;
        if (asJson_) output_.Raw(SkyLine(LatestFix));
    }

    void Take(Sample sample)
    {
        std::optional<Correction> correction;
        if (correction_.wanted) correction = CorrectSample(sample, correction_.ReferenceOrClock());
        // A note would disturb the page, so the page has a line for it.
        if (page_) {
            dates_.clear();
            if (correction) dates_ = " Corrected: " + FormatTime(*sample.time) + ", " + correction->reason;
            return;
        }
        if (correction) notes_.Take(*correction);
        output_.Raw(asJson_ ? TpvLine(sample) : FixLine(sample) + "\n");
    }

    Output& output_;
    bool asJson_, changed_ = false;
    const CorrectionOptions& correction_;
    CorrectionNotes notes_;
    uint32_t satelliteReports_ = 0;
    std::string dates_;                    // the page's line about corrected dates
    std::optional<AnsiTerminal> terminal_; // lives longer than the page, which ends with a sequence
    std::optional<Page> page_;
    SampleGatherer gatherer_;
    Listener listener_;
};

void MonitorReceiver(Context& context, const Arguments& arguments)
{
    const Duration limit = arguments.duration.Limit();
    arguments.correction.ReferenceOrClock(); // a wrong option is noticed before a port is opened
    if (context.options.dryRun) return;      // it sends nothing
    context.output.noObject = true;
    const Receiver receiver = FindReceiver(context);
    const Clock::time_point begin = Clock::now();
    Monitor monitor(context, arguments);
    while (monitor.Run(*receiver.session, begin + limit)) continue;
}

} // namespace

Action DefineMonitor(Parser& parser)
{
    const auto arguments = std::make_shared<Arguments>();
    arguments->duration.Define(parser);
    parser.Flag("--plain", arguments->plain, "a line for each fix, on a terminal too");
    arguments->correction.Define(parser, "the computer's clock");
    return [arguments](Context& context) { MonitorReceiver(context, *arguments); };
}

} // namespace console
