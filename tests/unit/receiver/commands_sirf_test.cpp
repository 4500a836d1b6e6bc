// SPDX-License-Identifier: MIT
// Every SiRF binary command, as whole frames with checksums calculated by hand.

#include "bench.h"

#include <gtest/gtest.h>

using namespace receiver;

namespace
{

struct SetRow {
    const char* name;
    uint8_t mid;
    const char *set, *acknowledged, *poll, *report;
};

constexpr SetRow SetRows[] = {
    {"advanced power", 53, "A0 A2 00 0C 35 01 05 1E 00 02 03 3C 01 04 02 00 00 A1 B0 B3",
     "A0 A2 00 02 0B 35 00 40 B0 B3", "A0 A2 00 02 A8 35 00 DD B0 B3",
     "A0 A2 00 0D 2B 35 01 05 1E 00 02 03 3C 01 04 02 00 00 CC B0 B3"},
    {"DGPS source", 133, "A0 A2 00 07 85 03 00 04 93 E0 64 02 63 B0 B3", "A0 A2 00 02 0B 85 00 90 B0 B3",
     "A0 A2 00 02 A8 85 01 2D B0 B3", "A0 A2 00 08 2B 85 03 00 04 93 E0 64 02 8E B0 B3"},
    {"mode control", 136, "A0 A2 00 0E 88 00 00 02 00 00 01 F4 02 01 00 3C 1E 01 01 DD B0 B3",
     "A0 A2 00 02 0B 88 00 93 B0 B3", "A0 A2 00 02 A8 88 01 30 B0 B3",
     "A0 A2 00 0F 2B 88 00 00 02 00 00 01 F4 02 01 00 3C 1E 01 02 08 B0 B3"},
    {"DOP mask", 137, "A0 A2 00 05 89 02 0A 0B 0C 00 AC B0 B3", "A0 A2 00 02 0B 89 00 94 B0 B3",
     "A0 A2 00 02 A8 89 01 31 B0 B3", "A0 A2 00 06 2B 89 02 0A 0B 0C 00 D7 B0 B3"},
    {"DGPS mode", 138, "A0 A2 00 03 8A 01 3C 00 C7 B0 B3", "A0 A2 00 02 0B 8A 00 95 B0 B3",
     "A0 A2 00 02 A8 8A 01 32 B0 B3", "A0 A2 00 04 2B 8A 01 3C 00 F2 B0 B3"},
    {"elevation mask", 139, "A0 A2 00 05 8B 00 64 00 96 01 85 B0 B3", "A0 A2 00 02 0B 8B 00 96 B0 B3",
     "A0 A2 00 02 A8 8B 01 33 B0 B3", "A0 A2 00 06 2B 8B 00 64 00 96 01 B0 B0 B3"},
    {"power mask", 140, "A0 A2 00 03 8C 1E 20 00 CA B0 B3", "A0 A2 00 02 0B 8C 00 97 B0 B3",
     "A0 A2 00 02 A8 8C 01 34 B0 B3", "A0 A2 00 04 2B 8C 1E 20 00 F5 B0 B3"},
    {"static navigation", 143, "A0 A2 00 02 8F 01 00 90 B0 B3", "A0 A2 00 02 0B 8F 00 9A B0 B3",
     "A0 A2 00 02 A8 8F 01 37 B0 B3", "A0 A2 00 03 2B 8F 01 00 BB B0 B3"},
    {"trickle power", 151, "A0 A2 00 09 97 00 00 00 C8 00 00 01 2C 01 8C B0 B3",
     "A0 A2 00 02 0B 97 00 A2 B0 B3", "A0 A2 00 02 A8 97 01 3F B0 B3",
     "A0 A2 00 0A 2B 97 00 00 00 C8 00 00 01 2C 01 B7 B0 B3"},
    {"low power", 167, "A0 A2 00 0F A7 00 00 EA 60 00 00 75 30 00 00 0E 10 00 01 02 B5 B0 B3",
     "A0 A2 00 02 0B A7 00 B2 B0 B3", "A0 A2 00 02 A8 A7 01 4F B0 B3",
     "A0 A2 00 10 2B A7 00 00 EA 60 00 00 75 30 00 00 0E 10 00 01 02 E0 B0 B3"},
    {"SBAS", 170, "A0 A2 00 06 AA 7E 01 09 00 00 01 32 B0 B3", "A0 A2 00 02 0B AA 00 B5 B0 B3",
     "A0 A2 00 02 A8 AA 01 52 B0 B3", "A0 A2 00 07 2B AA 7E 01 09 00 00 01 5D B0 B3"},
};

struct BadRow {
    const char *name, *command, *refused;
};

constexpr BadRow BadRows[] = {
    {"advanced power: 9 s between fixes", "A0 A2 00 0C 35 01 05 09 00 02 03 3C 01 04 02 00 00 8C B0 B3",
     "A0 A2 00 02 0C 35 00 41 B0 B3"},
    {"DGPS source 5", "A0 A2 00 07 85 05 00 00 00 00 00 00 8A B0 B3", "A0 A2 00 02 0C 85 00 91 B0 B3"},
    {"beacon frequency 283499", "A0 A2 00 07 85 03 00 04 53 6B 00 01 4A B0 B3",
     "A0 A2 00 02 0C 85 00 91 B0 B3"},
    {"beacon bit rate 75", "A0 A2 00 07 85 03 00 04 93 E0 4B 02 4A B0 B3", "A0 A2 00 02 0C 85 00 91 B0 B3"},
    {"altitude 10001", "A0 A2 00 0E 88 00 00 00 00 00 27 11 00 00 00 00 00 00 00 C0 B0 B3",
     "A0 A2 00 02 0C 88 00 94 B0 B3"},
    {"time-out 121", "A0 A2 00 0E 88 00 00 00 00 00 00 00 00 00 00 79 00 00 01 01 B0 B3",
     "A0 A2 00 02 0C 88 00 94 B0 B3"},
    {"GDOP 0", "A0 A2 00 05 89 00 00 08 08 00 99 B0 B3", "A0 A2 00 02 0C 89 00 95 B0 B3"},
    {"HDOP 51", "A0 A2 00 05 89 00 08 08 33 00 CC B0 B3", "A0 A2 00 02 0C 89 00 95 B0 B3"},
    {"DGPS mode 3", "A0 A2 00 03 8A 03 1E 00 AB B0 B3", "A0 A2 00 02 0C 8A 00 96 B0 B3"},
    {"elevation 900.1", "A0 A2 00 05 8B 23 29 00 00 00 D7 B0 B3", "A0 A2 00 02 0C 8B 00 97 B0 B3"},
    {"power mask 51", "A0 A2 00 03 8C 33 1C 00 DB B0 B3", "A0 A2 00 02 0C 8C 00 98 B0 B3"},
    {"static navigation 2", "A0 A2 00 02 8F 02 00 91 B0 B3", "A0 A2 00 02 0C 8F 00 9B B0 B3"},
    {"on-time 199", "A0 A2 00 09 97 00 00 00 C8 00 00 00 C7 02 26 B0 B3", "A0 A2 00 02 0C 97 00 A3 B0 B3"},
    {"duty 1001", "A0 A2 00 09 97 00 00 03 E9 00 00 00 C8 02 4B B0 B3", "A0 A2 00 02 0C 97 00 A3 B0 B3"},
    {"off time 3600001", "A0 A2 00 0F A7 00 36 EE 81 00 00 00 00 00 00 00 00 00 00 02 4C B0 B3",
     "A0 A2 00 02 0C A7 00 B3 B0 B3"},
    {"SBAS PRN 139", "A0 A2 00 06 AA 8B 01 09 00 00 01 3F B0 B3", "A0 A2 00 02 0C AA 00 B6 B0 B3"},
    {"one byte too few", "A0 A2 00 01 8F 00 8F B0 B3", "A0 A2 00 02 0C 8F 00 9B B0 B3"},
    {"one byte too many", "A0 A2 00 03 8F 01 00 00 90 B0 B3", "A0 A2 00 02 0C 8F 00 9B B0 B3"},
    {"rate 31", "A0 A2 00 08 A6 00 29 1F 00 00 00 00 00 EE B0 B3", "A0 A2 00 02 0C A6 00 B2 B0 B3"},
    {"message 0", "A0 A2 00 08 A6 00 00 01 00 00 00 00 00 A7 B0 B3", "A0 A2 00 02 0C A6 00 B2 B0 B3"},
    {"mode 3", "A0 A2 00 08 A6 03 29 01 00 00 00 00 00 D3 B0 B3", "A0 A2 00 02 0C A6 00 B2 B0 B3"},
    {"poll of an unknown command", "A0 A2 00 02 A8 01 00 A9 B0 B3", "A0 A2 00 02 0C A8 00 B4 B0 B3"},
    {"13 channels",
     "A0 A2 00 19 80 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 0D 40 00 CD B0 B3",
     "A0 A2 00 02 0C 80 00 8C B0 B3"},
    {"switch to 1201 baud",
     "A0 A2 00 18 81 02 01 01 01 01 05 01 05 01 01 01 01 01 00 01 00 01 00 01 00 01 04 B1 01 50 B0 B3",
     "A0 A2 00 02 0C 81 00 8D B0 B3"},
    {"unknown command", "A0 A2 00 02 01 02 00 03 B0 B3", "A0 A2 00 02 0C 01 00 0D B0 B3"},
};

} // namespace

