// SPDX-License-Identifier: MIT
// Time, places, sky, and the receiver's way to a fix.

#include "bench.h"
#include "receiver/navigation.h"
#include "temporary_path.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>

using namespace receiver;

namespace
{

const GpsTime Noon = *ParseDate("2008-06-21T12:00:00");

struct Journey {
    explicit Journey(TrackKind kind, Restart restart = Restart::Cold)
    {
        Track track;
        track.kind = kind;
        navigator.emplace(track, Noon, 1);
        if (restart != Restart::Cold) navigator->Remember();
        navigator->Begin(restart, 0);
    }
    const Fix& To(double seconds)
    {
        while (now < seconds) navigator->Update(now += 1.0, settings);
        return navigator->Current();
    }
    void Set(std::string_view payload)
    {
        const Bytes bytes = FromHex(payload);
        settings.commands[bytes[0]] = bytes;
    }

    Settings settings = FactorySettings(Protocol::Nmea, 4800);
    std::optional<Navigator> navigator;
    double now = 0;
};

double Metres(const Geodetic& a, const Geodetic& b)
{
    const Local way = Offset(a, b);
    return std::hypot(way.east, way.north);
}

} // namespace

TEST(GpsTime, DatesAndLeapSeconds)
{
    struct Row {
        const char* date;
        int64_t seconds;
    };
    static constexpr Row rows[] = {
        {"1980-01-06T00:00:00", 0},
        {"1981-07-01T00:00:00", 46828801},   // 542 days and the first leap second
        {"2008-06-21T10:00:00", 898077614},  // 14 of them
        {"2016-12-31T23:59:59", 1167264016}, // 17
        {"2017-01-01T00:00:00", 1167264018}, // 18
        {"2024-02-29T12:00:00", 1393243218},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.date);
        const auto time = ParseDate(row.date);
        ASSERT_TRUE(time);
        EXPECT_EQ(time->ms, row.seconds * 1000);
        const UtcDate utc = ToUtc(*time);
        char text[32];
        std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d", utc.year % 10000, utc.month % 100,
                      utc.day % 100, utc.hour % 100, utc.minute % 100, utc.second % 100);
        EXPECT_STREQ(text, row.date);
    }
    EXPECT_EQ(Noon.Week(), 1484);
    EXPECT_EQ(Noon.TowCs(), 56161400u); // Saturday 12:00:14
}

TEST(GpsTime, WhatIsNoDateIsRefused)
{
    for (const char* text :
         {"", "2008-06-21", "2008-06-31T00:00:00", "2008-13-01T00:00:00", "1979-01-01T00:00:00",
          "2008-06-21 10:00:00", "2008-06-21T24:00:00", "200x-06-21T10:00:00"}) {
        EXPECT_FALSE(ParseDate(text)) << text;
    }
}

TEST(Geodesy, EarthCentredPositions)
{
    const Vector3 equator = ToEcef({0, 90, 0});
    EXPECT_NEAR(equator.y, 6378137.0, 1e-6);
    EXPECT_NEAR(equator.x, 0, 1e-6);
    const Vector3 pole = ToEcef({90, 0, 100});
    EXPECT_NEAR(pole.z, 6356752.3142 + 100, 1e-3);
    const Vector3 v = EnuToEcef({0, 0, 0}, {1, 2, 3});
    EXPECT_NEAR(v.x, 3, 1e-12);
    EXPECT_NEAR(v.y, 1, 1e-12);
    EXPECT_NEAR(v.z, 2, 1e-12);
}

TEST(Geodesy, MovingAndMeasuringAgreeAlsoOverTheDateLine)
{
    for (const double longitude : {8.5, 179.9999, -179.9999}) {
        const Geodetic from{-41.3, longitude, 10};
        const Geodetic to = Moved(from, {123, -456, 7});
        EXPECT_GE(to.longitudeDeg, -180.0);
        EXPECT_LT(to.longitudeDeg, 180.0);
        const Local way = Offset(from, to);
        EXPECT_NEAR(way.east, 123, 1e-6);
        EXPECT_NEAR(way.north, -456, 1e-6);
        EXPECT_NEAR(way.up, 7, 1e-9);
    }
}

