// SPDX-License-Identifier: MIT
// Tracks as texts, typed by hand.

#include "console/track.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

using namespace console;

namespace
{

constexpr double NotKnown = std::numeric_limits<double>::quiet_NaN();
constexpr int64_t Noon = 1214049600; // 2008-06-21T12:00:00Z

// 47.3769 N 8.5417 W, 459.5 m above the sea.
Sample Point(std::optional<int64_t> time)
{
    ResetLatestFix();
    Sample sample = {};
    sample.fix = LatestFix;
    sample.fix.Mode = FixMode::ThreeD;
    sample.fix.LatitudeDegrees = 47.3769;
    sample.fix.LongitudeDegrees = -8.5417;
    sample.fix.AltitudeMslMetres = 459.5;
    sample.fix.SpeedMetresPerSecond = 5.14444444;
    sample.fix.CourseDegrees = 90;
    sample.fix.Hdop = 1.1;
    sample.fix.SatellitesInFix = 9;
    sample.time = time;
    if (time) sample.secondOfDay = static_cast<int32_t>(*time % 86400);
    return sample;
}

Sample BarePoint()
{
    Sample sample = Point({});
    sample.fix.AltitudeMslMetres = sample.fix.SpeedMetresPerSecond = NotKnown;
    sample.fix.CourseDegrees = sample.fix.Hdop = NotKnown;
    sample.fix.SatellitesInFix = -1;
    return sample;
}

std::string Track(const char* format, const std::vector<Sample>& samples)
{
    std::string text;
    const auto writer = MakeTrackWriter(format, [&](std::string_view part) { text += part; });
    Segments segments;
    writer->Begin();
    for (const Sample& sample : samples) writer->Point(sample, segments.BeginsWith(sample));
    writer->End();
    return text;
}

constexpr const char* GpxHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<gpx version=\"1.1\" creator=\"toravanectl 2.20\" xmlns=\"http://www.topografix.com/GPX/1/1\""
    " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
    " xsi:schemaLocation=\"http://www.topografix.com/GPX/1/1 http://www.topografix.com/GPX/1/1/gpx.xsd\">\n"
    "<trk>\n";

constexpr const char* KmlHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<kml xmlns=\"http://www.opengis.net/kml/2.2\">\n<Document>\n<name>Track</name>\n";

} // namespace

TEST(Track, Gpx)
{
    EXPECT_EQ(Track("gpx", {Point(Noon), Point(Noon + 1), Point(Noon + 7)}),
              std::string(GpxHead) +
                  "<trkseg>\n"
                  "<trkpt lat=\"47.3769\" lon=\"-8.5417\"><ele>459.5</ele><time>2008-06-21T12:00:00Z</time>"
                  "<sat>9</sat><hdop>1.1</hdop></trkpt>\n"
                  "<trkpt lat=\"47.3769\" lon=\"-8.5417\"><ele>459.5</ele><time>2008-06-21T12:00:01Z</time>"
                  "<sat>9</sat><hdop>1.1</hdop></trkpt>\n"
                  "</trkseg>\n<trkseg>\n"
                  "<trkpt lat=\"47.3769\" lon=\"-8.5417\"><ele>459.5</ele><time>2008-06-21T12:00:07Z</time>"
                  "<sat>9</sat><hdop>1.1</hdop></trkpt>\n"
                  "</trkseg>\n</trk>\n</gpx>\n");
    EXPECT_EQ(Track("gpx", {BarePoint()}), std::string(GpxHead) +
                                               "<trkseg>\n<trkpt lat=\"47.3769\" lon=\"-8.5417\"></trkpt>\n"
                                               "</trkseg>\n</trk>\n</gpx>\n");
    EXPECT_EQ(Track("gpx", {}), std::string(GpxHead) + "</trk>\n</gpx>\n");
}

TEST(Track, Kml)
{
    EXPECT_EQ(Track("kml", {Point(Noon), Point(Noon + 1), Point(Noon + 7)}),
              std::string(KmlHead) +
                  "<Placemark><name>2008-06-21T12:00:00Z</name><TimeSpan><begin>2008-06-21T12:00:00Z</"
                  "begin></TimeSpan>"
                  "<LineString><coordinates>\n-8.5417,47.3769,459.5\n-8.5417,47.3769,459.5\n"
                  "</coordinates></LineString></Placemark>\n"
                  "<Placemark><name>2008-06-21T12:00:07Z</name><TimeSpan><begin>2008-06-21T12:00:07Z</"
                  "begin></TimeSpan>"
                  "<Point><coordinates>-8.5417,47.3769,459.5</coordinates></Point></Placemark>\n"
                  "</Document>\n</kml>\n");
    EXPECT_EQ(Track("kml", {BarePoint(), BarePoint()}),
              std::string(KmlHead) +
                  "<Placemark><name>Track</name><LineString><coordinates>\n-8.5417,47.3769\n"
                  "-8.5417,47.3769\n</coordinates></LineString></Placemark>\n"
                  "</Document>\n</kml>\n");
}

