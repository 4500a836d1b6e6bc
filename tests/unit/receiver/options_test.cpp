// SPDX-License-Identifier: MIT
// The command line: accepted options, and the one-line error for the others.

#include "receiver/options.h"

#include <gtest/gtest.h>

using namespace receiver;

namespace
{

struct Parsed {
    std::optional<int> exitCode;
    std::string out, error;
};

Parsed Parse(const std::vector<std::string>& arguments, Options& options)
{
    std::vector<const char*> pointers = {ProgramName};
    for (const std::string& argument : arguments) pointers.push_back(argument.c_str());
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    Parsed parsed;
    parsed.exitCode = ParseOptions(static_cast<int>(pointers.size()), pointers.data(), options);
    parsed.out = testing::internal::GetCapturedStdout();
    parsed.error = testing::internal::GetCapturedStderr();
    return parsed;
}

} // namespace

TEST(Options, DefaultsAreANmeaReceiverAt4800)
{
    Options options;
    ASSERT_FALSE(Parse({}, options).exitCode);
    EXPECT_EQ(options.config.protocol, Protocol::Nmea);
    EXPECT_EQ(options.config.lineRate, 4800u);
    EXPECT_EQ(options.config.track.kind, TrackKind::Circle);
    EXPECT_EQ(options.config.start.ms, 898077614000);
    EXPECT_EQ(options.speed, 1);
}