TEST(Geodesy, LookingAtAGeostationarySatellite)
{
    // From the equator straight up; from 47.4 N 8.5 E south-west to 15.5 W.
    const double radius = 42164170.0;
    EXPECT_NEAR(Look({0, 0, 0}, {radius, 0, 0}).elevationDeg, 90, 1e-6);
    const LookAngles look =
        Look({47.4, 8.5, 0}, {radius * std::cos(-15.5 * DegToRad), radius * std::sin(-15.5 * DegToRad), 0});
    EXPECT_NEAR(look.azimuthDeg, 211.2, 0.3); // 180 + atan(tan 24.0 / sin 47.4)
    EXPECT_NEAR(look.elevationDeg, 30.5, 1.0);
}

TEST(Track, CircleKeepsItsRadiusAndSpeed)
{
    Track track;
    track.kind = TrackKind::Circle;
    for (double t = 0; t < 200; t += 7.3) {
        const Motion motion = MotionAt(track, t);
        EXPECT_NEAR(Metres(track.origin, motion.place), 200, 0.1);
        EXPECT_NEAR(std::hypot(motion.velocity.east, motion.velocity.north), 10, 0.05);
    }
}

TEST(Track, WalkRestsAtTheCorners)
{
    Track track;
    track.kind = TrackKind::Walk;
    EXPECT_NEAR(std::hypot(MotionAt(track, 50).velocity.east, MotionAt(track, 50).velocity.north), 1.4, 0.01);
    EXPECT_EQ(MotionAt(track, 110).velocity.north, 0); // 150 m are walked after 107 s
    EXPECT_EQ(MotionAt(track, 126).velocity.north, 0);
    EXPECT_NEAR(MotionAt(track, 130).velocity.east, 1.4, 0.01);
}

TEST(Track, EightCrossesItsOriginAndChangesHeight)
{
    Track track;
    track.kind = TrackKind::Eight;
    EXPECT_NEAR(Metres(track.origin, MotionAt(track, 0).place), 0, 1e-6);
    EXPECT_NEAR(Metres(track.origin, MotionAt(track, 120).place), 0, 1e-3);
    EXPECT_NEAR(MotionAt(track, 60).place.heightM, track.origin.heightM + 5, 0.01);
}

TEST(Track, GpxFileWithTimes)
{
    const std::string path = TemporaryPath("receiver_track.gpx");
    std::ofstream(path)
        << "<gpx><wpt lat=\"1\" lon=\"1\"/><trk><trkseg>\n"
           "<trkpt lat=\"47.0\" lon=\"8.0\"><ele>400</ele><time>2008-06-21T10:00:00Z</time></trkpt>\n"
           "<trkpt lon='8.0' lat='47.001'><ele>410.5</ele><time>2008-06-21T10:00:10Z</time></trkpt>\n"
           "</trkseg></trk></gpx>\n";
    std::string error;
    const auto points = ReadGpx(path, 5.0, error);
    std::filesystem::remove(path);
    ASSERT_TRUE(points) << error;
    ASSERT_EQ(points->size(), 2u);
    EXPECT_EQ((*points)[1].seconds, 10.0);
    Track track;
    track.kind = TrackKind::Points;
    track.points = *points;
    const Motion motion = MotionAt(track, 5.0);
    EXPECT_NEAR(motion.place.latitudeDeg, 47.0005, 1e-7);
    EXPECT_NEAR(motion.place.heightM, 405.25, 1e-6);
    EXPECT_NEAR(motion.velocity.north, 11.1, 0.1);
    EXPECT_NEAR(MotionAt(track, 15.0).place.latitudeDeg, 47.0005, 1e-7); // from the start again
}

TEST(Track, GpxFileWithoutTimesIsDrivenAtTheGivenSpeed)
{
    const std::string path = TemporaryPath("receiver_route.gpx");
    std::ofstream(path)
        << "<gpx><rte><rtept lat=\"0\" lon=\"0\"/><rtept lat=\"0\" lon=\"0.001\"/></rte></gpx>";
    std::string error;
    const auto points = ReadGpx(path, 5.0, error);
    std::filesystem::remove(path);
    ASSERT_TRUE(points) << error;
    EXPECT_NEAR((*points)[1].seconds, 111.3 / 5.0, 0.1);
}