TEST(SirfCommands, EachSettingIsAcknowledgedKeptAndReported)
{
    for (const SetRow& row : SetRows) {
        SCOPED_TRACE(row.name);
        Bench bench(Protocol::SirfBinary);
        bench.SayHex(row.set);
        EXPECT_EQ(bench.Hex(), row.acknowledged);
        bench.SayHex(row.poll);
        EXPECT_EQ(bench.Hex(), row.report);
        EXPECT_EQ(bench.sim.CommandsAccepted, 2u);
    }
}

TEST(SirfCommands, SettingsSurviveEveryRestartButTheFactoryReset)
{
    for (const SetRow& row : SetRows) {
        SCOPED_TRACE(row.name);
        Bench bench(Protocol::SirfBinary);
        bench.SayHex(row.set);
        bench.sim.RestartAs(Restart::Cold, false);
        bench.sim.Advance(1.8);
        bench.Bursts();
        bench.SayHex(row.poll);
        EXPECT_EQ(bench.Hex(), row.report);
        bench.sim.RestartAs(Restart::Cold, true);
        bench.sim.Advance(2.8);
        bench.Bursts();
        bench.SayHex(row.poll);
        EXPECT_NE(bench.Hex(), row.report);
    }
}

TEST(SirfCommands, WhatIsOutOfRangeIsRefusedAndChangesNothing)
{
    for (const BadRow& row : BadRows) {
        SCOPED_TRACE(row.name);
        Bench bench(Protocol::SirfBinary);
        const Settings before = bench.sim.Kept;
        bench.SayHex(row.command);
        EXPECT_EQ(bench.Hex(), row.refused);
        EXPECT_EQ(bench.sim.Kept.commands, before.commands);
        EXPECT_EQ(bench.sim.Kept.sirfSeconds, before.sirfSeconds);
        EXPECT_EQ(bench.sim.Kept.protocol, before.protocol);
        EXPECT_EQ(bench.sim.CommandsRefused, 1u);
    }
}

