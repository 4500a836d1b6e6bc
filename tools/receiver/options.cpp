// SPDX-License-Identifier: MIT
#include "options.h"

#include "common/command_line.h"
#include "common/numbers.h"
#include "help.h"

namespace receiver
{

namespace
{

// LATITUDE,LONGITUDE[,HEIGHT]
bool ParsePosition(std::string_view text, Geodetic& place)
{
    double* const parts[] = {&place.latitudeDeg, &place.longitudeDeg, &place.heightM};
    constexpr double limits[] = {89.9, 180.0, MostHeightM};
    for (size_t i = 0; i < 3; ++i) {
        const size_t end = std::min(text.find(','), text.size());
        const auto number = NumberBetween(text.substr(0, end), -limits[i], limits[i]);
        if (!number) return false;
        *parts[i] = *number;
        if (end == text.size()) return i >= 1;
        text.remove_prefix(end + 1);
    }
    return false;
}

// ---- Setters: each takes an option's value, and returns the reason if it is invalid ----------------

using Setter = std::string (*)(const std::string& value, Options& options);

const std::string Fine;

std::string Choices(std::string_view value, std::string_view choices)
{
    return "'" + std::string(value) + "' is none of " + std::string(choices);
}

std::string SetProtocol(const std::string& value, Options& options)
{
    const auto protocol = ProtocolByName(value);
    if (!protocol) return Choices(value, "nmea, sirf");
    options.config.protocol = *protocol;
    return Fine;
}

std::string SetRate(const std::string& value, Options& options)
{
    const auto rate = LineRateByName(value);
    if (!rate) return Choices(value, LineRateNames);
    options.config.lineRate = *rate;
    return Fine;
}

std::string SetTrack(const std::string& value, Options& options)
{
    Track& track = options.config.track;
    if (const auto kind = TrackByName(value)) {
        track.kind = *kind;
        return Fine;
    }
    if (!value.ends_with(".gpx")) return Choices(value, std::string(TrackNames) + ", FILE.gpx");
    constexpr double withoutTimesMps = 5.0;
    std::string error;
    auto points = ReadGpx(value, withoutTimesMps, error);
    if (!points) return error;
    track.kind = TrackKind::Points;
    track.points = std::move(*points);
    return Fine;
}

std::string SetPosition(const std::string& value, Options& options)
{
    if (ParsePosition(value, options.config.track.origin)) return Fine;
    return "'" + value + "' is not LATITUDE,LONGITUDE[,HEIGHT] within 89.9 and 180 degrees and 20000 m";
}

std::string SetDate(const std::string& value, Options& options)
{
    const auto time = value == "now" ? TimeOfThisMachine() : ParseDate(value);
    if (!time) return "'" + value + "' is neither now nor a time like 2008-06-21T10:00:00 from 1980-01-06 on";
    options.config.start = *time;
    return Fine;
}

std::string SetStart(const std::string& value, Options& options)
{
    const auto start = RestartByName(value);
    if (!start) return Choices(value, "cold, warm, hot");
    options.config.firstStart = *start;
    return Fine;
}

std::string SetFirmware(const std::string& value, Options& options)
{
    constexpr size_t longest = 60;
    if (value.empty() || value.size() > longest) return "has not 1 to 60 characters";
    options.config.version = value;
    return Fine;
}

std::string SetRefuse(const std::string& value, Options& options)
{
    if (ParseCommandList(value, options.config.refused)) return Fine;
    return "'" + value + "' is no list like 170,?139,PSRF106";
}

std::string SetPivotWeek(const std::string& value, Options& options)
{
    const auto week = WholeNumberBetween(value, 0, 9999);
    if (!week) return "'" + value + "' is no whole number from 0 to 9999";
    options.config.pivotWeek = *week;
    return Fine;
}

std::string SetFault(const std::string& value, Options& options)
{
    const size_t equals = value.find('=');
    if (equals == std::string::npos)
        return "'" + value + "' is not NAME=VALUE; NAME is one of " + FaultNames();
    const std::string name = value.substr(0, equals);
    if (!IsFault(name)) return Choices(name, FaultNames());
    std::string error;
    const auto action = ParseAction(name + " " + value.substr(equals + 1), error);
    if (!action) return error;
    options.startFaults.push_back(*action);
    return Fine;
}

template <double Options::*Field, int Low, int High>
std::string SetNumber(const std::string& value, Options& options)
{
    const auto number = NumberBetween(value, Low * 0.01, High);
    if (!number)
        return "'" + value + "' is no number from " + (Low ? "0.01" : "0") + " to " + std::to_string(High);
    options.*Field = *number;
    return Fine;
}

struct Row {
    const char *group, *name, *value;
    Setter set;
    const char* description;
    bool several = false; // repeated options all count, not only the last one
};
constexpr Row Rows[] = {
    {"Receiver", "--protocol", "nmea|sirf", SetProtocol,
     "protocol at the start and after a factory reset (nmea)"},
    {"Receiver", "--rate", "RATE", SetRate,
     "line rate at the start and after a factory reset: 1200, 2400,\n"
     "4800, 9600, 19200, 38400, 57600 or 115200 bit/s (4800)"},
    {"Receiver", "--start", "cold|warm|hot", SetStart, "how the first start goes (cold)"},
    {"Receiver", "--firmware", "TEXT", SetFirmware, "version text, at most 60 characters"},
    {"Receiver", "--refuse", "LIST", SetRefuse,
     "commands that this firmware does not have, by comma: message ids,\n"
     "whose polls are refused as well, and sentences. \"170,PSRF106\" is\n"
     "a receiver without SBAS parameters and without datums; \"?139\"\n"
     "refuses the poll of 139 alone. May be given several times",
     true},
    {"Receiver", "--pivot-week", "N", SetPivotWeek,
     "the first GPS week (0 to 9999) that the firmware thinks possible:\n"
     "a later date than its 1024 weeks is reported 1024 weeks too early,\n"
     "or several times that"},
    {"World", "--track", "TRACK", SetTrack,
     "still; circle, 200 m around at 10 m/s; walk, a square at 1.4 m/s\n"
     "with rests at the corners; eight, with height; or the name of a\n"
     ".gpx file, which is repeated (without times in it: 5 m/s) (circle)"},
    {"World", "--position", "LAT,LON[,HEIGHT]", SetPosition,
     "origin of the track, degrees north and east, metres above the\n"
     "ellipsoid (47.3769,8.5417,455)"},
    {"World", "--date", "DATE", SetDate,
     "UTC at the start, YYYY-MM-DDThh:mm:ss or now (2008-06-21T10:00:00)"},
    {"Faults", "--fault", "NAME=VALUE", SetFault,
     "a fault from the start on, see below; may be given several times", true},
    {"Runs", "--speed", "FACTOR", SetNumber<&Options::speed, 1, 10000>,
     "let the time of the run, and the line with it, go faster or\n"
     "slower (1)"},
    {"Runs", "--duration", "SECONDS", SetNumber<&Options::durationS, 0, 1000000000>,
     "end after so much time of the run (0: do not)"},
};

struct PathRow {
    const char *group, *name, *value;
    std::string Options::*path;
    const char* description;
};
constexpr PathRow PathRows[] = {
    {"Faults", "--script", "FILE", &Options::script, "timed actions, see below"},
    {"Runs", "--link", "PATH", &Options::link,
     "a symbolic link to the terminal, removed at the end; an older link\n"
     "is replaced"},
    {"Runs", "--play", "FILE", &Options::play,
     "send the bytes of FILE instead, at --rate, beginning when a host has\n"
     "opened the terminal and set it up (0.3 s); leading lines that begin\n"
     "with '#' are skipped. After the last byte the terminal stays silent,\n"
     "and the program ends when the host closes it"},
    {"Runs", "--record", "FILE", &Options::record,
     "keep what the host has written, as it was written; the program ends\n"
     "with an error when that fails"},
};

} // namespace

std::optional<int> ParseOptions(int argumentCount, const char* const* arguments, Options& options)
{
    options.config.start = *ParseDate("2008-06-21T10:00:00");
    CLI::App app(HelpBefore, ProgramName);
    app.get_formatter()->column_width(28);
    app.footer(HelpAfter);
    app.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    app.set_version_flag("--version", std::string(ProgramName) + " " TORAVANE_VERSION);
    for (const Row& row : Rows) {
        const auto set = [&options, &row](const std::vector<std::string>& values) {
            for (const std::string& value : values)
                if (const std::string reason = row.set(value, options); !reason.empty())
                    throw CLI::ValidationError(row.name, reason);
        };
        CLI::Option* const option =
            app.add_option_function<std::vector<std::string>>(row.name, set, row.description);
        option->group(row.group)->type_name(row.value)->expected(1);
        if (row.several) option->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    }
    for (const PathRow& row : PathRows)
        app.add_option(row.name, options.*row.path, row.description)
            ->group(row.group)
            ->type_name(row.value)
            ->check(NotEmpty);
    app.add_option("--seed", options.config.seed,
                   "for everything random; equal seeds and equal input give equal\n"
                   "output (1)")
        ->group("World")
        ->type_name("N");
    app.add_flag("--wrap", options.config.wrap,
                 "put each SiRF message into a message EE, as some firmware does")
        ->group("Receiver");
    CLI::Option* const play = app.get_option("--play");
    app.add_flag("--repeat", options.repeat, "play FILE over and over")->group("Runs")->needs(play);
    app.add_flag("-v,--verbose", options.verbose, "a line of status each second on standard error")
        ->group("Runs");
    return ParseCommandLine(app, argumentCount, arguments);
}

} // namespace receiver
