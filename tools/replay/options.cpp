#include "options.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace
{

constexpr char Help[] =
    R"(Usage: toravane-replay [OPTION]... FILE...

Feeds recorded receiver logs, NMEA text or SiRF binary, byte by byte through the reception of Toravane: the same
code as in the program, without window, port or waiting. Several files are one stream; "-" reads standard input.

Without an option it prints the text page: 19 lines as the program's window shows them, trailing blanks included,
in UTF-8. Each option can be used alone or with others; the outputs then follow each other in this order:

  --samples    for each sample that the strip chart records, as it is recorded, one JSON object on a line:
               {"time":[year,month,day,hour,minute,second],"values":[SVsInFix,HDOP,EHPE,Northing,Easting,VDOP,
               EVPE,Altitude,Speed,Course]}, numbers with 17 significant digits
  --page       the text page
  --stats      four lines: messages of each protocol, the rate that the receiver announced, bytes, and the
               protocol recognised (NMEA, SiRF, or - for none or both)
  --messages   the receiver's own text, as the command dialogs show it
  --sky        as if the SBAS dialog had been open, after the last fix: 13 lines "ID ELEVATION AZIMUTH", degrees
               with 9 decimals (100 is the Sun, 101 the Moon, both with half a degree added, the others SBAS
               satellites), then the dialog's three lines: satellites in view, azimuths, elevations. NMEA hands
               on eight bits of the year only, so its Sun and Moon are those of another year
  --commands   what the program would have sent to the receiver: one command on a line, sentences as text without
               their line end, binary frames as hexadecimal bytes
  --chart FILE writes the strip chart as the program's window would show it, as a PNG picture
  --size WxH   the chart's size in pixels, 1 to 16384 each; 240x268 if not given
  --help       this text
  --version    the program's version

Exit code: 0; 2 for a wrong option or a file that cannot be read or written, with one line on standard error.

Examples:
  toravane-replay walk.txt
  toravane-replay --stats --samples drive.srf
  toravane-replay --chart walk.png --size 240x268 walk.txt
  cat part1.txt part2.txt | toravane-replay --page -
)";

// "WxH"
void TakeSize(const char* text, ReplayOptions& options)
{
    constexpr int Largest = 16384;
    int end = 0;
    const int found = std::sscanf(text, "%5dx%5d%n", &options.chartWidth, &options.chartHeight, &end);
    const auto fits = [](int pixels) { return pixels >= 1 && pixels <= Largest; };
    if (found != 2 || text[end] || !fits(options.chartWidth) || !fits(options.chartHeight))
        EndWithError("no size like 240x268: " + std::string(text));
}

} // namespace

void EndWithError(const std::string& message)
{
    std::fprintf(stderr, "toravane-replay: %s\n", message.c_str());
    std::exit(2);
}

void ParseOptions(int argumentCount, char** arguments, ReplayOptions& options)
{
    struct Flag {
        std::string_view name;
        bool ReplayOptions::*member;
    };
    constexpr Flag Flags[] = {
        {"--page", &ReplayOptions::page},       {"--stats", &ReplayOptions::stats},
        {"--samples", &ReplayOptions::samples}, {"--messages", &ReplayOptions::messages},
        {"--sky", &ReplayOptions::sky},         {"--commands", &ReplayOptions::commands}};
    bool anyOutput = false, onlyFiles = false;
    for (int i = 1; i < argumentCount; ++i) {
        const std::string_view argument = arguments[i];
        if (onlyFiles || argument == "-" || argument.substr(0, 1) != "-") {
            options.files.emplace_back(argument);
            continue;
        }
        if (argument == "--") {
            onlyFiles = true;
            continue;
        }
        if (argument == "--help") {
            std::fputs(Help, stdout);
            std::exit(0);
        }
        if (argument == "--version") {
            std::puts("toravane-replay " TORAVANE_VERSION);
            std::exit(0);
        }
        if (argument == "--chart" || argument == "--size") {
            if (++i == argumentCount)
                EndWithError(std::string(argument) + " wants a value (--help explains)");
            if (argument == "--chart") {
                options.chart = arguments[i];
                anyOutput = true;
            } else {
                TakeSize(arguments[i], options);
            }
            continue;
        }
        bool known = false;
        for (const Flag& flag : Flags)
            if (argument == flag.name) known = anyOutput = options.*flag.member = true;
        if (!known) EndWithError("unknown option " + std::string(argument) + " (--help lists them)");
    }
    if (options.files.empty()) EndWithError("no file given (--help explains)");
    if (!anyOutput) options.page = true;
}