TEST(SirfCommands, FirmwareWithoutACommandRefusesItAndItsPoll)
{
    Config config = Bench::ConfigFor(Protocol::SirfBinary, 38400);
    config.refused.mids.insert(170);
    Bench bench(config);
    bench.SayHex("A0 A2 00 06 AA 7E 01 09 00 00 01 32 B0 B3");
    EXPECT_EQ(bench.Hex(), "A0 A2 00 02 0C AA 00 B6 B0 B3");
    bench.SayHex("A0 A2 00 02 A8 AA 01 52 B0 B3");
    EXPECT_EQ(bench.Hex(), "A0 A2 00 02 0C A8 00 B4 B0 B3");
    bench.SayHex("A0 A2 00 02 8F 01 00 90 B0 B3"); // others still work
    EXPECT_EQ(bench.Hex(), "A0 A2 00 02 0B 8F 00 9A B0 B3");
}

TEST(SirfCommands, BrokenFramesAreNotThere)
{
    static constexpr const char* frames[] = {
        "A0 A2 00 02 8F 01 00 91 B0 B3", // checksum
        "A0 A2 00 02 8F 01 00 90 B0 B2", // end
        "A0 A3 00 02 8F 01 00 90 B0 B3", // start
        "A0 A2 00 00 00 00 B0 B3",       // no payload
        "A0 A2 04 00 8F 01 00 90 B0 B3", // 1024 bytes
    };
    for (const char* frame : frames) {
        SCOPED_TRACE(frame);
        Bench bench(Protocol::SirfBinary);
        bench.SayHex(frame);
        EXPECT_EQ(bench.Hex(), "");
        EXPECT_EQ(bench.sim.CommandsAccepted + bench.sim.CommandsRefused, 0u);
        bench.SayHex("A0 A2 00 02 8F 01 00 90 B0 B3"); // the next one is heard
        EXPECT_EQ(bench.Hex(), "A0 A2 00 02 0B 8F 00 9A B0 B3");
    }
}

