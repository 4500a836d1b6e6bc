// SPDX-License-Identifier: MIT
// Messages, compared with bytes that were calculated by hand from a fix with chosen values.

#include "bench.h"
#include "receiver/sirf_output.h"

#include <gtest/gtest.h>

using namespace receiver;

namespace
{

// Week 1483, 540000 s: Saturday 2008-06-14 06:00:00 GPS time, 05:59:46 UTC.
Fix ChosenFix()
{
    Fix fix;
    fix.time = {1483 * MsPerWeek + 540000000};
    fix.timeKnown = fix.everFixed = true;
    fix.type = FixType::ThreeD;
    fix.differential = true;
    fix.used = 2;
    fix.ecef = {6378137, -1, 0};
    fix.velocity = {10, 0, -2};
    fix.speedMps = 10;
    fix.courseDeg = 90;
    fix.hdop = 1.2;
    fix.horizontalErrorM = 3.25;
    fix.verticalErrorM = 4.5;
    fix.clockDriftHz = 95896;
    fix.clockBiasNs = 250000;
    fix.sbasSv = 124;
    fix.correctionAgeS = 1;
    fix.channels[0] = {
        5, {90, 45, 2.1e7}, StateWithEphemeris, {40, 41, 42, 43, 44, 45, 46, 47, 48, 49}, 3, true, true};
    fix.channels[1] = {
        30, {357, 10.5, 2.4e7}, StateLocked, {30, 30, 30, 30, 30, 30, 30, 30, 30, 30}, 2, true, false};
    fix.channels[2] = {124, {165, 34, 3.8e7}, StateLocked, {}, 1, false, false};
    fix.channels[3].sv = 9; // searched
    return fix;
}

struct World {
    Fix fix = ChosenFix();
    Settings settings = FactorySettings(Protocol::SirfBinary, 38400);
    std::vector<Satellite> visible = {{5, {90, 45, 2.1e7}}, {124, {165, 34, 3.8e7}}};

    std::vector<Bytes> Payloads(uint8_t mid) const
    {
        return SirfPayloads(mid, {fix, settings, visible, "V", 100.0, true});
    }
    std::string Hex(uint8_t mid) const
    {
        const auto payloads = Payloads(mid);
        return payloads.size() == 1 ? ToHex(payloads[0]) : std::to_string(payloads.size()) + " payloads";
    }
};

std::string Part(const std::string& hex, size_t offset, size_t count)
{
    return hex.substr(offset * 3, count * 3 - 1);
}

} // namespace

TEST(SirfOutput, FrameOfATwoBytePayload)
{
    const Bytes payload = {0x84, 0x00};
    EXPECT_EQ(ToHex(FrameSirf(payload)), "A0 A2 00 02 84 00 00 84 B0 B3");
}

TEST(SirfOutput, ChecksumHasFifteenBits)
{
    const Bytes payload(300, 0xFF); // 76500 = 0x12AD4
    EXPECT_EQ(SirfChecksum(payload), 0x2AD4);
}

TEST(SirfOutput, MeasuredNavigation)
{
    EXPECT_EQ(World().Hex(2), "02 00 61 52 99 FF FF FF FF 00 00 00 00 FF F0 00 50 00 00 84 06 02 "
                              "01 CB 03 37 F9 80 02 05 1E 00 00 00 00 00 00 00 00 00 00");
}

TEST(SirfOutput, FixTypesInMode1)
{
    struct Row {
        FixType type;
        bool differential;
        const char* mode1;
    };
    static constexpr Row rows[] = {{FixType::None, false, "00"},         {FixType::OneSv, false, "01"},
                                   {FixType::TwoSv, false, "02"},        {FixType::TwoD, false, "03"},
                                   {FixType::ThreeD, false, "04"},       {FixType::ThreeD, true, "84"},
                                   {FixType::DeadReckoning, false, "07"}};
    for (const Row& row : rows) {
        World world;
        world.fix.type = row.type;
        world.fix.differential = row.differential;
        EXPECT_EQ(Part(world.Hex(2), 19, 1), row.mode1);
        EXPECT_EQ(Part(world.Hex(41), 4, 1).back(), row.mode1[1]);
    }
}

