// SPDX-License-Identifier: MIT
// Every PSRF command, as whole sentences with checksums calculated by hand.

#include "bench.h"

#include <gtest/gtest.h>

using namespace receiver;

TEST(NmeaCommands, SerialPortSwitchesProtocolAndRateAtOnce)
{
    Bench bench(Protocol::Nmea, 4800);
    bench.Say("$PSRF100,0,38400,8,1,0*3C\r\n");
    EXPECT_EQ(bench.sim.Kept.protocol, Protocol::SirfBinary);
    EXPECT_EQ(bench.sim.Kept.lineRate, 38400u);
    bench.sim.Advance(1.0);
    const auto bursts = bench.Bursts();
    ASSERT_FALSE(bursts.empty());
    for (const Burst& burst : bursts) {
        EXPECT_EQ(burst.bytes[0], 0xA0);
        EXPECT_EQ(burst.rate, 38400u);
    }
}

TEST(NmeaCommands, SerialPortMayChangeTheRateOnly)
{
    Bench bench(Protocol::Nmea, 4800);
    bench.Say("$PSRF100,1,9600,8,1,0*0D\r\n");
    EXPECT_EQ(bench.sim.Kept.protocol, Protocol::Nmea);
    EXPECT_EQ(bench.sim.Kept.lineRate, 9600u);
}

TEST(NmeaCommands, HotStartPrintsTheStartUpText)
{
    Config config = Bench::ConfigFor(Protocol::Nmea, 4800);
    config.version = "GSW3";
    Bench bench(config);
    bench.Say("$PSRF101,0,0,0,0,0,0,12,1*15\r\n");
    EXPECT_EQ(bench.Text(), "");
    bench.sim.Advance(1.75);
    EXPECT_EQ(bench.Text(), "$PSRFTXT,Version: GSW3*53\r\n"
                            "$PSRFTXT,TOW: 0*05\r\n"
                            "$PSRFTXT,WK: 0*55\r\n"
                            "$PSRFTXT,POS: 0 0 0*05\r\n"
                            "$PSRFTXT,CLK: 96000*02\r\n"
                            "$PSRFTXT,CHNL: 12*73\r\n"
                            "$PSRFTXT,Baud rate: 4800*65\r\n");
}

TEST(NmeaCommands, WarmStartKeepsWhatItWasGiven)
{
    Bench bench(Protocol::Nmea, 4800);
    bench.Say("$PSRF101,4271199,642119,4668387,95896,60480000,1483,10,3*22\r\n");
    bench.sim.Advance(1.75);
    const std::string text = bench.Text();
    EXPECT_NE(text.find("TOW: 604800*"), std::string::npos);
    EXPECT_NE(text.find("WK: 1483*"), std::string::npos);
    EXPECT_NE(text.find("POS: 4271199 642119 4668387*"), std::string::npos);
    EXPECT_NE(text.find("CLK: 95896*"), std::string::npos);
    EXPECT_NE(text.find("CHNL: 10*"), std::string::npos);
}

TEST(NmeaCommands, RestartKindsForgetDifferentThings)
{
    struct Row {
        const char* command;
        bool timeKnown, placeKnown;
    };
    static constexpr Row rows[] = {
        {"$PSRF101,0,0,0,0,0,0,12,1*15\r\n", true, true},
        {"$PSRF101,0,0,0,0,0,0,12,4*10\r\n", false, false},
        {"$PSRF101,0,0,0,0,0,0,12,8*1C\r\n", false, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.command);
        Bench bench(Protocol::Nmea, 4800);
        bench.sim.Advance(60.5);
        ASSERT_TRUE(bench.sim.Navigation.Current().Valid());
        bench.Say(row.command);
        EXPECT_FALSE(bench.sim.Navigation.Current().Valid());
        EXPECT_EQ(bench.sim.Navigation.Current().timeKnown, row.timeKnown);
        EXPECT_EQ(bench.sim.Navigation.Current().everFixed, row.placeKnown);
    }
}

TEST(NmeaCommands, MessageRateAndChecksumOfOneSentence)
{
    Bench bench(Protocol::Nmea, 38400);
    bench.Say("$PSRF103,3,0,2,0*24\r\n"); // GSV every 2 s, without checksum
    EXPECT_EQ(bench.sim.Kept.nmea[Gsv].seconds, 2);
    bench.sim.Advance(6.5);
    const std::string text = bench.Text();
    size_t groups = 0;
    for (size_t at = text.find("$GPGSV,"); at != std::string::npos; at = text.find("$GPGSV,", at + 1)) {
        const std::string sentence = text.substr(at, text.find('\n', at) - at);
        EXPECT_EQ(sentence.find('*'), std::string::npos) << sentence;
        if (sentence[9] == '1') ++groups;
    }
    EXPECT_EQ(groups, 3u);
}

