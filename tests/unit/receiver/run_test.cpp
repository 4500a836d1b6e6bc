// SPDX-License-Identifier: MIT
// Whole runs without a terminal: power saving, faults, scripts, played logs, an hour of output.

#include "bench.h"
#include "receiver/nmea_output.h"
#include "receiver/session.h"
#include "receiver/sirf_output.h"
#include "temporary_path.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

using namespace receiver;

namespace
{

std::string Drive(Session& session, double from, double to, uint32_t hostRate = 0,
                  const std::string& say = "")
{
    std::string text;
    Bytes fromHost(say.begin(), say.end());
    for (double now = from; now < to; now += 0.02) {
        const Bytes read = session.Step(now, fromHost, hostRate);
        text.append(read.begin(), read.end());
        fromHost.clear();
    }
    return text;
}

// Counts sentences, and those whose checksum does not match. The stream must begin with a sentence.
struct Counts {
    size_t good = 0, bad = 0;
};

Counts CountSentences(const std::string& text)
{
    Counts counts;
    for (size_t at = 0; at < text.size();) {
        const size_t end = text.find("\r\n", at);
        if (end == std::string::npos) break;
        const std::string line = text.substr(at, end - at);
        const size_t star = line.rfind('*');
        const bool good = line.starts_with('$') && star != std::string::npos &&
                          std::strtoul(line.c_str() + star + 1, nullptr, 16) ==
                              NmeaChecksum(std::string_view(line).substr(1, star - 1));
        ++(good ? counts.good : counts.bad);
        at = end + 2;
    }
    return counts;
}

std::vector<Action> Script(std::initializer_list<std::pair<double, const char*>> lines)
{
    std::vector<Action> actions;
    for (const auto& [at, text] : lines) {
        std::string error;
        auto action = ParseAction(text, error);
        EXPECT_TRUE(action) << error;
        if (!action) continue;
        action->at = at;
        actions.push_back(*action);
    }
    return actions;
}

std::string File(const std::string& name, const std::string& content)
{
    const std::string path = TemporaryPath(name);
    std::ofstream(path, std::ios::binary) << content;
    return path;
}

} // namespace

TEST(Power, CyclesOfTheSettings)
{
    Settings settings = FactorySettings(Protocol::SirfBinary, 38400);
    EXPECT_TRUE(PowerCycleOf(settings).Continuous());
    settings.commands[151] = FromHex("97 00 00 00 32 00 00 00 C8"); // 5 %, 200 ms: each 4 s
    EXPECT_DOUBLE_EQ(PowerCycleOf(settings).onS, 0.2);
    EXPECT_DOUBLE_EQ(PowerCycleOf(settings).periodS, 4.0);
    settings.commands[151] = FromHex("97 00 00 03 84 00 00 00 C8"); // 90 %: at most a fix a second
    EXPECT_DOUBLE_EQ(PowerCycleOf(settings).periodS, 1.0);
    settings.commands[151] = FromHex("97 00 00 00 00 00 00 00 C8"); // 0 %: off
    EXPECT_TRUE(PowerCycleOf(settings).Continuous());
    settings.commands[151] = FromHex("97 00 01 03 E8 00 00 00 C8"); // push-to-fix
    EXPECT_DOUBLE_EQ(PowerCycleOf(settings).periodS, 1800.0);
    settings.commands[151] = FromHex("97 00 00 03 E8 00 00 00 C8");
    settings.commands[53] = FromHex("35 01 05 1E 00 02 03 3C 01 04 02 00"); // 5 fixes, 30 s between
    EXPECT_DOUBLE_EQ(PowerCycleOf(settings).onS, 5.0);
    EXPECT_DOUBLE_EQ(PowerCycleOf(settings).periodS, 35.0);
}