TEST(SirfCommands, SentencesAreNotHeard)
{
    Bench bench(Protocol::SirfBinary);
    bench.Say("$PSRF100,1,9600,8,1,0*0D\r\n");
    EXPECT_EQ(bench.sim.Kept.protocol, Protocol::SirfBinary);
    EXPECT_EQ(bench.sim.CommandsRefused, 0u);
}

TEST(SirfCommands, VersionPollIsAnsweredWith80CharactersOfText)
{
    Config config = Bench::ConfigFor(Protocol::SirfBinary, 38400);
    config.version = "AB";
    Bench bench(config);
    bench.SayHex("A0 A2 00 02 84 00 00 84 B0 B3");
    const std::string answer = bench.Hex();
    EXPECT_EQ(answer.substr(0, 20), "A0 A2 00 51 06 41 42");
    // 06 + 41 + 42 = 89; the rest of the 80 characters is 0.
    EXPECT_EQ(answer.substr(answer.size() - 17), "00 00 00 89 B0 B3");
}

TEST(SirfCommands, CommandsInsideTheWrapperMessageAreUnwrapped)
{
    Config config = Bench::ConfigFor(Protocol::SirfBinary, 38400);
    config.wrap = true;
    Bench bench(config);
    bench.SayHex("A0 A2 00 03 EE 8F 01 01 7E B0 B3");
    EXPECT_EQ(bench.Hex(), "A0 A2 00 03 EE 0B 8F 01 88 B0 B3"); // and so are the answers
}