TEST(Track, GpxFilesMayHaveCommentsNamespacesAndPoles)
{
    const std::string path = TemporaryPath("receiver_pole.gpx");
    std::ofstream(path)
        << "<?xml version='1.0'?><gpx xmlns='x'><!-- <trkpt lat='1' lon='1'/> --><trk>\n"
           "<name>A &amp; B</name><trkseg>"
           "<trkpt lat='89.99' lon='10'/><trkpt lat='90' lon='10'><ele> 5 </ele></trkpt>"
           "<trkpt lat='90.01' lon='10'/><trkpt lat='89.99' lon='-170'/></trkseg></trk></gpx>";
    std::string error;
    const auto points = ReadGpx(path, 5.0, error);
    std::filesystem::remove(path);
    ASSERT_TRUE(points) << error;
    ASSERT_EQ(points->size(), 3u);
    EXPECT_EQ((*points)[1].place.latitudeDeg, 90.0);
    EXPECT_EQ((*points)[1].place.heightM, 5.0);
    Track track;
    track.kind = TrackKind::Points;
    track.points = *points;
    for (double seconds = 0; seconds < points->back().seconds; seconds += 1.0) {
        const Motion motion = MotionAt(track, seconds);
        EXPECT_GT(motion.place.latitudeDeg, 89.98) << seconds;
        EXPECT_LE(motion.place.latitudeDeg, 90.0) << seconds;
    }
}

TEST(Geodesy, AWayOverThePoleComesDownOnTheOtherSide)
{
    const Geodetic place = Moved({89.9999, 10.0, 0}, {0, 22.34, 0}); // the pole is 11.17 m away
    EXPECT_NEAR(place.latitudeDeg, 89.9999, 1e-6);
    EXPECT_NEAR(place.longitudeDeg, -170.0, 1e-9);
    EXPECT_NEAR(Moved({-89.9999, 10.0, 0}, {0, -22.34, 0}).latitudeDeg, -89.9999, 1e-6);
}

TEST(Track, BadGpxFilesAreNamed)
{
    std::string error;
    EXPECT_FALSE(ReadGpx(testing::TempDir(), 5.0, error));
    EXPECT_EQ(error, testing::TempDir() + ": Is a directory");
    const std::string broken = TemporaryPath("receiver_broken.gpx");
    std::ofstream(broken) << "<gpx><trkpt lat='1' lon='1'></gpx>";
    EXPECT_FALSE(ReadGpx(broken, 5.0, error));
    EXPECT_EQ(error, broken + ": Start-end tags mismatch at byte 30");
    std::filesystem::remove(broken);
    EXPECT_FALSE(ReadGpx("/nowhere/x.gpx", 5.0, error));
    EXPECT_EQ(error, "/nowhere/x.gpx: No such file or directory");
    const std::string path = TemporaryPath("receiver_empty.gpx");
    std::ofstream(path) << "<gpx></gpx>";
    EXPECT_FALSE(ReadGpx(path, 5.0, error));
    EXPECT_EQ(error, path + ": no track point with lat and lon");
    std::filesystem::remove(path);
}

TEST(Sky, EnoughSatellitesEverywhereAndAlways)
{
    for (const double latitude : {-80.0, -35.0, 0.0, 47.0, 75.0}) {
        for (int hour = 0; hour < 24; hour += 3) {
            const auto visible = VisibleSatellites({latitude, 8.5 + hour, 0}, {Noon.ms + hour * 3600000}, 1);
            size_t gps = 0;
            for (const Satellite& satellite : visible) {
                EXPECT_GT(satellite.look.elevationDeg, 0);
                EXPECT_GT(satellite.look.distanceM, 1.9e7);
                EXPECT_LT(satellite.look.distanceM, 4.3e7);
                if (!IsSbas(satellite.sv) && satellite.look.elevationDeg >= 7.5) ++gps;
            }
            EXPECT_GE(gps, 5u) << latitude << " " << hour;
        }
    }
}

TEST(Sky, SatellitesMoveAndComeBackAfterASiderealDay)
{
    const Geodetic here{47.4, 8.5, 0};
    const auto now = VisibleSatellites(here, Noon, 1);
    const auto later = VisibleSatellites(here, {Noon.ms + 3600000}, 1);
    const auto nextDay = VisibleSatellites(here, {Noon.ms + 86164000}, 1);
    ASSERT_EQ(now.size(), nextDay.size());
    for (size_t i = 0; i < now.size(); ++i) {
        EXPECT_EQ(now[i].sv, nextDay[i].sv);
        EXPECT_NEAR(now[i].look.elevationDeg, nextDay[i].look.elevationDeg, 0.1);
    }
    EXPECT_NE(now[0].look.elevationDeg, later[0].look.elevationDeg);
}