TEST(Power, TrickleSendsOneFixACycleWithPowerStates)
{
    Bench bench(Protocol::SirfBinary);
    bench.sim.Advance(60.5);
    bench.SayHex("A0 A2 00 09 97 00 00 00 32 00 00 00 C8 01 91 B0 B3"); // 200 ms each 4 s
    bench.Bursts();
    bench.sim.Advance(61.0);
    bench.Bursts(); // the first fix after the command, from which on it sleeps
    std::string states;
    double asleep = 0;
    size_t fixes = 0;
    for (double now = 61.05; now < 81.1; now += 0.05) {
        bench.sim.Advance(now);
        asleep += bench.sim.Awake() ? 0 : 0.05;
        for (const Burst& burst : bench.Bursts()) {
            if (burst.bytes[4] == 18) states += burst.bytes[5] == 1 ? '1' : '0';
            if (burst.bytes[4] == 41) ++fixes;
        }
    }
    EXPECT_EQ(states, "0101010101");
    EXPECT_EQ(fixes, 5u);
    EXPECT_NEAR(asleep, 19.0, 0.4);
}

TEST(Power, ASleepingReceiverHearsNothingAndWakesForCommandsInItsOnTime)
{
    Bench bench(Protocol::SirfBinary);
    bench.sim.Advance(60.5);
    bench.SayHex("A0 A2 00 09 97 00 00 00 32 00 00 00 C8 01 91 B0 B3");
    bench.sim.Advance(63.0);
    ASSERT_FALSE(bench.sim.Awake());
    bench.Bursts();
    const char* off = "A0 A2 00 09 97 00 00 03 E8 00 00 00 C8 02 4A B0 B3"; // 100 %
    bench.SayHex(off);
    EXPECT_EQ(bench.Hex(), "");
    bench.sim.Advance(65.1);
    ASSERT_TRUE(bench.sim.Awake());
    bench.Bursts();
    bench.SayHex(off);
    EXPECT_EQ(bench.Hex(), "A0 A2 00 02 0B 97 00 A2 B0 B3");
    bench.sim.Advance(70.5);
    EXPECT_TRUE(bench.sim.Awake());
    EXPECT_EQ(bench.Payloads(41).size(), 5u);
}

TEST(Power, AdvancedPowerSleepsBetweenGroupsOfFixes)
{
    Bench bench(Protocol::SirfBinary);
    bench.sim.Advance(60.5);
    bench.SayHex("A0 A2 00 0C 35 01 05 1E 00 02 03 3C 01 04 02 00 00 A1 B0 B3"); // 5 fixes, 30 s
    bench.Bursts();
    bench.sim.Advance(130.95); // two cycles of 35 s from second 61 on
    size_t fixes = 0;
    std::string states;
    for (const Burst& burst : bench.Bursts()) {
        if (burst.bytes[4] == 18) states += burst.bytes[5] == 1 ? '1' : '0';
        if (burst.bytes[4] == 41) ++fixes;
    }
    EXPECT_EQ(fixes, 10u);
    EXPECT_EQ(states, "010");
}

TEST(Power, NmeaReportsItAsASentence)
{
    Bench bench(Protocol::Nmea, 38400);
    bench.sim.Kept.commands[151] = FromHex("97 00 00 00 32 00 00 00 C8");
    bench.sim.Advance(60.5);
    const std::string text = bench.Text();
    EXPECT_NE(text.find("$PSRF150,0*3F\r\n"), std::string::npos);
    EXPECT_NE(text.find("$PSRF150,1*3E\r\n"), std::string::npos);
}

TEST(Receiver, ASlowLineDropsMessagesButNoAnswers)
{
    Bench bench(Protocol::SirfBinary, 1200);
    bench.sim.Advance(30);
    EXPECT_GT(bench.sim.MessagesDropped, 0u);
    size_t waiting = 0;
    for (const Burst& burst : bench.sim.Output) waiting += burst.bytes.size();
    EXPECT_LT(waiting, 600u);
    for (int i = 0; i < 50; ++i) bench.SayHex("A0 A2 00 02 84 00 00 84 B0 B3");
    EXPECT_EQ(bench.Payloads(6).size(), 50u);
}

TEST(Receiver, StandardMessageRates)
{
    Bench bench(Protocol::SirfBinary, 115200);
    std::map<int, int> counts;
    for (int second = 1; second <= 60; ++second) {
        bench.sim.Advance(second + 0.1);
        for (const Burst& burst : bench.Bursts()) ++counts[burst.bytes[4]];
    }
    const std::map<int, int> expected = {{2, 60}, {4, 60},  {7, 60},  {9, 60},
                                         {13, 2}, {27, 12}, {41, 60}, {50, 12}};
    EXPECT_EQ(counts, expected);
}