TEST(SirfCommands, SwitchToNmeaTakesRatesChecksumsAndLineRate)
{
    Bench bench(Protocol::SirfBinary);
    bench.SayHex(
        "A0 A2 00 18 81 01 01 01 01 01 05 01 05 01 01 01 01 01 00 01 00 01 00 01 00 01 12 C0 01 6C B0 B3");
    const auto answer = bench.Bursts();
    ASSERT_EQ(answer.size(), 1u);
    EXPECT_EQ(ToHex(answer[0].bytes), "A0 A2 00 02 0B 81 00 8C B0 B3");
    EXPECT_EQ(answer[0].rate, 38400u); // said before the switch
    EXPECT_EQ(bench.sim.Kept.protocol, Protocol::Nmea);
    EXPECT_EQ(bench.sim.Kept.lineRate, 4800u);
    static constexpr uint8_t seconds[] = {1, 1, 5, 5, 1, 1, 0, 0, 0, 0};
    for (size_t i = 0; i < NmeaMessageCount; ++i) {
        EXPECT_EQ(bench.sim.Kept.nmea[i].seconds, seconds[i]) << i;
        EXPECT_TRUE(bench.sim.Kept.nmea[i].checksum) << i;
    }
    bench.sim.Advance(1.0);
    const auto sentences = bench.Bursts();
    ASSERT_FALSE(sentences.empty());
    EXPECT_EQ(sentences[0].bytes[0], '$');
    EXPECT_EQ(sentences[0].rate, 4800u);
}

TEST(SirfCommands, SwitchToNmeaAt115200HasTheLowHalfOfTheRate)
{
    Bench bench(Protocol::SirfBinary);
    bench.SayHex(
        "A0 A2 00 18 81 00 02 00 00 00 01 00 00 00 00 00 00 00 00 00 00 00 05 00 00 00 C2 00 01 4B B0 B3");
    EXPECT_EQ(bench.sim.Kept.lineRate, 115200u);
    EXPECT_TRUE(bench.sim.Kept.nmeaDebug); // mode 0
    EXPECT_EQ(bench.sim.Kept.nmea[Gga].seconds, 2);
    EXPECT_FALSE(bench.sim.Kept.nmea[Gga].checksum);
    EXPECT_EQ(bench.sim.Kept.nmea[Zda].seconds, 5);
}

TEST(SirfCommands, MessageRateStopsAndStartsAMessage)
{
    Bench bench(Protocol::SirfBinary);
    bench.SayHex("A0 A2 00 08 A6 00 29 00 00 00 00 00 00 CF B0 B3");
    EXPECT_EQ(bench.Hex(), "A0 A2 00 02 0B A6 00 B1 B0 B3");
    bench.sim.Advance(3.5);
    EXPECT_TRUE(bench.Payloads(41).empty());
    bench.SayHex("A0 A2 00 08 A6 00 29 02 00 00 00 00 00 D1 B0 B3"); // every 2 s
    bench.Bursts();
    bench.sim.Advance(11.5); // seconds 4 to 11
    EXPECT_EQ(bench.Payloads(41).size(), 4u);
}

TEST(SirfCommands, MessageRateModeOneAsksOnce)
{
    Bench bench(Protocol::SirfBinary);
    bench.SayHex("A0 A2 00 08 A6 01 09 00 00 00 00 00 00 B0 B0 B3");
    const auto bursts = bench.Bursts();
    ASSERT_EQ(bursts.size(), 2u);
    EXPECT_EQ(ToHex(bursts[0].bytes), "A0 A2 00 02 0B A6 00 B1 B0 B3");
    EXPECT_EQ(bursts[1].bytes[4], 9);
    EXPECT_EQ(bench.sim.Kept.sirfSeconds[9], 1); // its rate stays
}

TEST(SirfCommands, MessageRateModeTwoSetsAll)
{
    Bench bench(Protocol::SirfBinary, 115200);
    bench.SayHex("A0 A2 00 08 A6 02 00 00 00 00 00 00 00 A8 B0 B3");
    EXPECT_EQ(bench.Hex(), "A0 A2 00 02 0B A6 00 B1 B0 B3");
    bench.sim.Advance(60);
    EXPECT_EQ(bench.Hex(), "");
}

