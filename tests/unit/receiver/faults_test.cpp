// SPDX-License-Identifier: MIT
// Faults of a receiver on request: dates of old firmware, switches to a wrong rate, commands without an
// answer or with another effect than the requested one.

#include "bench.h"
#include "receiver/session.h"

#include <gtest/gtest.h>

using namespace receiver;

namespace
{

// The set command of the elevation mask, 10.0 and 15.0 degrees, its poll, and their answers.
constexpr const char* SetMask = "A0 A2 00 05 8B 00 64 00 96 01 85 B0 B3";
constexpr const char* MaskAcknowledged = "A0 A2 00 02 0B 8B 00 96 B0 B3";
constexpr const char* PollMask = "A0 A2 00 02 A8 8B 01 33 B0 B3";
constexpr const char* FactoryMask = "A0 A2 00 06 2B 8B 00 32 00 4B 01 33 B0 B3"; // 5.0 and 7.5

struct FaultyBench : Bench {
    FaultyBench(Protocol protocol, std::initializer_list<const char*> faults) : Bench(protocol)
    {
        Session session(sim.Options, {}, std::nullopt);
        std::string error;
        for (const char* fault : faults) {
            const auto action = ParseAction(fault, error);
            EXPECT_TRUE(action) << error;
            if (action) session.Perform(*action);
        }
        sim = session.Sim;
        sim.Advance(0.9);
        sim.Output.clear();
    }
};

// The date of the first RMC, ddmmyy, and of the first ZDA, of a receiver that knows the time.
std::string ReportedDates(const char* date, std::optional<int32_t> pivotWeek)
{
    Config config = Bench::ConfigFor(Protocol::Nmea, 57600);
    config.start = *ParseDate(date);
    config.firstStart = Restart::Hot;
    config.pivotWeek = pivotWeek;
    Bench bench(config);
    bench.sim.Kept.nmea[Zda].seconds = 1;
    bench.sim.Advance(1.5);
    std::string dates;
    for (const Burst& burst : bench.Bursts()) {
        const std::string text(burst.bytes.begin(), burst.bytes.end());
        if (!text.starts_with("$GPRMC") && !text.starts_with("$GPZDA")) continue;
        dates += text.substr(0, text.find('*')) + "\n";
    }
    return dates;
}

} // namespace

TEST(PivotWeek, OldFirmwareReportsDatesOf1024WeeksBefore)
{
    // 7168 days before 21 November 2026 is 7 April 2007.
    EXPECT_NE(ReportedDates("2026-11-21T10:00:00", 1290).find(",070407,,,"), std::string::npos);
    EXPECT_NE(ReportedDates("2026-11-21T10:00:00", 1290).find("$GPZDA,100001.000,07,04,2007,,"),
              std::string::npos);
    EXPECT_NE(ReportedDates("2026-11-21T10:00:00", std::nullopt).find(",211126,,,"), std::string::npos);
}

TEST(PivotWeek, FirstAndLastWeekThatTheFirmwareKnows)
{
    // Week 1290 begins on 26 September 2004; 1023 weeks later, on 5 May 2024, its last one begins.
    EXPECT_NE(ReportedDates("2004-09-26T12:00:00", 1290).find(",260904,,,"), std::string::npos);
    EXPECT_NE(ReportedDates("2024-05-11T12:00:00", 1290).find(",110524,,,"), std::string::npos);
    EXPECT_NE(ReportedDates("2024-05-12T12:00:00", 1290).find(",260904,,,"), std::string::npos);
    // And from before its first week into the future.
    EXPECT_NE(ReportedDates("2004-09-25T12:00:00", 1290).find(",110524,,,"), std::string::npos);
}