TEST(Session, AnHourOfNmeaHasNoBadSentence)
{
    Config config = Bench::ConfigFor(Protocol::Nmea, 9600);
    Session session(config, {}, std::nullopt);
    for (NmeaRate& rate : session.Sim.Kept.nmea) rate.seconds = 1;
    const Counts counts = CountSentences(Drive(session, 0, 3600, 9600));
    EXPECT_GT(counts.good, 30000u);
    EXPECT_EQ(counts.bad, 0u);
}

TEST(Session, AnHourOfSirfHasNoBadFrame)
{
    Config config = Bench::ConfigFor(Protocol::SirfBinary, 57600);
    Session session(config, {}, std::nullopt);
    for (const uint8_t mid : PeriodicMids()) session.Sim.Kept.sirfSeconds[mid] = 1;
    const std::string text = Drive(session, 0, 3600, 57600);
    size_t frames = 0, at = 0;
    while (at + 8 <= text.size()) {
        const auto byte = [&](size_t i) { return static_cast<uint8_t>(text[at + i]); };
        ASSERT_EQ(byte(0), 0xA0) << at;
        ASSERT_EQ(byte(1), 0xA2) << at;
        const size_t length = static_cast<size_t>(byte(2) << 8 | byte(3));
        if (at + length + 8 > text.size()) break;
        unsigned sum = 0;
        for (size_t i = 0; i < length; ++i) sum += byte(4 + i);
        ASSERT_EQ(static_cast<unsigned>(byte(4 + length) << 8 | byte(5 + length)), sum & 0x7FFF) << at;
        ASSERT_EQ(byte(6 + length), 0xB0) << at;
        ASSERT_EQ(byte(7 + length), 0xB3) << at;
        at += length + 8;
        ++frames;
    }
    EXPECT_GT(frames, 3600u * 20);
}

TEST(Session, EqualSeedsGiveEqualBytes)
{
    const auto run = [](uint64_t seed) {
        Config config = Bench::ConfigFor(Protocol::Nmea, 4800);
        config.seed = seed;
        Session session(config, Script({{0, "lose 0.01"}, {0, "flip 0.01"}, {5, "burst 50"}}), std::nullopt);
        return Drive(session, 0, 60);
    };
    EXPECT_EQ(run(3), run(3));
    EXPECT_NE(run(3), run(4));
}

TEST(Session, AHostAtAnotherRateIsNotHeardAndHearsNoSentence)
{
    Session session(Bench::ConfigFor(Protocol::Nmea, 4800), {}, std::nullopt);
    Drive(session, 0, 5, 4800);
    const std::string text = Drive(session, 5, 15, 9600, "$PSRF100,0,38400,8,1,0*3C\r\n");
    EXPECT_GT(text.size(), 1000u);
    EXPECT_EQ(text.find("GP"), std::string::npos);
    EXPECT_EQ(session.Sim.Kept.protocol, Protocol::Nmea);
    Drive(session, 15, 17, 4800, "$PSRF100,0,38400,8,1,0*3C\r\n");
    EXPECT_EQ(session.Sim.Kept.protocol, Protocol::SirfBinary);
    EXPECT_NE(Drive(session, 17, 20, 38400).find('\xA0'), std::string::npos);
}

TEST(Session, WrongChecksumsAreWrongByOneBit)
{
    Session session(Bench::ConfigFor(Protocol::Nmea, 4800), Script({{0, "checksum 1"}}), std::nullopt);
    const Counts counts = CountSentences(Drive(session, 0, 30));
    EXPECT_EQ(counts.good, 0u);
    EXPECT_GT(counts.bad, 50u);
}

TEST(Session, SilenceStillHearsAndAFreezeDoesNot)
{
    const char* debug = "$PSRF105,1*3E\r\n";
    for (const bool freeze : {false, true}) {
        Session session(Bench::ConfigFor(Protocol::Nmea, 4800),
                        Script({{3, freeze ? "freeze 5" : "silence 5"}}), std::nullopt);
        Drive(session, 0, 4.5);
        EXPECT_EQ(Drive(session, 4.5, 7.9, 0, debug), "");
        EXPECT_EQ(session.Sim.Kept.nmeaDebug, !freeze);
        EXPECT_NE(Drive(session, 7.9, 10), "");
    }
}