TEST(Navigation, ColdStartGoesThroughAllFixTypes)
{
    Journey run(TrackKind::Circle);
    double timeAt = 0, twoDAt = 0, threeDAt = 0, dgpsAt = 0;
    for (int second = 1; second <= 60; ++second) {
        const Fix& fix = run.To(second);
        if (timeAt == 0 && fix.timeKnown) timeAt = second;
        if (twoDAt == 0 && fix.type == FixType::TwoD) twoDAt = second;
        if (threeDAt == 0 && fix.type == FixType::ThreeD) threeDAt = second;
        if (dgpsAt == 0 && fix.differential) dgpsAt = second;
    }
    EXPECT_GT(timeAt, 0);
    EXPECT_GT(twoDAt, timeAt);
    EXPECT_GT(threeDAt, twoDAt);
    EXPECT_GT(dgpsAt, threeDAt);
    EXPECT_LE(dgpsAt, 42);
}

TEST(Navigation, HotStartIsFast)
{
    Journey run(TrackKind::Circle, Restart::Hot);
    EXPECT_TRUE(run.To(1).timeKnown);
    EXPECT_EQ(run.To(8).type, FixType::ThreeD);
}

TEST(Navigation, ARestartWithNothingToKeepIsACold)
{
    Journey run(TrackKind::Circle);
    run.navigator->Begin(Restart::Hot, 0);
    EXPECT_EQ(run.To(12).type, FixType::None);
}

TEST(Navigation, PositionIsNearTheTruth)
{
    Journey run(TrackKind::Circle);
    Track truth;
    double sum = 0, count = 0;
    for (int second = 60; second < 660; ++second) {
        const Fix& fix = run.To(second);
        ASSERT_EQ(fix.type, FixType::ThreeD);
        const double error = Metres(fix.place, MotionAt(truth, second).place);
        EXPECT_LT(error, 5);
        sum += error;
        ++count;
        EXPECT_NEAR(fix.speedMps, 10, 0.5);
        EXPECT_GT(fix.hdop, 0.4);
        EXPECT_LT(fix.hdop, 4);
    }
    EXPECT_GT(sum / count, 0.1); // it does wander
}

TEST(Navigation, StaticNavigationHoldsThePositionToTheMillimetre)
{
    Journey run(TrackKind::Still);
    run.Set("8F 01");
    const Geodetic held = run.To(60).place;
    for (int second = 61; second < 300; ++second) {
        const Fix& fix = run.To(second);
        EXPECT_EQ(fix.place.latitudeDeg, held.latitudeDeg);
        EXPECT_EQ(fix.place.longitudeDeg, held.longitudeDeg);
        EXPECT_EQ(fix.place.heightM, held.heightM);
        EXPECT_EQ(fix.speedMps, 0);
    }
    run.Set("8F 00");
    EXPECT_NE(run.To(310).place.latitudeDeg, held.latitudeDeg);
}

TEST(Navigation, StaticNavigationLetsGoOfAWalker)
{
    Journey run(TrackKind::Walk);
    run.Set("8F 01");
    EXPECT_GT(run.To(60).speedMps, 1.0);
    const Geodetic resting = run.To(112).place;
    EXPECT_EQ(Metres(resting, run.To(125).place), 0);
    EXPECT_GT(Metres(resting, run.To(140).place), 5);
}

TEST(Navigation, ElevationMaskAndPowerMaskTakeSatellitesOut)
{
    Journey run(TrackKind::Circle);
    const int all = run.To(60).used;
    run.Set("8B 00 32 01 90"); // navigation above 40.0 degrees
    for (const Channel& channel : run.To(62).channels) {
        EXPECT_TRUE(!channel.used || channel.look.elevationDeg >= 40);
    }
    EXPECT_LT(run.navigator->Current().used, all);
    run.Set("8B 00 32 00 4B");
    run.Set("8C 1C 28"); // 40 dB-Hz
    EXPECT_LT(run.To(64).used, all);
    run.Set("8C 1C 32"); // 50 dB-Hz: nothing is that strong
    EXPECT_EQ(run.To(100).used, 0);
    EXPECT_EQ(run.navigator->Current().type, FixType::None);
}

