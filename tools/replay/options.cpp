// SPDX-License-Identifier: MIT
#include "options.h"

#include <cstdlib>

#include "common/command_line.h"
#include "common/numbers.h"

namespace
{

constexpr int LargestChart = 16384; // pixels

constexpr char Description[] =
    R"(Feeds recorded receiver logs, NMEA text or SiRF binary, byte by byte through the reception of Toravane: the same
code as in the program, without window, port or waiting. Several files are one stream.

Without an option it prints the text page: 19 lines as the program's window shows them, trailing blanks included,
in UTF-8. Each option can be used alone or with others. The outputs follow each other in the order of this list.)";

constexpr char Footer[] =
    R"(Exit status:
  0  a valid message was in the log
  1  there was none; a line on standard error warns
  2  a wrong option, a file that cannot be read or written, output that cannot be written; a line on standard error

Examples:
  $ toravane-replay walk.txt
  $ toravane-replay --stats --samples drive.srf
  $ toravane-replay --chart walk.png --size 480x268 --zero walk.txt
  $ cat part1.txt part2.txt | toravane-replay --page -
  $ toravane-replay --follow /dev/ttyUSB0)";

struct Flag {
    const char* name;
    bool ReplayOptions::*member;
    const char* description;
};

constexpr Flag Outputs[] = {
    {"--samples", &ReplayOptions::samples,
     "for each sample that the strip chart records, as it is recorded,\n"
     "one JSON object on a line: {\"time\":[year,month,day,hour,minute,\n"
     "second],\"values\":[SVsInFix,HDOP,EHPE,Northing,Easting,VDOP,EVPE,\n"
     "Altitude,Speed,Course]}, numbers with 17 significant digits"},
    {"--page", &ReplayOptions::page, "the text page"},
    {"--stats", &ReplayOptions::stats,
     "four lines: messages of each protocol, the rate that the receiver\n"
     "announced, bytes, and the protocol recognised (NMEA, SiRF, or -\n"
     "for none or both)"},
    {"--messages", &ReplayOptions::messages, "the receiver's own text, as the command dialogs show it"},
    {"--sky", &ReplayOptions::sky,
     "as if the SBAS dialog had been open, after the last fix: 13 lines\n"
     "\"ID ELEVATION AZIMUTH\", degrees with 9 decimals (100 is the Sun,\n"
     "101 the Moon, both with half a degree added, the others SBAS\n"
     "satellites), then the dialog's three lines: satellites in view,\n"
     "azimuths, elevations. NMEA hands on eight bits of the year only,\n"
     "so its Sun and Moon are those of another year"},
    {"--commands", &ReplayOptions::commands,
     "the commands that the program would have sent to the receiver, one\n"
     "on a line: sentences as text without their line end, binary frames\n"
     "as hexadecimal bytes"}};

constexpr Flag Ways[] = {{"--zero", &ReplayOptions::zero,
                          "northing, easting and altitude of the chart count from the first\n"
                          "sample, as with the button Zero"},
                         {"--follow", &ReplayOptions::follow,
                          "print samples and pages as soon as they change, for a pipe that\n"
                          "stays open; pages are separated by an empty line"}};

// Reads "WxH"; only digits on both sides.
std::string TakeSize(const std::string& text, ReplayOptions& options)
{
    const size_t cross = text.find('x');
    const std::string_view view = text;
    const auto width = WholeNumberBetween(view.substr(0, cross), 1, LargestChart);
    const auto height = cross == std::string::npos
                            ? std::nullopt
                            : WholeNumberBetween(view.substr(cross + 1), 1, LargestChart);
    if (!width || !height) return "'" + text + "' is no size like 240x268, with 1 to 16384 pixels each";
    options.chartWidth = *width;
    options.chartHeight = *height;
    return {};
}

} // namespace

void EndWithError(const std::string& message)
{
    std::exit(FailTool(ReplayName, message));
}

std::optional<int> ParseOptions(int argumentCount, const char* const* arguments, ReplayOptions& options)
{
    CLI::App app(Description, ReplayName);
    app.get_formatter()->column_width(22);
    app.footer(Footer);
    app.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    app.set_version_flag("--version", std::string(ReplayName) + " " TORAVANE_VERSION);
    app.add_option("FILE", options.files, "logs; \"-\" is standard input")->required()->type_name("");
    const auto addFlag = [&](const Flag& flag, const char* group) {
        app.add_flag(flag.name, options.*flag.member, flag.description)->group(group);
    };
    for (const Flag& flag : Outputs) addFlag(flag, "Output");
    app.add_option("--chart", options.chart,
                   "write the strip chart as the window would show it, as a PNG picture")
        ->type_name("FILE")
        ->check(NotEmpty)
        ->group("Output");
    app.add_option("--size", "the chart's size in pixels, 1 to 16384 each; 240x268 if not given")
        ->type_name("WxH")
        ->check([&](const std::string& text) { return TakeSize(text, options); })
        ->group("How");
    for (const Flag& flag : Ways) addFlag(flag, "How");
    if (const auto exitCode = ParseCommandLine(app, argumentCount, arguments)) return exitCode;

    bool anyOutput = !options.chart.empty();
    for (const Flag& flag : Outputs) anyOutput |= options.*flag.member;
    if (!anyOutput) options.page = true;
    return std::nullopt;
}
