// SPDX-License-Identifier: MIT
// Samples: the messages that belong to one moment, and its date.

#include "console/sample.h"

#include <cmath>
#include <vector>

#include "reception_test.h"

using namespace console;

namespace
{

class Gathering : public ReceptionTest
{
protected:
    std::vector<Sample> Samples;
    SampleGatherer Gatherer{[this](const Sample& sample) { Samples.push_back(sample); }};

    static void Gga(const std::string& time, const std::string& quality = "1")
    {
        Say("GPGGA," + time + ",4722.6140,N,00832.5020,E," + quality + ",09,1.1,459.5,M,48.2,M,,0000");
    }
    static void Rmc(const std::string& time, const std::string& date, const std::string& knots = "10.00")
    {
        Say("GPRMC," + time + ",A,4722.6140,N,00832.5020,E," + knots + ",90.00," + date + ",,,A");
    }
    std::vector<std::string> Times()
    {
        Gatherer.Flush();
        std::vector<std::string> times;
        for (const Sample& sample : Samples) times.push_back(sample.time ? FormatTime(*sample.time) : "-");
        return times;
    }
};

TEST_F(Gathering, ASampleHasSpeedAndDateOfTheSentencesOfItsSecond)
{
    Gga("100035.000");
    EXPECT_TRUE(Gatherer.IsWaiting());
    Rmc("100035.000", "210608", "10.00");
    Gga("100036.000");
    Rmc("100036.000", "210608", "20.00");
    EXPECT_EQ(Times(), (std::vector<std::string>{"2008-06-21T10:00:35Z", "2008-06-21T10:00:36Z"}));
    EXPECT_NEAR(Samples[0].fix.SpeedMetresPerSecond, 5.1444, 1e-4);
    EXPECT_NEAR(Samples[1].fix.SpeedMetresPerSecond, 10.2889, 1e-4);
    EXPECT_TRUE(Samples[0].IsPoint());
}

TEST_F(Gathering, SentencesOfTheNextSecondDoNotCount)
{
    Gga("100035.000");
    Rmc("100036.000", "210608", "20.00"); // comes before its GGA
    Gga("100036.000");
    EXPECT_EQ(Times(), (std::vector<std::string>{"-", "2008-06-21T10:00:36Z"}));
    EXPECT_TRUE(std::isnan(Samples[0].fix.SpeedMetresPerSecond));
    EXPECT_NEAR(Samples[1].fix.SpeedMetresPerSecond, 10.2889, 1e-4);
}

TEST_F(Gathering, TheDateChangesAtMidnight)
{
    // RMC after GGA, then only each third second, then before.
    Gga("235959.000");
    Rmc("235959.000", "210608");
    Gga("000000.000");
    Rmc("000000.000", "220608");
    Rmc("235959.000", "220608");
    Gga("000000.000");
    Gga("000001.000");
    Rmc("000002.000", "230608");
    Gga("000002.000");
    EXPECT_EQ(Times(), (std::vector<std::string>{"2008-06-21T23:59:59Z", "2008-06-22T00:00:00Z",
                                                 "2008-06-23T00:00:00Z", "2008-06-23T00:00:01Z",
                                                 "2008-06-23T00:00:02Z"}));
}

TEST_F(Gathering, WithoutADateThereIsNoTime)
{
    Gga("100035.000");
    EXPECT_EQ(Times(), std::vector<std::string>{"-"});
    EXPECT_EQ(Samples[0].secondOfDay, 36035);
}

TEST_F(Gathering, AClockThatIsNoneGivesNoTime)
{
    Rmc("100035.000", "210608");
    Gga("256199.000");
    Gga("");
    EXPECT_EQ(Times(), (std::vector<std::string>{"-", "-"}));
    EXPECT_FALSE(Samples[1].secondOfDay);
}

TEST_F(Gathering, WithoutAFixThereIsNoPoint)
{
    Gga("100035.000", "0");
    Say("GPGGA,100036.000,,,,,1,09,1.1,459.5,M,48.2,M,,0000");
    Gatherer.Flush();
    ASSERT_EQ(Samples.size(), 2u);
    EXPECT_FALSE(Samples[0].IsPoint());
    EXPECT_FALSE(Samples[1].IsPoint());
}

TEST_F(Gathering, Message41HasItsOwnDate)
{
    std::string payload(91, '\0');
    payload[0] = 41;
    payload[4] = 4;
    payload.replace(11, 8, std::string("\x07\xE8\x02\x1D\x17\x3B\xE4\x84", 8)); // 2024-02-29 23:59:58.5
    Message(payload);
    EXPECT_EQ(Times(), std::vector<std::string>{"2024-02-29T23:59:58Z"});
    EXPECT_TRUE(Samples[0].IsPoint());
}

TEST_F(Gathering, Message2CountsWhileNo41Comes)
{
    std::string navigation(41, '\0'), geodetic(91, '\0'), throughput(9, '\0');
    navigation[0] = 2;
    navigation[19] = 4;
    geodetic[0] = 41;
    geodetic[4] = 4;
    throughput[0] = 9;
    Message(navigation);
    Message(throughput);
    Message(navigation);
    Message(throughput);
    Message(geodetic); // about the same moment
    Message(navigation);
    Message(geodetic);
    Gatherer.Flush();
    EXPECT_EQ(Samples.size(), 3u);
}

TEST_F(Gathering, ACorrectedSampleKeepsTheReportedTime)
{
    Gga("100035.000");
    Rmc("100035.000", "070407");
    Gatherer.Flush();
    Sample sample = Samples.at(0);
    CorrectSample(sample, {{2026, 11, 20}, ReferenceKind::Given});
    EXPECT_EQ(FormatTime(sample.time.value()), "2026-11-21T10:00:35Z");
    EXPECT_EQ(FormatTime(sample.rawTime.value()), "2007-04-07T10:00:35Z");
    sample = Samples[0];
    CorrectSample(sample, {{2020, 1, 1}, ReferenceKind::Given});
    EXPECT_EQ(sample.time, sample.rawTime);
    sample.time.reset();
    sample.rawTime.reset();
    CorrectSample(sample, {{2026, 11, 20}, ReferenceKind::Given});
    EXPECT_FALSE(sample.time || sample.rawTime);
}

} // namespace
