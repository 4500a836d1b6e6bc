// The command line: what is taken, and the one-line error for what is not.

#include "receiver/options.h"

#include <gtest/gtest.h>

using namespace receiver;

TEST(Options, DefaultsAreANmeaReceiverAt4800)
{
    Options options;
    std::string error;
    ASSERT_TRUE(ParseOptions({}, options, error));
    EXPECT_EQ(options.config.protocol, Protocol::Nmea);
    EXPECT_EQ(options.config.lineRate, 4800u);
    EXPECT_EQ(options.config.track.kind, TrackKind::Circle);
    EXPECT_EQ(options.config.start.ms, 898077614000);
    EXPECT_EQ(options.speed, 1);
}

TEST(Options, EachOneIsTakenInBothForms)
{
    Options options;
    std::string error;
    ASSERT_TRUE(ParseOptions({"--protocol=sirf",
                              "--rate",
                              "57600",
                              "--track",
                              "walk",
                              "--position=-33.5,151.25",
                              "--date",
                              "2017-01-01T00:00:00",
                              "--start",
                              "hot",
                              "--seed=99",
                              "--firmware",
                              "X 1",
                              "--refuse",
                              "170,?139,PSRF106",
                              "--refuse=53",
                              "--pivot-week",
                              "1290",
                              "--fault",
                              "lose=0.5",
                              "--play",
                              "a",
                              "--repeat",
                              "--script",
                              "b",
                              "--record",
                              "c",
                              "--link",
                              "d",
                              "--speed",
                              "60",
                              "--duration",
                              "3600",
                              "--wrap",
                              "-v"},
                             options, error))
        << error;
    EXPECT_EQ(options.config.protocol, Protocol::SirfBinary);
    EXPECT_EQ(options.config.lineRate, 57600u);
    EXPECT_EQ(options.config.track.kind, TrackKind::Walk);
    EXPECT_EQ(options.config.track.origin.latitudeDeg, -33.5);
    EXPECT_EQ(options.config.track.origin.longitudeDeg, 151.25);
    EXPECT_EQ(options.config.start.ms, 1167264018000);
    EXPECT_EQ(options.config.firstStart, Restart::Hot);
    EXPECT_EQ(options.config.seed, 99u);
    EXPECT_EQ(options.config.version, "X 1");
    EXPECT_EQ(options.config.refused.mids, (std::set<int>{53, 170}));
    EXPECT_EQ(options.config.refused.polls, (std::set<int>{139}));
    EXPECT_EQ(options.config.pivotWeek, 1290);
    EXPECT_EQ(options.config.refused.psrf, (std::set<int>{106}));
    ASSERT_EQ(options.startFaults.size(), 1u);
    EXPECT_EQ(options.startFaults[0].number, 0.5);
    EXPECT_EQ(options.play + options.script + options.record + options.link, "abcd");
    EXPECT_EQ(options.speed, 60);
    EXPECT_EQ(options.durationS, 3600);
    EXPECT_TRUE(options.repeat && options.verbose && options.config.wrap);
}

TEST(Options, TheRunMayBeginNow)
{
    Options options;
    std::string error;
    ASSERT_TRUE(ParseOptions({"--date", "now", "--start", "warm"}, options, error));
    EXPECT_GT(options.config.start.ms, ParseDate("2024-01-01T00:00:00")->ms);
    EXPECT_EQ(options.config.firstStart, Restart::Warm);
}

TEST(Options, ErrorsAreOneLine)
{
    struct Row {
        std::vector<std::string> arguments;
        const char* error;
    };
    const Row rows[] = {
        {{"--frobnicate"}, "unknown option --frobnicate"},
        {{"file"}, "unexpected argument file"},
        {{"--rate"}, "--rate needs a value"},
        {{"--rate", "4801"}, "bad value for --rate: '4801'"},
        {{"--rate=-1"}, "bad value for --rate: '-1'"},
        {{"--protocol", "ubx"}, "bad value for --protocol: 'ubx'"},
        {{"--track", "moon"}, "bad value for --track: 'moon'"},
        {{"--track", "/nowhere/t.gpx"}, "/nowhere/t.gpx: cannot be read"},
        {{"--position", "47"}, "bad value for --position: '47'"},
        {{"--position", "91,0"}, "bad value for --position: '91,0'"},
        {{"--position", "1,2,3,4"}, "bad value for --position: '1,2,3,4'"},
        {{"--date", "yesterday"}, "bad value for --date: 'yesterday'"},
        {{"--start", "factory"}, "bad value for --start: 'factory'"},
        {{"--seed", "1x"}, "bad value for --seed: '1x'"},
        {{"--refuse", "0"}, "bad value for --refuse: '0'"},
        {{"--refuse", "?PSRF100"}, "bad value for --refuse: '?PSRF100'"},
        {{"--pivot-week", "1024.5"}, "bad value for --pivot-week: '1024.5'"},
        {{"--fault", "switch-lands-at=4801"}, "bad value for switch-lands-at: '4801'"},
        {{"--fault", "ignore-switches=-1"}, "bad value for ignore-switches: '-1'"},
        {{"--fault", "mute="}, "bad value for mute: ''"},
        {{"--fault", "alter=139:4"}, "bad value for alter: '139:4'"},
        {{"--fault", "alter=139:4:256"}, "bad value for alter: '139:4:256'"},
        {{"--fault", "alter=139:4:5:6"}, "bad value for alter: '139:4:5:6'"},
        {{"--refuse", ""}, "bad value for --refuse: ''"},
        {{"--fault", "lose"}, "bad value for --fault: 'lose'"},
        {{"--fault", "lose=2"}, "bad value for lose: '2'"},
        {{"--fault", "quit="}, "bad value for --fault: 'quit='"},
        {{"--speed", "0"}, "bad value for --speed: '0'"},
        {{"--repeat"}, "--repeat needs --play"},
    };
    for (const Row& row : rows) {
        Options options;
        std::string error;
        EXPECT_FALSE(ParseOptions(row.arguments, options, error)) << row.error;
        EXPECT_EQ(error, row.error);
    }
}

TEST(Options, HelpNamesEveryOption)
{
    const std::string help = HelpText;
    for (const char* option :
         {"--protocol",   "--rate",    "--link",     "--track",  "--position", "--date",
          "--start",      "--seed",    "--firmware", "--refuse", "--wrap",     "--fault",
          "--pivot-week", "--play",    "--script",   "--record", "--speed",    "--duration",
          "--repeat",     "--verbose", "--help",     "--version"}) {
        EXPECT_NE(help.find(std::string(" ") + option), std::string::npos) << option;
    }
    Options options;
    std::string error;
    EXPECT_TRUE(ParseOptions({"--help", "--nonsense"}, options, error));
    EXPECT_TRUE(options.help);
}
