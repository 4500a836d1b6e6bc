// SPDX-License-Identifier: MIT
// Sentences, character by character, from a fix with chosen values.

#include "bench.h"
#include "receiver/nmea_output.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace receiver;

namespace
{

struct World {
    Fix fix;
    Settings settings = FactorySettings(Protocol::Nmea, 4800);

    World()
    {
        fix.time = {898077614000}; // 2008-06-21 10:00:00 UTC
        fix.timeKnown = fix.everFixed = true;
        fix.type = FixType::ThreeD;
        fix.used = 5;
        fix.place = {-33.8567844, 151.2152967, 43.2};
        fix.speedMps = 10;
        fix.courseDeg = 271.5;
        fix.pdop = 2.04;
        fix.hdop = 1.24;
        fix.vdop = 1.6;
        for (uint8_t i = 0; i < 5; ++i) {
            Channel& channel = fix.channels[i];
            channel.sv = static_cast<uint8_t>(2 + 7 * i);
            channel.look = {40.0 * i + 0.4, 80.0 - 15.0 * i, 2e7};
            channel.cno.fill(static_cast<uint8_t>(45 - 3 * i));
            channel.used = true;
        }
        fix.channels[5].sv = 124;
        fix.channels[5].look = {359.7, 33.3, 3.8e7};
    }

    std::string Text(NmeaMessage message) const
    {
        std::string text;
        for (const std::string& body : NmeaBodies(message, fix, settings)) text += body + "\n";
        return text;
    }
};

} // namespace

TEST(NmeaOutput, FrameHasTwoUpperCaseDigitsAndCrLf)
{
    const Bytes frame = FrameNmea("PSRF105,1");
    EXPECT_EQ(std::string(frame.begin(), frame.end()), "$PSRF105,1*3E\r\n");
    const Bytes small = FrameNmea("PSRFTXT,TOW: 0");
    EXPECT_EQ(std::string(small.begin(), small.end()), "$PSRFTXT,TOW: 0*05\r\n");
    const Bytes none = FrameNmea("PSRF105,1", false);
    EXPECT_EQ(std::string(none.begin(), none.end()), "$PSRF105,1\r\n");
}

TEST(NmeaOutput, Gga)
{
    World world;
    const double separation = GeoidSeparationM(world.fix.place);
    char heights[64];
    std::snprintf(heights, sizeof heights, "%.1f,M,%.1f", 43.2 - separation, separation);
    EXPECT_EQ(world.Text(Gga),
              "GPGGA,100000.000,3351.4071,S,15112.9178,E,1,05,1.2," + std::string(heights) + ",M,,0000\n");
    world.fix.differential = true;
    world.fix.correctionAgeS = 1;
    EXPECT_EQ(world.Text(Gga),
              "GPGGA,100000.000,3351.4071,S,15112.9178,E,2,05,1.2," + std::string(heights) + ",M,3.0,0000\n");
    world.fix.type = FixType::DeadReckoning;
    EXPECT_NE(world.Text(Gga).find(",E,6,05,"), std::string::npos);
    world.fix.type = FixType::None;
    world.fix.used = 0;
    EXPECT_EQ(world.Text(Gga), "GPGGA,100000.000,,,,,0,00,,,M,,M,,0000\n");
}

TEST(NmeaOutput, MinutesNeverReachSixty)
{
    World world;
    world.fix.place = {47.99999999, -9.99999999, 0};
    EXPECT_EQ(world.Text(Gll), "GPGLL,4800.0000,N,01000.0000,W,100000.000,A,A\n");
}

TEST(NmeaOutput, Gll)
{
    World world;
    EXPECT_EQ(world.Text(Gll), "GPGLL,3351.4071,S,15112.9178,E,100000.000,A,A\n");
    world.fix.differential = true;
    EXPECT_EQ(world.Text(Gll), "GPGLL,3351.4071,S,15112.9178,E,100000.000,A,D\n");
    world.fix.type = FixType::None;
    EXPECT_EQ(world.Text(Gll), "GPGLL,,,,,100000.000,V,N\n");
}

TEST(NmeaOutput, Gsa)
{
    World world;
    EXPECT_EQ(world.Text(Gsa), "GPGSA,A,3,02,09,16,23,30,,,,,,,,2.0,1.2,1.6\n");
    world.fix.type = FixType::TwoD;
    EXPECT_EQ(world.Text(Gsa).substr(0, 9), "GPGSA,A,2");
    world.fix = Fix{};
    EXPECT_EQ(world.Text(Gsa), "GPGSA,A,1,,,,,,,,,,,,,,,\n");
}

TEST(NmeaOutput, GsvInGroupsOfFour)
{
    World world;
    EXPECT_EQ(world.Text(Gsv), "GPGSV,2,1,06,02,80,000,45,09,65,040,42,16,50,080,39,23,35,120,36\n"
                               "GPGSV,2,2,06,30,20,160,33,37,33,000,\n");
    world.fix = Fix{};
    EXPECT_EQ(world.Text(Gsv), "GPGSV,1,1,00,,,,\n");
}

TEST(NmeaOutput, Rmc)
{
    World world;
    EXPECT_EQ(world.Text(Rmc), "GPRMC,100000.000,A,3351.4071,S,15112.9178,E,19.44,271.50,210608,,,A\n");
    world.fix.type = FixType::None;
    EXPECT_EQ(world.Text(Rmc), "GPRMC,100000.000,V,,,,,,,210608,,,N\n");
}

TEST(NmeaOutput, Vtg)
{
    World world;
    EXPECT_EQ(world.Text(Vtg), "GPVTG,271.50,T,,M,19.44,N,36.0,K,A\n");
    world.fix.type = FixType::None;
    EXPECT_EQ(world.Text(Vtg), "GPVTG,,T,,M,,N,,K,N\n");
}

TEST(NmeaOutput, MssAndZda)
{
    World world;
    EXPECT_EQ(world.Text(Mss), "GPMSS,0,0,0.0,0,\n");
    world.settings.commands[133] = FromHex("85 03 00 04 93 E0 64");
    EXPECT_EQ(world.Text(Mss), "GPMSS,55,27,300.0,100,\n");
    EXPECT_EQ(world.Text(Zda), "GPZDA,100000.000,21,06,2008,,\n");
    EXPECT_EQ(world.Text(User8), "");
}

TEST(NmeaOutput, FieldCountsAreThoseThatHostsExpect)
{
    struct Row {
        NmeaMessage message;
        std::vector<std::ptrdiff_t> fields;
    };
    const Row rows[] = {{Gga, {15}}, {Gll, {8}}, {Gsa, {18}}, {Gsv, {8, 12, 16, 20}},
                        {Rmc, {13}}, {Vtg, {10}}};
    for (const FixType type : {FixType::None, FixType::TwoD, FixType::ThreeD, FixType::DeadReckoning}) {
        World world;
        world.fix.type = type;
        for (const Row& row : rows) {
            for (const std::string& body : NmeaBodies(row.message, world.fix, world.settings)) {
                const auto fields = std::count(body.begin(), body.end(), ',') + 1;
                EXPECT_NE(std::ranges::find(row.fields, fields), row.fields.end()) << body;
            }
        }
    }
}