TEST(PivotWeek, SirfMessagesReportTheSameDate)
{
    Config config = Bench::ConfigFor(Protocol::SirfBinary, 57600);
    config.start = *ParseDate("2026-11-21T10:00:00");
    config.firstStart = Restart::Hot;
    config.pivotWeek = 1290;
    Bench bench(config);
    bench.sim.Advance(1.5);
    const std::vector<Burst> bursts = bench.Bursts();
    size_t seen = 0;
    for (const Burst& burst : bursts) {
        const Bytes payload(burst.bytes.begin() + 4, burst.bytes.end() - 4);
        // Week 2445, which the satellites send as 397, is taken for 1421; 7 April 2007.
        if (payload[0] == 41) {
            EXPECT_EQ(ToHex(std::span(payload).subspan(5, 2)), "05 8D");
            EXPECT_EQ(ToHex(std::span(payload).subspan(11, 4)), "07 D7 04 07");
            ++seen;
        }
        if (payload[0] == 7) {
            EXPECT_EQ(ToHex(std::span(payload).subspan(1, 2)), "05 8D");
            ++seen;
        }
        if (payload[0] == 2) {
            EXPECT_EQ(ToHex(std::span(payload).subspan(22, 2)), "01 8D");
            ++seen;
        }
    }
    EXPECT_EQ(seen, 3u);
}

TEST(FaultySwitch, EndsAtAnotherRate)
{
    FaultyBench bench(Protocol::Nmea, {"switch-lands-at 19200"});
    bench.Say("$PSRF100,0,57600,8,1,0*37\r\n");
    EXPECT_EQ(bench.sim.Kept.protocol, Protocol::SirfBinary);
    EXPECT_EQ(bench.sim.Kept.lineRate, 19200u);
}

TEST(FaultySwitch, IsIgnoredSoManyTimes)
{
    FaultyBench bench(Protocol::SirfBinary, {"ignore-switches 1"});
    const char* toNmea =
        "A0 A2 00 18 81 02 01 01 00 01 01 01 05 01 01 01 01 01 00 01 00 01 00 01 00 01 12 C0 "
        "01 68 B0 B3";
    bench.SayHex(toNmea);
    EXPECT_EQ(bench.Hex(), "A0 A2 00 02 0B 81 00 8C B0 B3"); // acknowledged all the same
    EXPECT_EQ(bench.sim.Kept.protocol, Protocol::SirfBinary);
    EXPECT_EQ(bench.sim.Kept.lineRate, 38400u);
    bench.SayHex(toNmea);
    EXPECT_EQ(bench.sim.Kept.protocol, Protocol::Nmea);
    EXPECT_EQ(bench.sim.Kept.lineRate, 4800u);
}

TEST(FaultySetting, ComesBackChanged)
{
    FaultyBench bench(Protocol::SirfBinary, {"alter 139:4:99", "alter 140:1:0", "alter 139:200:1"});
    bench.SayHex(SetMask);
    EXPECT_EQ(bench.Hex(), MaskAcknowledged);
    bench.SayHex(PollMask);
    EXPECT_EQ(bench.Hex(), "A0 A2 00 06 2B 8B 00 64 00 63 01 7D B0 B3");
}

TEST(FaultySetting, IsNeitherCarriedOutNorAnswered)
{
    FaultyBench bench(Protocol::SirfBinary, {"mute 140,139"});
    bench.SayHex(SetMask);
    bench.SayHex(PollMask);
    EXPECT_EQ(bench.Hex(), "");
    bench.sim.Muted = {};
    bench.SayHex(PollMask);
    EXPECT_EQ(bench.Hex(), FactoryMask);
}

TEST(FaultySetting, PollAloneIsNotAnsweredOrRefused)
{
    FaultyBench mute(Protocol::SirfBinary, {"mute ?139"});
    mute.SayHex(PollMask);
    EXPECT_EQ(mute.Hex(), "");
    mute.SayHex(SetMask);
    EXPECT_EQ(mute.Hex(), MaskAcknowledged);

    FaultyBench refusing(Protocol::SirfBinary, {"refuse ?139"});
    refusing.SayHex(PollMask);
    EXPECT_EQ(refusing.Hex(), "A0 A2 00 02 0C A8 00 B4 B0 B3");
    refusing.SayHex(SetMask);
    EXPECT_EQ(refusing.Hex(), MaskAcknowledged);
}

TEST(FaultySetting, MutedSentenceIsNotCarriedOut)
{
    FaultyBench bench(Protocol::Nmea, {"mute PSRF106"});
    bench.Say("$PSRF106,178*32\r\n");
    EXPECT_EQ(bench.sim.Kept.datum, 21);
}