TEST(NmeaCommands, MessageRateZeroStopsASentence)
{
    Bench bench(Protocol::Nmea, 38400);
    bench.Say("$PSRF103,0,0,0,1*24\r\n");
    bench.sim.Advance(4.5);
    EXPECT_EQ(bench.Text().find("$GPGGA"), std::string::npos);
}

TEST(NmeaCommands, MessageRateModeOneAsksOnce)
{
    Bench bench(Protocol::Nmea, 38400);
    bench.Say("$PSRF103,8,1,0,1*2D\r\n");
    EXPECT_EQ(bench.Text(), "$GPZDA,000000.000,06,01,1980,,*51\r\n");
    EXPECT_EQ(bench.sim.Kept.nmea[Zda].seconds, 0);
}

TEST(NmeaCommands, DevelopmentDataExplainCommands)
{
    Bench bench(Protocol::Nmea, 38400);
    bench.Say("$PSRF103,10,0,1,1*14\r\n");
    EXPECT_EQ(bench.Text(), "");
    bench.Say("$PSRF105,1*3E\r\n");
    EXPECT_EQ(bench.Text(), "");
    bench.Say("$PSRF103,0,0,0,1*24\r\n");
    EXPECT_EQ(bench.Text(), "$PSRFTXT,PSRF103 ok*62\r\n");
    bench.Say("$PSRF103,10,0,1,1*14\r\n");
    EXPECT_EQ(bench.Text(), "$PSRFTXT,PSRF103 parameter out of range*37\r\n");
    bench.Say("$PSRF103,0,0,1*38\r\n");
    EXPECT_EQ(bench.Text(), "$PSRFTXT,PSRF103 wrong number of parameters*35\r\n");
    bench.Say("$PSRF199,1*3B\r\n");
    EXPECT_EQ(bench.Text(), "$PSRFTXT,PSRF199 unknown*0D\r\n");
    bench.Say("$PSRF106,180*35\r\n");
    EXPECT_EQ(bench.Text(), "$PSRFTXT,PSRF106 ok*67\r\n");
    EXPECT_EQ(bench.sim.Kept.datum, 180);
}

TEST(NmeaCommands, BadCommandsChangeNothing)
{
    static constexpr const char* commands[] = {
        "$PSRF106,22*0C\r\n",               // no such datum
        "$PSRF100,0,1201,8,1,0*01\r\n",     // no such rate
        "$PSRF100,2,4800,8,1,0*0D\r\n",     // no such protocol
        "$PSRF100,0,4800,7,1,0*00\r\n",     // seven data bits
        "$PSRF103,0,0,256,1*25\r\n",        // rate
        "$PSRF101,0,0,0,0,0,0,13,1*14\r\n", // channels
        "$PSRF101,0,0,0,0,0,0,12,5*11\r\n", // reset kind
        "$PSRF103,0,0,1,1,1*38\r\n",        // one parameter too many
        "$PSRF106,x*74\r\n",                // no number
    };
    for (const char* command : commands) {
        SCOPED_TRACE(command);
        Bench bench(Protocol::Nmea, 4800);
        bench.Say(command);
        EXPECT_EQ(bench.sim.CommandsRefused, 1u);
        EXPECT_EQ(bench.sim.CommandsAccepted, 0u);
        EXPECT_EQ(bench.sim.Kept.datum, 21);
        EXPECT_EQ(bench.sim.Kept.lineRate, 4800u);
        EXPECT_EQ(bench.sim.Kept.nmea[Gga].seconds, 1);
        EXPECT_EQ(bench.Text(), "");
    }
}

TEST(NmeaCommands, RefusedSentencesAreUnknown)
{
    Config config = Bench::ConfigFor(Protocol::Nmea, 4800);
    config.refused.psrf.insert(106);
    Bench bench(config);
    bench.Say("$PSRF106,180*35\r\n");
    EXPECT_EQ(bench.sim.CommandsRefused, 1u);
    EXPECT_EQ(bench.sim.Kept.datum, 21);
}

TEST(NmeaCommands, WhatIsNoSentenceIsNotHeard)
{
    static constexpr const char* texts[] = {
        "$PSRF105,1*3F\r\n", // checksum
        "$PSRF105,1\r\n",    // none
        "$PSRF105,1*3E\n",   // line end
        "PSRF105,1*3E\r\n",  // start
        "$PSRF105,1*3E\r",   // not finished
    };
    for (const char* text : texts) {
        SCOPED_TRACE(text);
        Bench bench(Protocol::Nmea, 4800);
        bench.Say(text);
        EXPECT_FALSE(bench.sim.Kept.nmeaDebug);
        bench.Say("$PSRF105,1*3E\r\n"); // the next one is
        EXPECT_TRUE(bench.sim.Kept.nmeaDebug);
    }
}