TEST(Track, Csv)
{
    EXPECT_EQ(Track("csv", {Point(Noon), BarePoint()}),
              "time,latitude,longitude,altitude,speed,course,hdop,satellites\n"
              "2008-06-21T12:00:00Z,47.3769,-8.5417,459.5,5.144,90,1.1,9\n"
              ",47.3769,-8.5417,,,,,\n");
}

TEST(Track, Json)
{
    EXPECT_EQ(
        Track("json", {Point(Noon), BarePoint()}),
        "{\"class\":\"TPV\",\"time\":\"2008-06-21T12:00:00Z\",\"mode\":3,\"lat\":47.3769,\"lon\":-8.5417,"
        "\"altMSL\":459.5,\"speed\":5.144,\"track\":90.0,\"hdop\":1.1}\n"
        "{\"class\":\"TPV\",\"mode\":3,\"lat\":47.3769,\"lon\":-8.5417}\n");
    Sample sample = Point(Noon);
    sample.rawTime = Noon - 7168 * 86400;
    sample.fix.Mode = FixMode::None;
    EXPECT_EQ(TpvLine(sample), "{\"class\":\"TPV\",\"time\":\"2008-06-21T12:00:00Z\",\"rawTime\":"
                               "\"1988-11-05T12:00:00Z\",\"mode\":1}\n");
    for (const FixMode mode : {FixMode::TwoD, FixMode::ThreeD}) { // the position could not be read
        sample = BarePoint();
        sample.fix.Mode = mode;
        sample.fix.LatitudeDegrees = NotKnown;
        EXPECT_EQ(TpvLine(sample), "{\"class\":\"TPV\",\"mode\":0}\n");
    }
    sample = Point(Noon);
    sample.fix.AltitudeEllipsoidMetres = 507.7;
    sample.fix.GeoidSeparationMetres = 48.2;
    sample.fix.Vdop = 1.8;
    sample.fix.HorizontalErrorMetres = 4.56;
    sample.fix.VerticalErrorMetres = 7.89;
    EXPECT_NE(
        TpvLine(sample).find("\"altHAE\":507.7,\"geoidSep\":48.2,\"speed\":5.144,\"track\":90.0,\"hdop\":1.1,"
                             "\"vdop\":1.8,\"eph\":4.56,\"epv\":7.89}"),
        std::string::npos);
}

TEST(Track, JsonOfSatellites)
{
    ResetLatestFix();
    EXPECT_EQ(SkyLine(LatestFix), "{\"class\":\"SKY\",\"satellites\":[]}\n");
    ReportSatellite({6, 69, 120, 44});
    ReportSatellite({37, 8, 180, 0});
    EXPECT_EQ(SkyLine(LatestFix),
              "{\"class\":\"SKY\",\"satellites\":[{\"PRN\":6,\"ss\":44,\"el\":69,\"az\":120},"
              "{\"PRN\":37,\"ss\":0,\"el\":8,\"az\":180}]}\n");
    ResetLatestFix();
}

TEST(Track, NumbersAreRoundedAndShort)
{
    EXPECT_EQ(Number(47.376900000000003, 8), "47.3769");
    EXPECT_EQ(Number(-0.0004, 3), "0");
    EXPECT_EQ(Number(1e-7, 8), "0.0000001");
    EXPECT_EQ(Number(1e300, 3), "1000000000000000");
    EXPECT_EQ(Number(-1e300, 3), "-1000000000000000");
}

TEST(Track, SegmentsBeginAfterGapsAndWhenTimeGoesBack)
{
    Segments segments;
    EXPECT_TRUE(segments.BeginsWith(Point(Noon)));
    EXPECT_FALSE(segments.BeginsWith(Point(Noon)));
    EXPECT_FALSE(segments.BeginsWith(Point(Noon + 5)));
    EXPECT_TRUE(segments.BeginsWith(Point(Noon + 11)));
    EXPECT_TRUE(segments.BeginsWith(Point(Noon + 10)));
    EXPECT_TRUE(segments.BeginsWith(Point(Noon + 10 + 86400)));
    EXPECT_FALSE(segments.BeginsWith(BarePoint()));

    Segments undated;
    const auto at = [](int32_t secondOfDay) {
        Sample sample = BarePoint();
        sample.secondOfDay = secondOfDay;
        return sample;
    };
    EXPECT_TRUE(undated.BeginsWith(at(86398)));
    EXPECT_FALSE(undated.BeginsWith(at(1))); // midnight
    EXPECT_TRUE(undated.BeginsWith(at(7)));
    EXPECT_TRUE(undated.BeginsWith(at(6)));
}

TEST(Track, NoOtherFormat)
{
    EXPECT_EQ(MakeTrackWriter("nmea", {}), nullptr);
}