TEST(Navigation, DopMaskRefusesABadGeometry)
{
    Journey run(TrackKind::Circle);
    run.Set("89 01 01 01 01"); // PDOP 1 at most
    EXPECT_EQ(run.To(60).type, FixType::None);
    run.Set("89 04 01 01 01"); // disabled
    EXPECT_EQ(run.To(80).type, FixType::ThreeD);
}

TEST(Navigation, AltitudeHoldAlwaysStaysInTwoDimensions)
{
    Journey run(TrackKind::Circle);
    run.Set("88 00 00 00 00 00 01 F4 01 01 00 1E 0F 00"); // always, the user's 500 m
    const Fix& fix = run.To(60);
    EXPECT_EQ(fix.type, FixType::TwoD);
    EXPECT_NEAR(fix.place.heightM - GeoidSeparationM(fix.place), 500, 1e-6);
}

TEST(Navigation, DgpsNeedsASourceAndMayBeForbiddenOrDemanded)
{
    Journey run(TrackKind::Circle);
    EXPECT_TRUE(run.To(60).differential);
    EXPECT_NE(run.navigator->Current().sbasSv, 0);
    run.Set("8A 02 1E"); // never
    EXPECT_FALSE(run.To(61).differential);
    run.Set("8A 00 1E");
    run.Set("85 00 00 00 00 00 00"); // no source: no channel for an SBAS satellite either
    EXPECT_FALSE(run.To(62).differential);
    EXPECT_EQ(run.navigator->Current().sbasSv, 0);
    run.Set("8A 01 1E"); // exclusive without source: no fix
    run.To(63);
    EXPECT_EQ(run.To(100).type, FixType::None);
}

TEST(Navigation, AChosenSbasSatelliteIsTracked)
{
    Journey run(TrackKind::Circle);
    run.Set("AA 7C 01 09 00 00");
    EXPECT_EQ(run.To(60).sbasSv, 124);
    run.Set("AA 8A 01 09 00 00"); // 138 stands over America
    EXPECT_EQ(run.To(61).sbasSv, 0);
}

TEST(Navigation, ATunnelIsDeadReckoningThenNoFixThenAFixAgain)
{
    Journey run(TrackKind::Circle);
    ASSERT_EQ(run.To(60).type, FixType::ThreeD);
    run.navigator->HideSkyUntil(100);
    EXPECT_EQ(run.To(62).type, FixType::DeadReckoning);
    EXPECT_EQ(run.To(90).type, FixType::None); // 15 s of dead reckoning
    EXPECT_TRUE(run.navigator->Current().timeKnown);
    EXPECT_EQ(run.To(115).type, FixType::ThreeD);
}

TEST(Navigation, WithTwoSatellitesOrOneTheFixIsDegradedForAWhile)
{
    Journey run(TrackKind::Circle);
    std::vector<double> heights;
    for (const Channel& channel : run.To(60).channels) {
        if (channel.used) heights.push_back(channel.look.elevationDeg);
    }
    ASSERT_GE(heights.size(), 3u);
    std::ranges::sort(heights, std::greater<>());
    for (const size_t left : {2u, 1u}) {
        const auto mask = static_cast<int16_t>(std::lround((heights[left - 1] + heights[left]) * 5));
        Bytes payload = {139, 0, 0x32};
        Put(payload, mask); // in tenths of a degree
        run.settings.commands[139] = payload;
        EXPECT_EQ(run.To(run.now + 2).type, left == 2 ? FixType::TwoSv : FixType::OneSv);
        EXPECT_EQ(run.navigator->Current().used, left);
    }
    EXPECT_EQ(run.To(95).type, FixType::None); // 30 s of degraded fixes
}

TEST(Navigation, AWarmStartKeepsTheTimeButNotTheEphemeris)
{
    Journey run(TrackKind::Circle);
    run.To(60);
    run.navigator->Begin(Restart::Warm, run.now);
    EXPECT_TRUE(run.To(61).timeKnown);
    EXPECT_EQ(run.To(64).type, FixType::None);
    EXPECT_EQ(run.To(85).type, FixType::ThreeD);
}

TEST(Navigation, EqualSeedsGiveEqualRuns)
{
    Journey a(TrackKind::Eight), b(TrackKind::Eight);
    for (int second = 1; second < 100; second += 10) {
        EXPECT_EQ(a.To(second).place.latitudeDeg, b.To(second).place.latitudeDeg);
        EXPECT_EQ(a.To(second).channels[0].cno, b.To(second).channels[0].cno);
    }
}