TEST(Options, EachOneIsTakenInBothForms)
{
    Options options;
    const Parsed parsed = Parse({"--protocol=sirf",
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
                                options);
    ASSERT_FALSE(parsed.exitCode) << parsed.error;
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
    ASSERT_FALSE(Parse({"--date", "now", "--start", "warm"}, options).exitCode);
    EXPECT_GT(options.config.start.ms, ParseDate("2024-01-01T00:00:00")->ms);
    EXPECT_EQ(options.config.firstStart, Restart::Warm);
}

TEST(Options, APositionMayBeginWithAMinus)
{
    Options options;
    ASSERT_FALSE(Parse({"--position", "-33.5,-70.25,-12.5"}, options).exitCode);
    EXPECT_EQ(options.config.track.origin.latitudeDeg, -33.5);
    EXPECT_EQ(options.config.track.origin.longitudeDeg, -70.25);
    EXPECT_EQ(options.config.track.origin.heightM, -12.5);
}

TEST(Options, TheLastOneCountsWhereOneIsEnough)
{
    Options options;
    ASSERT_FALSE(Parse({"--rate", "9600", "--rate=38400"}, options).exitCode);
    EXPECT_EQ(options.config.lineRate, 38400u);
}

TEST(Options, ErrorsAreOneLineWithTheReasonAndTheChoices)
{
    struct Row {
        std::vector<std::string> arguments;
        const char* error;
    };
    const Row rows[] = {
        {{"--frobnicate"}, "The following argument was not expected: --frobnicate"},
        {{"file"}, "The following argument was not expected: file"},
        {{"--rate"}, "--rate: 1 required RATE missing"},
        {{"--rate", "4801"}, "--rate: '4801' is none of 1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200"},
        {{"--rate=-1"}, "--rate: '-1' is none of 1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200"},
        {{"--protocol", "ubx"}, "--protocol: 'ubx' is none of nmea, sirf"},
        {{"--track", "moon"}, "--track: 'moon' is none of still, circle, walk, eight, FILE.gpx"},
        {{"--track", "/nowhere/t.gpx"}, "--track: /nowhere/t.gpx: No such file or directory"},
        {{"--position", "47"},
         "--position: '47' is not LATITUDE,LONGITUDE[,HEIGHT] within 89.9 and 180 degrees and 20000 m"},
        {{"--position", "91,0"},
         "--position: '91,0' is not LATITUDE,LONGITUDE[,HEIGHT] within 89.9 and 180 degrees and 20000 m"},
        {{"--position", "1,2,3,4"},
         "--position: '1,2,3,4' is not LATITUDE,LONGITUDE[,HEIGHT] within 89.9 and 180 degrees and 20000 m"},
        {{"--date", "yesterday"},
         "--date: 'yesterday' is neither now nor a time like 2008-06-21T10:00:00 from 1980-01-06 on"},
        {{"--start", "factory"}, "--start: 'factory' is none of cold, warm, hot"},
        {{"--seed", "1x"}, "Could not convert: --seed = 1x"},
        {{"--firmware", ""}, "--firmware: has not 1 to 60 characters"},
        {{"--refuse", "0"}, "--refuse: '0' is no list like 170,?139,PSRF106"},
        {{"--refuse", "?PSRF100"}, "--refuse: '?PSRF100' is no list like 170,?139,PSRF106"},
        {{"--refuse", ""}, "--refuse: '' is no list like 170,?139,PSRF106"},
        {{"--refuse", "170", "--refuse", "x"}, "--refuse: 'x' is no list like 170,?139,PSRF106"},
        {{"--pivot-week", "1024.5"}, "--pivot-week: '1024.5' is no whole number from 0 to 9999"},
        {{"--fault", "switch-lands-at=4801"},
         "--fault: switch-lands-at takes 0, 1200, 2400, 4800, 9600, 19200, 38400, 57600 or 115200, not "
         "'4801'"},
        {{"--fault", "ignore-switches=-1"},
         "--fault: ignore-switches takes a whole number from 0 to 1000000, not '-1'"},
        {{"--fault", "mute="}, "--fault: mute takes a list like 170,?139,PSRF106, not ''"},
        {{"--fault", "alter=139:4"}, "--fault: alter takes MID:OFFSET:VALUE, 0 to 255 each, not '139:4'"},
        {{"--fault", "alter=139:4:256"},
         "--fault: alter takes MID:OFFSET:VALUE, 0 to 255 each, not '139:4:256'"},
        {{"--fault", "alter=139:4:5:6"},
         "--fault: alter takes MID:OFFSET:VALUE, 0 to 255 each, not '139:4:5:6'"},
        {{"--fault", "lose"},
         "--fault: 'lose' is not NAME=VALUE; NAME is one of lose, flip, checksum, freeze-after-switch, "
         "switch-lands-at, ignore-switches, mute, alter"},
        {{"--fault", "lose=2"}, "--fault: lose takes a number from 0 to 1, not '2'"},
        {{"--fault", "quit="},
         "--fault: 'quit' is none of lose, flip, checksum, freeze-after-switch, switch-lands-at, "
         "ignore-switches, "
         "mute, alter"},
        {{"--speed", "0"}, "--speed: '0' is no number from 0.01 to 10000"},
        {{"--duration", "-1"}, "--duration: '-1' is no number from 0 to 1000000000"},
        {{"--record", ""}, "--record: is empty"},
        {{"--repeat"}, "--repeat requires --play"},
    };
    for (const Row& row : rows) {
        Options options;
        const Parsed parsed = Parse(row.arguments, options);
        EXPECT_EQ(parsed.exitCode, 2) << row.error;
        EXPECT_EQ(parsed.error, std::string("toravane-receiver: ") + row.error + " (--help explains)\n");
        EXPECT_EQ(parsed.out, "");
    }
}

TEST(Options, HelpNamesEveryOption)
{
    Options options;
    const Parsed parsed = Parse({"-h"}, options);
    EXPECT_EQ(parsed.exitCode, 0);
    for (const char* option :
         {"--protocol",   "--rate",    "--link",     "--track",  "--position", "--date",
          "--start",      "--seed",    "--firmware", "--refuse", "--wrap",     "--fault",
          "--pivot-week", "--play",    "--script",   "--record", "--speed",    "--duration",
          "--repeat",     "--verbose", "--help",     "--version"}) {
        EXPECT_NE(parsed.out.find(option), std::string::npos) << option;
    }
    EXPECT_EQ(Parse({"--help"}, options).out, parsed.out);
}