TEST(Session, FreezeAfterASwitch)
{
    Session session(Bench::ConfigFor(Protocol::Nmea, 4800), Script({{0, "freeze-after-switch 10"}}),
                    std::nullopt);
    Drive(session, 0, 3, 4800);
    Drive(session, 3, 4, 4800, "$PSRF100,0,38400,8,1,0*3C\r\n");
    EXPECT_EQ(Drive(session, 4, 12, 38400), "");
    EXPECT_NE(Drive(session, 12, 16, 38400), "");
}

TEST(Session, ScriptedActions)
{
    Session session(Bench::ConfigFor(Protocol::Nmea, 4800),
                    Script({{2, "text Hello"},
                            {4, "vanish 3"},
                            {5, "refuse 170,PSRF106"},
                            {6, "switch sirf 57600"},
                            {8, "restart factory"},
                            {9, "quit"}}),
                    std::nullopt);
    EXPECT_NE(Drive(session, 0, 3.9).find("$PSRFTXT,Hello*"), std::string::npos);
    EXPECT_LT(session.VanishedUntil(), 0);
    Drive(session, 3.9, 5.5);
    EXPECT_NEAR(session.VanishedUntil(), 7, 1e-6);
    EXPECT_TRUE(session.Sim.Options.refused.mids.contains(170));
    EXPECT_TRUE(session.Sim.Options.refused.psrf.contains(106));
    Drive(session, 5.5, 7);
    EXPECT_EQ(session.Sim.Kept.lineRate, 57600u);
    EXPECT_EQ(session.Sim.Kept.protocol, Protocol::SirfBinary);
    EXPECT_FALSE(session.Quitting());
    Drive(session, 7, 9.5);
    EXPECT_EQ(session.Sim.Kept.protocol, Protocol::Nmea);
    EXPECT_TRUE(session.Quitting());
}

TEST(Session, ScriptedWorld)
{
    Session session(Bench::ConfigFor(Protocol::SirfBinary, 38400),
                    Script({{60, "tunnel 40"},
                            {62, "text Hi"},
                            {130, "track still"},
                            {140, "restart warm"},
                            {170, "restart cold"},
                            {171, "silence 1000"}}),
                    std::nullopt);
    Drive(session, 0, 59);
    EXPECT_NE(session.Status(0, false).find("host away 0  3D DGPS"), std::string::npos);
    EXPECT_NE(Drive(session, 59, 64).find("\xFFHi"), std::string::npos);
    EXPECT_NE(session.Status(0, false).find("dead reckoning"), std::string::npos);
    Drive(session, 64, 90);
    EXPECT_NE(session.Status(0, false).find("no fix"), std::string::npos);
    Drive(session, 90, 129);
    EXPECT_NEAR(session.Sim.Navigation.Current().speedMps, 10, 0.5);
    Drive(session, 129, 135);
    EXPECT_LT(session.Sim.Navigation.Current().speedMps, 0.5);
    Drive(session, 135, 142);
    EXPECT_TRUE(session.Sim.Navigation.Current().timeKnown);
    EXPECT_FALSE(session.Sim.Navigation.Current().Valid());
    Drive(session, 142, 172);
    EXPECT_FALSE(session.Sim.Navigation.Current().timeKnown);
    EXPECT_EQ(Drive(session, 173, 200), "");
}

TEST(Script, LinesAreSortedAndCommentsSkipped)
{
    const std::string path =
        File("receiver_script.txt", "# nothing\n\n 20 quit # at last\n3.5 lose 0.25\r\n4 text a b  c \n");
    std::string error;
    const auto actions = ReadScript(path, error);
    std::filesystem::remove(path);
    ASSERT_TRUE(actions) << error;
    ASSERT_EQ(actions->size(), 3u);
    EXPECT_EQ((*actions)[0].verb, Verb::Lose);
    EXPECT_EQ((*actions)[0].at, 3.5);
    EXPECT_EQ((*actions)[0].number, 0.25);
    EXPECT_EQ((*actions)[1].text, "a b  c");
    EXPECT_EQ((*actions)[2].verb, Verb::Quit);
}