TEST(SirfCommands, NavigationParametersReportTheSettingsAtTheirPlaces)
{
    Bench bench(Protocol::SirfBinary);
    for (const SetRow& row : SetRows) bench.SayHex(row.set);
    bench.Bursts();
    bench.SayHex("A0 A2 00 02 98 00 00 98 B0 B3");
    const auto answers = bench.Payloads(19);
    ASSERT_EQ(answers.size(), 1u);
    const Bytes& p = answers[0];
    ASSERT_EQ(p.size(), 65u);
    EXPECT_EQ(ToHex(std::span(p).first(14)), "13 01 00 00 00 02 01 01 F4 02 3C 1E 01 01");
    EXPECT_EQ(ToHex(std::span(p).subspan(19, 4)), "02 00 96 20");    // DOP mask, elevation 15.0, power 32
    EXPECT_EQ(ToHex(std::span(p).subspan(27, 3)), "03 01 3C");       // beacon, exclusive, 60 s
    EXPECT_EQ(ToHex(std::span(p).subspan(34, 5)), "00 00 00 01 2C"); // no push-to-fix, 300 ms on
    EXPECT_EQ(ToHex(std::span(p).subspan(39, 4)), "00 00 05 DC");    // every 1500 ms
    EXPECT_EQ(ToHex(std::span(p).subspan(49, 4)), "00 00 75 30");    // search 30000 ms
    EXPECT_EQ(ToHex(std::span(p).subspan(53, 4)), "00 00 EA 60");    // off 60000 ms
    EXPECT_EQ(ToHex(std::span(p).subspan(57, 8)), "84 00 05 00 1E 23 3C 06"); // advanced power
}

TEST(SirfCommands, ColdStartForgetsTimeAndTurnsNavigationMessagesOn)
{
    Bench bench(Protocol::SirfBinary);
    bench.sim.Advance(60);
    ASSERT_TRUE(bench.sim.Navigation.Current().Valid());
    bench.Bursts();
    bench.SayHex(
        "A0 A2 00 19 80 00 00 00 00 00 00 00 00 00 00 00 00 00 01 77 00 00 00 00 00 00 00 0C 14 01 18 B0 B3");
    EXPECT_EQ(bench.Hex(), "A0 A2 00 02 0B 80 00 8B B0 B3");
    EXPECT_FALSE(bench.sim.Navigation.Current().Valid());
    EXPECT_FALSE(bench.sim.Navigation.Current().timeKnown);
    bench.sim.Advance(68);
    EXPECT_FALSE(bench.Payloads(28).empty()); // bit "NavLib"
}

TEST(SirfCommands, WarmStartValuesAreReportedUntilTheReceiverKnowsBetter)
{
    Bench bench(Protocol::SirfBinary);
    bench.SayHex(
        "A0 A2 00 19 80 00 41 2C 5F 00 09 CC 47 00 47 3B E3 00 01 76 98 03 9A DA 00 05 CB 0A 03 07 30 B0 B3");
    bench.sim.Advance(1.8);
    bench.Bursts();
    bench.SayHex("A0 A2 00 02 A8 80 01 28 B0 B3");
    EXPECT_EQ(bench.Hex(),
              "A0 A2 00 1A 2B 80 00 41 2C 5F 00 09 CC 47 00 47 3B E3 00 01 76 98 03 9A DA 00 05 CB "
              "0A 03 07 5B B0 B3");
}

TEST(SirfCommands, FactoryResetComesBackWithProtocolRateAndSettingsOfTheFactory)
{
    Bench bench(Protocol::Nmea, 4800);
    bench.Say("$PSRF100,0,38400,8,1,0*3C\r\n");
    ASSERT_EQ(bench.sim.Kept.protocol, Protocol::SirfBinary);
    bench.SayHex("A0 A2 00 02 8F 01 00 90 B0 B3");
    bench.SayHex(
        "A0 A2 00 19 80 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 0C 08 00 94 B0 B3");
    EXPECT_EQ(bench.sim.Kept.protocol, Protocol::Nmea);
    EXPECT_EQ(bench.sim.Kept.lineRate, 4800u);
    EXPECT_FALSE(StaticNavigationOf(bench.sim.Kept));
}