TEST(SirfOutput, MeasuredTracking)
{
    const std::string hex = World().Hex(4);
    EXPECT_EQ(hex.size(), 188u * 3 - 1);
    EXPECT_EQ(Part(hex, 0, 8), "04 01 CB 03 37 F9 80 0C");
    // Azimuth in units of 1.5 degrees, elevation in half degrees.
    EXPECT_EQ(Part(hex, 8, 15), "05 3C 5A 00 BF 28 29 2A 2B 2C 2D 2E 2F 30 31");
    EXPECT_EQ(Part(hex, 23, 15), "1E EE 15 00 3F 1E 1E 1E 1E 1E 1E 1E 1E 1E 1E");
    EXPECT_EQ(Part(hex, 38, 15), "7C 6E 44 00 3F 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(Part(hex, 53, 15), "09 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(Part(hex, 173, 15), "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(SirfOutput, ClockStatus)
{
    EXPECT_EQ(World().Hex(7), "07 05 CB 03 37 F9 80 02 00 01 76 98 00 03 D0 90 20 2F BF 00");
}

TEST(SirfOutput, VisibleList)
{
    EXPECT_EQ(World().Hex(13), "0D 02 05 00 5A 00 2D 7C 00 A5 00 22");
}

TEST(SirfOutput, SmallAnswers)
{
    EXPECT_EQ(ToHex(Acknowledge(166)), "0B A6");
    EXPECT_EQ(ToHex(Refuse(170)), "0C AA");
    EXPECT_EQ(ToHex(OkToSend(true)), "12 01");
    EXPECT_EQ(ToHex(OkToSend(false)), "12 00");
    EXPECT_EQ(ToHex(DevelopmentText("Hi")), "FF 48 69");
}

TEST(SirfOutput, Lengths)
{
    struct Row {
        uint8_t mid;
        size_t length;
    };
    static constexpr Row rows[] = {{2, 41},  {4, 188}, {6, 81},  {7, 20},  {9, 9},   {18, 2},
                                   {19, 65}, {27, 52}, {28, 56}, {29, 26}, {41, 91}, {50, 13}};
    for (const Row& row : rows) {
        const auto payloads = World().Payloads(row.mid);
        ASSERT_FALSE(payloads.empty()) << int{row.mid};
        for (const Bytes& payload : payloads) {
            EXPECT_EQ(payload.size(), row.length) << int{row.mid};
            EXPECT_EQ(payload[0], row.mid);
        }
    }
    EXPECT_TRUE(World().Payloads(1).empty());
}

TEST(SirfOutput, DgpsStatusListsCorrectedSatellites)
{
    World world;
    const std::string hex = world.Hex(27);
    EXPECT_EQ(Part(hex, 0, 3), "1B 01 03"); // SBAS, 3 s old
    EXPECT_EQ(Part(hex, 3, 13), "00 00 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(Part(hex, 16, 1), "05");
    EXPECT_EQ(Part(hex, 19, 3), "00 00 00"); // satellite 30 has no correction
    world.settings.commands[133] = FromHex("85 03 00 04 93 E0 64");
    EXPECT_EQ(Part(world.Hex(27), 0, 7), "1B 03 00 04 93 E0 64");
}

TEST(SirfOutput, MeasurementsComeForEachTrackedSatellite)
{
    const auto payloads = World().Payloads(28);
    ASSERT_EQ(payloads.size(), 3u);
    const std::string hex = ToHex(payloads[0]);
    EXPECT_EQ(Part(hex, 0, 7), "1C 00 20 2F BF 00 05");
    EXPECT_EQ(Part(hex, 7, 8), "41 20 7A C0 00 00 00 00"); // 540000.0
    EXPECT_EQ(Part(hex, 35, 2), "0B B8");                  // tracked for 3000 ms
    EXPECT_EQ(Part(hex, 38, 10), "28 29 2A 2B 2C 2D 2E 2F 30 31");
}

TEST(SirfOutput, CorrectionsComeForEachCorrectedSatellite)
{
    const auto payloads = World().Payloads(29);
    ASSERT_EQ(payloads.size(), 1u);
    const std::string hex = ToHex(payloads[0]);
    EXPECT_EQ(Part(hex, 0, 3), "1D 00 05");
    EXPECT_EQ(Part(hex, 5, 1), "01");
    EXPECT_EQ(Part(hex, 14, 4), "40 40 00 00"); // 3.0 s
}

TEST(SirfOutput, GeodeticNavigation)
{
    World world;
    world.fix.place = {-33.8567844, 151.2152967, 43.21};
    const std::string hex = world.Hex(41);
    EXPECT_EQ(Part(hex, 0, 5), "29 00 00 00 84");           // valid, 3D, differential
    EXPECT_EQ(Part(hex, 5, 6), "05 CB 20 2F BF 00");        // week 1483, 540000000 ms
    EXPECT_EQ(Part(hex, 11, 8), "07 D8 06 0E 05 3B B3 B0"); // 2008-06-14 05:59:46.000
    EXPECT_EQ(Part(hex, 19, 4), "20 00 00 10");             // satellites 30 and 5
    EXPECT_EQ(Part(hex, 23, 8), "EB D1 DD 5C 5A 21 9F 87");
    EXPECT_EQ(Part(hex, 31, 4), "00 00 10 E1");             // 43.21 m
    EXPECT_EQ(Part(hex, 39, 5), "15 03 E8 23 28");          // WGS-84, 10 m/s, 90 degrees
    EXPECT_EQ(Part(hex, 46, 2), "FF 38");                   // sinking at 2 m/s
    EXPECT_EQ(Part(hex, 50, 8), "00 00 01 45 00 00 01 C2"); // 3.25 m, 4.50 m
    EXPECT_EQ(Part(hex, 88, 3), "02 06 00");
}

TEST(SirfOutput, GeodeticNavigationWithoutFixOrTime)
{
    World world;
    world.fix = Fix{};
    world.fix.time = {14000};
    const std::string hex = world.Hex(41);
    EXPECT_EQ(Part(hex, 0, 11), "29 00 01 00 00 00 00 00 00 36 B0");
    EXPECT_EQ(Part(hex, 11, 28), Part(ToHex(Bytes(28)), 0, 28)); // day 0, no position
    EXPECT_EQ(Part(hex, 39, 1), "15");
}

TEST(SirfOutput, DatumMovesThePositionOfMessage41)
{
    World world;
    world.fix.place = {35.0, 135.0, 100.0};
    world.settings.datum = 178;
    const auto payload = world.Payloads(41).at(0);
    EXPECT_EQ(payload[39], 178);
    // Around 35 N 135 E the Tokyo datum's degrees are some 11.7 seconds smaller and 10 seconds larger.
    const double latitude = Get<int32_t>(payload, 23) * 1e-7, longitude = Get<int32_t>(payload, 27) * 1e-7;
    EXPECT_NEAR(latitude, 35.0 - 11.7 / 3600, 0.3 / 3600);
    EXPECT_NEAR(longitude, 135.0 + 10.1 / 3600, 0.3 / 3600);
}

TEST(SirfOutput, SbasStatus)
{
    World world;
    EXPECT_EQ(world.Hex(50), "32 7C 01 1E 00 00 00 00 00 00 00 00 00");
    world.settings.commands[170] = FromHex("AA 7E 00 09 00 00");
    EXPECT_EQ(world.Hex(50), "32 7E 00 1E 09 00 00 00 00 00 00 00 00");
}