TEST(Script, BadLinesAreNamed)
{
    struct Row {
        const char *line, *error;
    };
    static constexpr Row rows[] = {
        {"x quit", "'x' is no time, a number of seconds from 0 to 1000000000"},
        {"-1 quit", "'-1' is no time, a number of seconds from 0 to 1000000000"},
        {"1 jump",
         "unknown action 'jump', not one of "
         "lose, flip, checksum, freeze-after-switch, switch-lands-at, ignore-switches, mute, alter, burst, "
         "silence, freeze, vanish, tunnel, track, restart, switch, refuse, text, quit"},
        {"1",
         "unknown action '', not one of "
         "lose, flip, checksum, freeze-after-switch, switch-lands-at, ignore-switches, mute, alter, burst, "
         "silence, freeze, vanish, tunnel, track, restart, switch, refuse, text, quit"},
        {"1 lose 2", "lose takes a number from 0 to 1, not '2'"},
        {"1 burst 1.5", "burst takes a whole number from 1 to 1000000, not '1.5'"},
        {"1 silence", "silence takes seconds from 0 to 1000000, not ''"},
        {"1 track moon", "track takes still, circle, walk, eight, not 'moon'"},
        {"1 restart lukewarm", "restart takes hot, warm, cold or factory, not 'lukewarm'"},
        {"1 switch nmea 1201", "switch takes nmea or sirf, and a line rate, not 'nmea 1201'"},
        {"1 refuse PSRF", "refuse takes a list like 170,?139,PSRF106, not 'PSRF'"},
        {"1 quit now", "quit takes nothing, not 'now'"},
    };
    for (const Row& row : rows) {
        const std::string path = File("receiver_bad_script.txt", std::string("0 lose 0\n") + row.line + "\n");
        std::string error;
        EXPECT_FALSE(ReadScript(path, error)) << row.line;
        EXPECT_EQ(error, path + ":2: " + row.error);
        std::filesystem::remove(path);
    }
    std::string error;
    EXPECT_FALSE(ReadScript("/nowhere/s", error));
    EXPECT_EQ(error, "/nowhere/s: No such file or directory");
}

TEST(Player, PlaysTheLogAtLineRateWithoutItsHead)
{
    const std::string content = "$GPGGA,# no comment\r\n" + std::string(1000, 'x') + "\n# kept\n";
    const std::string path = File("receiver_log.txt", "# head\n# more\n" + content);
    std::string error;
    auto log = ReadLog(path, error);
    std::filesystem::remove(path);
    ASSERT_TRUE(log) << error;
    Session session(Bench::ConfigFor(Protocol::Nmea, 4800), {}, Player(*log, false));
    const std::string first = Drive(session, 0, 1.0);
    EXPECT_NEAR(static_cast<double>(first.size()), 480, 12);
    EXPECT_FALSE(session.PlayEnded());
    const std::string rest = Drive(session, 1.0, 4.0);
    EXPECT_EQ(first + rest, content);
    EXPECT_TRUE(session.PlayEnded());
}

TEST(Player, RepeatsOnDemand)
{
    Session session(Bench::ConfigFor(Protocol::Nmea, 4800), {}, Player(Bytes{'a', 'b', 'c'}, true));
    const std::string text = Drive(session, 0, 1.0);
    EXPECT_EQ(text.substr(0, 9), "abcabcabc");
    EXPECT_GT(text.size(), 400u);
    EXPECT_FALSE(session.PlayEnded());
}

TEST(Player, FilesThatCannotBePlayedAreNamed)
{
    std::string error;
    EXPECT_FALSE(ReadLog("/nowhere/log", error));
    EXPECT_EQ(error, "/nowhere/log: No such file or directory");
    const std::string path = File("receiver_comments.txt", "# only\n# comments");
    EXPECT_FALSE(ReadLog(path, error));
    EXPECT_EQ(error, path + ": nothing to play");
    std::filesystem::remove(path);
}

TEST(Session, StatusIsOneLine)
{
    Session session(Bench::ConfigFor(Protocol::Nmea, 4800), {}, std::nullopt);
    Drive(session, 0, 60);
    const std::string status = session.Status(9600, true);
    EXPECT_EQ(status.find('\n'), std::string::npos);
    EXPECT_NE(status.find("NMEA 4800  host open 9600  3D DGPS"), std::string::npos) << status;
}
