// SPDX-License-Identifier: MIT
#include "nmea/sentence_decoder.h"

#include <cmath>

#include "graph/channels.h"
#include "graph/recorder.h"
#include "link/link_state.h"
#include "link/write_queue.h"
#include "nmea/receiver_messages.h"
#include "nmea/sentence_assembler.h"
#include "resources/resource_ids.h"
#include "sky/sky_objects.h"
#include "tests/unit/support/product_test.h"

namespace
{

double Value(Channel channel)
{
    return GraphChannel[channel].Value;
}

uint32_t Samples()
{
    return GraphSampleCount.load();
}

// ---- First recognition --------------------------------------------------------------------------------

class FirstSentence : public ProductTest
{
};

constexpr char HotStart[] = "$PSRF101,0,0,0,0,0,0,12,1*15\r\n";

TEST_F(FirstSentence, SendsTheHotStartExactlyOnce)
{
    HeadlessPort& port = OpenPort();
    FeedSentence("GPXYZ");
    FeedSentence("GPXYZ");
    ASSERT_EQ(port.writes.size(), 1u);
    EXPECT_EQ(port.writes[0], HotStart);
}

TEST_F(FirstSentence, LeavesTheWriteQueueAlone)
{
    HeadlessPort& port = OpenPort();
    PortWrite('q');
    FeedSentence("GPXYZ");
    EXPECT_EQ(port.sent, HotStart);
    PortWriteBuffer();
    EXPECT_EQ(port.sent, std::string(HotStart) + "q");
}

TEST_F(FirstSentence, SendsNoHotStartWhileACommandLineIsCarriedOut)
{
    HeadlessPort& port = OpenPort();
    CommandLinePending.store(1);
    CommPortIdx.store(3);
    BaudrateIdx.store(2);
    FeedSentence("GPXYZ");
    EXPECT_EQ(port.sent, "");
    EXPECT_EQ(ProtocolMode(), ProtocolNmea);
    EXPECT_EQ(Setting(L"CommPortIdx"), 3);
    EXPECT_EQ(Setting(L"BaudrateIdx"), 2);
}

TEST_F(FirstSentence, StoresTheWorkingPortAndRate)
{
    CommPortIdx.store(7);
    BaudrateIdx.store(5);
    FeedSentence("GPXYZ");
    EXPECT_EQ(Setting(L"CommPortIdx"), 7);
    EXPECT_EQ(Setting(L"BaudrateIdx"), 5);
    CommPortIdx.store(8);
    FeedSentence("GPXYZ");
    EXPECT_EQ(Setting(L"CommPortIdx"), 7); // once, until the next reset
    ResetProtocolMode();
    FeedSentence("GPXYZ");
    EXPECT_EQ(Setting(L"CommPortIdx"), 8);
}

TEST_F(FirstSentence, EmptiesThePageButForItsHint)
{
    SetTextLine(5, L"left over");
    FeedSentence("GPXYZ");
    for (uint32_t i = 0; i < LastTextLine; ++i) EXPECT_EQ(Line(i), L"") << i;
    EXPECT_EQ(Line(LastTextLine), L" Use joystick to toggle graph/text.");
}

TEST_F(FirstSentence, DoesNotChangeTheOtherProtocolsFlag)
{
    SirfRecognised.store(1);
    FeedSentence("GPXYZ");
    EXPECT_EQ(ProtocolMode(), 3);
}

TEST_F(FirstSentence, DuringASearchIsRecognisedButNotDecoded)
{
    HeadlessPort& port = OpenPort();
    SearchInProgress.store(1);
    FeedSentence("GPGGA,120000,4916.4500,N,00830.0000,E,1,05,1.5,100.0,M,47.5,M,,");
    EXPECT_EQ(ProtocolMode(), ProtocolNmea);
    EXPECT_EQ(NmeaMessageCount.load(), 1u);
    EXPECT_EQ(port.sent, HotStart);
    EXPECT_EQ(Samples(), 0u);
    EXPECT_EQ(Line(0), L"");
}

TEST_F(FirstSentence, WhileThePortIsClosedIsDropped)
{
    LinkClosing.store(1);
    FeedSentence("GPXYZ");
    EXPECT_EQ(ProtocolMode(), ProtocolNone);
    EXPECT_EQ(Setting(L"CommPortIdx"), -12345);
}

TEST_F(FirstSentence, FailedHotStartIsPostedNotShown)
{
    HeadlessPort& port = OpenPort();
    HeadlessFailCall("WriteFile", 1, ERROR_GEN_FAILURE);
    UserInterfaceThread.store(GetCurrentThreadId() + 1); // as if on the reader thread
    FeedSentence("GPXYZ");
    EXPECT_EQ(port.sent, "");
    EXPECT_TRUE(HeadlessBoxes().empty());
    EXPECT_EQ(ProtocolMode(), ProtocolNmea);
}

// ---- Sentences ----------------------------------------------------------------------------------------

class SentenceDecoder : public ProductTest
{
protected:
    SentenceDecoder() { RecogniseNmea(); }
};

constexpr char Gga[] = "GPGGA,123456.789,4916.4500,N,12311.1200,W,1,08,1.2,100.0,M,47.5,M,,0000";

TEST_F(SentenceDecoder, GgaFillsPageChannelsAndTime)
{
    FeedSentence(Gga);
    EXPECT_EQ(Line(0), L" UTC: 0000-00-00 12:34:56");
    EXPECT_EQ(Line(4), L" Fix: 8 SVs                      ");
    EXPECT_EQ(Line(5), L" HDOP: 1.2  ");
    EXPECT_EQ(Line(6), L" Latitude: 49.2741667 \u00B0N      ");
    EXPECT_EQ(Line(7), L" Longitude: 123.1853333 \u00B0W        ");
    EXPECT_EQ(Line(8), L" Northing: 5485446.50 m             ");
    EXPECT_EQ(Line(11), L" Altitude MSL: 100.00 m      ");
    EXPECT_EQ(Line(12), L" Geoid Separation: 47.50 m      ");
    EXPECT_EQ(FixTime.wHour, 12);
    EXPECT_EQ(FixTime.wMinute, 34);
    EXPECT_EQ(FixTime.wSecond, 56);
    EXPECT_EQ(FixTime.wMilliseconds, 0);
    EXPECT_EQ(Value(ChannelSvsInFix), 8);
    EXPECT_EQ(Value(ChannelHdop), static_cast<double>(1.2f));
    EXPECT_EQ(Value(ChannelNorthing), 5485446.5);
    EXPECT_EQ(Value(ChannelAltitude), 52.5); // altitude less geoid separation
    EXPECT_EQ(Samples(), 1u);
}

TEST_F(SentenceDecoder, GgaTakesFifteenFieldsOnly)
{
    FeedSentence("GPGGA,123456,4916.4500,N,12311.1200,W,1,08,1.2,100.0,M,47.5,M,");
    FeedSentence("GPGGA,123456,4916.4500,N,12311.1200,W,1,08,1.2,100.0,M,47.5,M,,,");
    EXPECT_EQ(Samples(), 0u);
    for (uint32_t i = 0; i < LastTextLine; ++i) EXPECT_EQ(Line(i), L"") << i;
    EXPECT_EQ(FixTime.wHour, 0);
    EXPECT_EQ(NmeaMessageCount.load(), 2u);
}

TEST_F(SentenceDecoder, SouthIsNegativeAndWestCountsOnTo360)
{
    FeedSentence("GPGLL,4916.4500,S,12311.1200,W,120000,A");
    EXPECT_EQ(Line(6), L" Latitude: 49.2741667 \u00B0S      ");
    EXPECT_EQ(Line(8), L" Northing: -5485446.50 m             ");
    EXPECT_EQ(Value(ChannelNorthing), -5485446.5);
    // 360 - 123.185333... = 236.814666...; cos(-49.2741666...) = 0.652451...; times 111325
    EXPECT_NEAR(Value(ChannelEasting), 17200536.0, 1.0);
    EXPECT_EQ(Value(ChannelEasting), static_cast<double>(static_cast<float>(Value(ChannelEasting))));
}

TEST_F(SentenceDecoder, EasternLongitudeStaysAsReceived)
{
    FeedSentence("GPGLL,0000.0000,N,18000.0000,E,120000,A");
    EXPECT_EQ(Value(ChannelEasting), 20038500.0);
    EXPECT_EQ(Line(7), L" Longitude: 180.0000000 \u00B0E        ");
    EXPECT_EQ(Line(9), L" Easting: 20038500.00 m             ");
}

struct PositionRow {
    const char *name, *latitude, *longitude;
    bool latitudeTaken, longitudeTaken;
};

TEST_F(SentenceDecoder, PositionsOfTheWrongShapeLeaveTheOldOnes)
{
    constexpr PositionRow Rows[] = {
        {"shortest", "4916.4500", "12311.1200", true, true},
        {"one character short", "4916.450", "12311.120", false, false},
        {"seven characters", "4916.45", "12311.1", false, false},
        {"point too early", "491.64500", "1231.11200", false, false},
        {"point too late", "49164.500", "123111.200", false, false},
        {"empty", "", "", false, false},
        {"long", "4916.45001234567", "12311.12001234567", true, true},
    };
    for (const PositionRow& row : Rows) {
        FeedSentence("GPGLL,0100.0000,N,00200.0000,E,120000,A");
        SetTextLine(6, L"");
        SetTextLine(7, L"");
        const double northing = Value(ChannelNorthing), easting = Value(ChannelEasting);
        FeedSentence(std::string("GPGLL,") + row.latitude + ",N," + row.longitude + ",E,120000,A");
        EXPECT_EQ(Line(6).empty(), !row.latitudeTaken) << row.name;
        EXPECT_EQ(Line(7).empty(), !row.longitudeTaken) << row.name;
        EXPECT_EQ(Value(ChannelNorthing) == northing, !row.latitudeTaken) << row.name;
        EXPECT_EQ(Value(ChannelEasting) == easting, !row.longitudeTaken) << row.name;
    }
}

TEST_F(SentenceDecoder, ExponentsInPositionsAreNotRead)
{
    FeedSentence("GPGLL,0099.9e300,N,00099.9e300,E,120000,A");
    EXPECT_EQ(Line(6), L" Latitude: 1.6650000 \u00B0N      ");
    EXPECT_EQ(Line(7), L" Longitude: 1.6650000 \u00B0E        ");
}

TEST_F(SentenceDecoder, EmptyHemisphereEndsTheLineAfterTheDegreeSign)
{
    FeedSentence("GPGLL,4916.4500,,12311.1200,,120000,A");
    EXPECT_EQ(Line(6), L" Latitude: 49.2741667 \u00B0");
    EXPECT_EQ(Value(ChannelNorthing), 5485446.5); // neither south nor west
}

TEST_F(SentenceDecoder, EmptyTimeCutsTheFieldBehindIt)
{
    FeedSentence("GPGGA,,4916.4500,N,12311.1200,W,1,08,1.2,100.0,M,47.5,M,,0000");
    EXPECT_EQ(Line(0), L" UTC: 0000-00-00 00:91:06");
    EXPECT_EQ(Line(6), L""); // the beginning of the latitude is lost
    EXPECT_NE(Line(7), L"");
    EXPECT_EQ(Samples(), 1u);
}

TEST_F(SentenceDecoder, TimeAtTheVeryEndOfTheLongestSentenceStaysInsideItsBuffer)
{
    const std::string body = "GPGLL," + std::string(244, '0') + ",,,,,";
    ASSERT_EQ(body.size(), 255u);
    FeedSentence(body); // the time's field begins at the last character but one
    EXPECT_EQ(NmeaMessageCount.load(), 1u);
    EXPECT_EQ(Line(0), L" UTC: 0000-00-00 00:00:00");
}

TEST_F(SentenceDecoder, DateAtTheVeryEndOfTheLongestSentenceStaysInsideItsBuffer)
{
    const std::string body = "GPRMC,," + std::string(239, '0') + ",,,,,,,,,";
    ASSERT_EQ(body.size(), 255u);
    FeedSentence(body);
    EXPECT_EQ(NmeaMessageCount.load(), 1u);
    EXPECT_EQ(FixTime.wYear, 2000);
}

struct FixRow {
    const char* quality;
    const wchar_t* line;
};

TEST_F(SentenceDecoder, FixQualities)
{
    constexpr FixRow Rows[] = {
        {"0", L" Fix: -                           "},     {"1", L" Fix: 8 SVs                      "},
        {"2", L" Fix: 8 SVs DGPS Age 3 s        "},       {"6", L" Fix: Dead Reckoning              "},
        {"4", L"                                      "}, {"-1", L"                                      "},
        {"x", L" Fix: -                           "},
    };
    for (const FixRow& row : Rows) {
        FeedSentence(std::string("GPGGA,120000,,,,,") + row.quality + ",8,,,,,,3,");
        EXPECT_EQ(Line(4), row.line) << row.quality;
    }
    FeedSentence("GPGGA,120000,,,,,,8,,,,,,3,");
    EXPECT_EQ(Line(4), Rows[6].line); // an empty quality keeps the line
}

TEST_F(SentenceDecoder, EmptyGgaFieldsLeaveTheirValues)
{
    FeedSentence(Gga);
    FeedSentence("GPGGA,123457,,,,,,,,,,,,,");
    EXPECT_EQ(Line(0), L" UTC: 0000-00-00 12:34:57");
    EXPECT_EQ(Line(5), L" HDOP: 1.2  ");
    EXPECT_EQ(Line(11), L" Altitude MSL: 100.00 m      ");
    EXPECT_EQ(Value(ChannelSvsInFix), 8);
    EXPECT_EQ(Value(ChannelAltitude), 52.5);
    EXPECT_EQ(Samples(), 2u);
}

TEST_F(SentenceDecoder, AltitudeWithoutSeparationIsPlottedAsReceived)
{
    FeedSentence("GPGGA,123457,,,,,,,,321.5,M,,M,,");
    EXPECT_EQ(Value(ChannelAltitude), 321.5);
    FeedSentence("GPGGA,123457,,,,,,,,,M,20.5,M,,");
    EXPECT_EQ(Value(ChannelAltitude), 321.5);
    EXPECT_EQ(Line(12), L" Geoid Separation: 20.50 m      ");
}

TEST_F(SentenceDecoder, HdopOfTwoDigitsBeforeThePoint)
{
    FeedSentence("GPGGA,123457,,,,,,,12.5,,,,,,");
    EXPECT_EQ(Line(5), L" HDOP: 12.5  ");
}

TEST_F(SentenceDecoder, FieldWithoutADigitIsZeroWithoutASign)
{
    FeedSentence("GPGGA,123457,,,,,1,07,-,-,M,-.,M,,");
    EXPECT_EQ(Line(5), L" HDOP: 0.0  ");
    EXPECT_EQ(Line(11), L" Altitude MSL: 0.00 m      ");
    EXPECT_FALSE(std::signbit(Value(ChannelAltitude)));
}

TEST_F(SentenceDecoder, GllTakesSevenOrEightFields)
{
    FeedSentence("GPGLL,4916.4500,N,12311.1200,W,101112");
    EXPECT_EQ(Line(0), L"");
    FeedSentence("GPGLL,4916.4500,N,12311.1200,W,101112,A");
    EXPECT_EQ(Line(0), L" UTC: 0000-00-00 10:11:12");
    FeedSentence("GPGLL,4916.4500,N,12311.1200,W,101113,V,N");
    EXPECT_EQ(Line(0), L" UTC: 0000-00-00 10:11:13"); // the status is ignored
    FeedSentence("GPGLL,4916.4500,N,12311.1200,W,101114,A,A,");
    EXPECT_EQ(Line(0), L" UTC: 0000-00-00 10:11:13");
    EXPECT_EQ(Samples(), 0u);
}

TEST_F(SentenceDecoder, GsaShowsHdopAndVdop)
{
    FeedSentence("GPGSA,A,3,01,02,03,04,05,06,07,08,09,10,11,12,2.5,1.5,2.0");
    EXPECT_EQ(Line(5), L" HDOP: 1.5  ");
    EXPECT_EQ(Line(10), L" VDOP: 2.0  ");
    EXPECT_EQ(Value(ChannelHdop), 1.5);
    EXPECT_EQ(Value(ChannelVdop), 2.0);
    FeedSentence("GPGSA,A,3,01,02,03,04,05,06,07,08,09,10,11,12,2.5,,");
    EXPECT_EQ(Value(ChannelVdop), 2.0);
    FeedSentence("GPGSA,A,3,01,02,03,04,05,06,07,08,09,10,11,2.5,9.5,9.0");
    EXPECT_EQ(Value(ChannelVdop), 2.0);
    FeedSentence("GPGSA,A,3,01,02,03,04,05,06,07,08,09,10,11,12,2.5,9.5,9.0,1");
    EXPECT_EQ(Value(ChannelVdop), 2.0);
}

TEST_F(SentenceDecoder, RmcSetsDateTimeSpeedAndCourse)
{
    FeedSentence("GPRMC,235959.9,V,4916.4500,N,12311.1200,W,10,123.45,311299,,,N");
    EXPECT_EQ(Line(0), L" UTC: 2099-12-31 23:59:59");
    EXPECT_NEAR(Value(ChannelSpeed), 5.147777, 1e-6);
    EXPECT_EQ(Line(13), L" Speed: 5.15 m/s        ");
    EXPECT_EQ(Line(14), L" Course: 123.45 \u00B0        ");
    EXPECT_EQ(Value(ChannelCourse), static_cast<double>(123.45f));
    EXPECT_EQ(Value(ChannelNorthing), 5485446.5); // a void fix counts like a valid one
    EXPECT_EQ(Samples(), 0u);
}

TEST_F(SentenceDecoder, RmcTakesTwelveOrThirteenFields)
{
    FeedSentence("GPRMC,101112,A,,,,,10,20,010203,");
    EXPECT_EQ(Line(0), L"");
    FeedSentence("GPRMC,101112,A,,,,,10,20,010203,,");
    EXPECT_EQ(Line(0), L" UTC: 2003-02-01 10:11:12");
    FeedSentence("GPRMC,101113,A,,,,,10,20,010203,,,A");
    EXPECT_EQ(Line(0), L" UTC: 2003-02-01 10:11:13");
    FeedSentence("GPRMC,101114,A,,,,,10,20,010203,,,A,V");
    EXPECT_EQ(Line(0), L" UTC: 2003-02-01 10:11:13");
}

TEST_F(SentenceDecoder, VtgTakesNineOrTenFields)
{
    FeedSentence("GPVTG,90.5,T,,M,20,N,,K");
    EXPECT_EQ(Line(14), L" Course: 90.50 \u00B0        ");
    EXPECT_NEAR(Value(ChannelSpeed), 10.295555, 1e-6);
    FeedSentence("GPVTG,91.5,T,,M,20,N,,K,A");
    EXPECT_EQ(Line(14), L" Course: 91.50 \u00B0        ");
    FeedSentence("GPVTG,92.5,T,,M,20,N,");
    FeedSentence("GPVTG,92.5,T,,M,20,N,,K,A,");
    EXPECT_EQ(Line(14), L" Course: 91.50 \u00B0        ");
}

TEST_F(SentenceDecoder, EmptySpeedAndCourseLeaveTheirValues)
{
    FeedSentence("GPVTG,90.5,T,,M,20,N,,K");
    FeedSentence("GPVTG,,T,,M,,N,,K");
    FeedSentence("GPRMC,101112,A,,,,,,,010203,,");
    EXPECT_EQ(Line(13), L" Speed: 10.30 m/s        ");
    EXPECT_EQ(Line(14), L" Course: 90.50 \u00B0        ");
    EXPECT_EQ(Value(ChannelCourse), 90.5);
    EXPECT_NEAR(Value(ChannelSpeed), 10.295555, 1e-6);
}

// ---- Repaint ------------------------------------------------------------------------------------------

struct RepaintRow {
    const char* sentence;
    bool repaints;
};
constexpr RepaintRow RepaintRows[] = {
    {Gga, true},
    {"GPGLL,4916.4500,N,12311.1200,W,183725,A", true},
    {"GPGSA,A,3,01,02,03,04,05,06,07,08,09,10,11,12,2.5,1.5,2.0", true},
    {"GPGSV,2,1,05,01,10,100,41,02,20,200,42,03,30,300,43,04,40,040,44", false},
    {"GPGSV,2,2,05,05,50,050,45", true},
    {"GPRMC,101112,A,,,,,10,20,010203,,", true},
    {"GPVTG,90.5,T,,M,20,N,,K", true},
    {"GPMSS,55,27,318.0,100,", false},
    {"GPZDA,181813,14,10,2003,00,00", false},
    {"PSRF150,1", false},
    {"PSRFTXT,Version: 1", false},
    {"GPXYZ,1,2", false},
    {"GPGGA,123456,4916.4500,N", false}, // too short
};

TEST_F(SentenceDecoder, RepaintsWithoutErasingUnlessADialogIsOpen)
{
    const HWND window = MakeMainWindow();
    for (const DialogKind dialog : {DialogKind::None, DialogKind::About})
        for (const RepaintRow& row : RepaintRows) {
            ActiveDialogKind.store(dialog);
            HeadlessClearInvalidations(window);
            FeedSentence(row.sentence);
            const bool repaints = row.repaints && dialog == DialogKind::None;
            EXPECT_EQ(HeadlessInvalidations(window), std::vector<bool>(repaints, false)) << row.sentence;
        }
    ActiveDialogKind.store(DialogKind::None);
}

// ---- Satellites in view -------------------------------------------------------------------------------

TEST_F(SentenceDecoder, GsvGroupIsShownWithItsLastMessage)
{
    FeedSentence("GPGSV,3,1,10,01,10,100,41,02,20,200,42,03,30,300,43,04,40,040,44");
    FeedSentence("GPGSV,3,2,10,05,50,050,45,06,60,060,46,07,70,070,47,08,80,080,48");
    EXPECT_EQ(Line(1), L"");
    FeedSentence("GPGSV,3,3,10,09,09,009,49,10,10,010,50,11,11,011,51,12,12,012,52");
    EXPECT_EQ(Line(1), L" Sv:01 02 03 04 05 06 07 08 09 10 00 00 ");
    EXPECT_EQ(Line(2), L" Cn:41 42 43 44 45 46 47 48 49 50 00 00 ");
    EXPECT_EQ(Line(3), L" El: 10 20 30 40 50 60 70 80 09 10 11 12"); // elevations of cleared slots stay
}

TEST_F(SentenceDecoder, GsvTakesOneToFourSatellites)
{
    FeedSentence("GPGSV,1,1,01,33,45,120,39");
    EXPECT_EQ(Line(1), L" Sv:33 00 00 00 00 00 00 00 00 00 00 00 ");
    FeedSentence("GPGSV,1,1,02,33,45,120,39,34,46,121,40");
    EXPECT_EQ(Line(2), L" Cn:39 40 00 00 00 00 00 00 00 00 00 00 ");
    FeedSentence("GPGSV,1,1,03,33,45,120,39,34,46,121,40,35,47,122,41");
    EXPECT_EQ(Line(3), L" El: 45 46 47 00 00 00 00 00 00 00 00 00");
    for (const char* refused : {"GPGSV,1,1,04,33,45,120", "GPGSV,1,1,04,33,45,120,39,1", "GPGSV,1,1,00"})
        FeedSentence(refused);
    EXPECT_EQ(Line(1), L" Sv:33 34 35 00 00 00 00 00 00 00 00 00 ");
}

TEST_F(SentenceDecoder, GsvPrnOfThreeDigitsTouchesTheNextColumn)
{
    FeedSentence("GPGSV,1,1,02,120,45,120,39,07,46,121,40");
    EXPECT_EQ(Line(1), L" Sv:12007 00 00 00 00 00 00 00 00 00 00 ");
    FeedSentence("GPGSV,3,3,12,99,10,1,1,02,20,2,2,03,30,3,3,100,40,4,4");
    EXPECT_EQ(Line(1).substr(28), L"99 02 03 100");
}

TEST_F(SentenceDecoder, GsvValuesWiderThanTheirColumnAreOverwrittenByTheNext)
{
    FeedSentence("GPGSV,1,1,02,01,100,120,139,02,46,121,40");
    EXPECT_EQ(Line(2), L" Cn:13940 00 00 00 00 00 00 00 00 00 00 ");
    EXPECT_EQ(Line(3), L" El: 10 46 00 00 00 00 00 00 00 00 00 00");
}

TEST_F(SentenceDecoder, GsvLastSlotMayRunOver)
{
    FeedSentence("GPGSV,3,3,12,01,10,1,1,02,20,2,2,03,30,3,3,255,255,4,255");
    EXPECT_EQ(Line(1).substr(28), L"01 02 03 255");
    EXPECT_EQ(Line(2).substr(37), L"255 ");
    EXPECT_EQ(Line(3).substr(37), L" 255");
}

TEST_F(SentenceDecoder, GsvNumbersKeepTheirLowEightBits)
{
    FeedSentence("GPGSV,1,257,01,257,300,120,299"); // number 257 is 1; its first digit does not end the group
    FeedSentence("GPGSV,2,2,05,,,,");
    EXPECT_EQ(Line(1), L" Sv:01 00 00 00 00 00 00 00 00 00 00 00 ");
    EXPECT_EQ(Line(2), L" Cn:43 00 00 00 00 00 00 00 00 00 00 00 ");
    EXPECT_EQ(Line(3), L" El: 44 00 00 00 00 00 00 00 00 00 00 00");
}

TEST_F(SentenceDecoder, GsvMessageNumbersWithoutASlotAreNotStored)
{
    for (const char* number : {"0", "4", "9", "255", "-1"}) {
        FeedSentence(std::string("GPGSV,") + number + "," + number + ",12,77,77,077,77,78,78,078,78");
        EXPECT_EQ(Line(1), L" Sv:00 00 00 00 00 00 00 00 00 00 00 00 ") << number; // but they end the group
    }
}

TEST_F(SentenceDecoder, GsvInViewOutOfRange)
{
    FeedSentence("GPGSV,1,1,99,11,10,1,1,12,20,2,2");
    EXPECT_EQ(Line(1), L" Sv:11 12 00 00 00 00 00 00 00 00 00 00 ");
    FeedSentence("GPGSV,1,1,-5,11,10,1,1,12,20,2,2");
    EXPECT_EQ(Line(1), L" Sv:00 00 00 00 00 00 00 00 00 00 00 00 ");
}

TEST_F(SentenceDecoder, GsvLastMessageIsToldByFirstCharacters)
{
    FeedSentence("GPGSV,12,1,04,11,10,1,1"); // "12" and "1" begin alike
    EXPECT_EQ(Line(1), L" Sv:11 00 00 00 00 00 00 00 00 00 00 00 ");
    SetTextLine(1, L"");
    FeedSentence("GPGSV,,,04,11,10,1,1"); // so do two empty fields
    EXPECT_EQ(Line(1), L" Sv:11 00 00 00 00 00 00 00 00 00 00 00 ");
}

// ---- Fields -------------------------------------------------------------------------------------------

TEST_F(SentenceDecoder, TwentiethCommaEndsTheTable)
{
    // 25 commas: the 20 fields of a full GSV message, then text that is no field.
    FeedSentence("GPGSV,1,1,04,01,10,100,41,02,20,200,42,03,30,300,43,04,40,040,44,x,x,x,x,x,x");
    EXPECT_EQ(Line(1), L" Sv:01 02 03 04 00 00 00 00 00 00 00 00 ");
}

TEST_F(SentenceDecoder, NamesCompareWhole)
{
    FeedSentence("GPGG,123456,4916.4500,N,12311.1200,W,1,08,1.2,100.0,M,47.5,M,,0000");
    FeedSentence("GPGGAX,123456,4916.4500,N,12311.1200,W,1,08,1.2,100.0,M,47.5,M,,0000");
    FeedSentence("GNGGA,123456,4916.4500,N,12311.1200,W,1,08,1.2,100.0,M,47.5,M,,0000");
    EXPECT_EQ(Samples(), 0u);
    EXPECT_STREQ(ReceiverMessagesText, L"GPGG\r\nGPGGAX\r\nGNGGA\r\n");
}

TEST_F(SentenceDecoder, RecognisedButUnusedSentencesLeaveNoText)
{
    for (const char* body : {"GPMSS,55,27,318.0,100,", "GPZDA,181813,14,10,2003,00,00", "PSRF150,1"})
        FeedSentence(body);
    EXPECT_STREQ(ReceiverMessagesText, L"");
    EXPECT_EQ(NmeaMessageCount.load(), 3u);
}

TEST_F(SentenceDecoder, DoublesAndTheirPublishedFloatsAgree)
{
    FeedSentence(Gga);
    EXPECT_EQ(GraphChannel[ChannelNorthing].PublishedValue.load(), 5485446.5f);
    EXPECT_EQ(GraphChannel[ChannelAltitude].PublishedValue.load(), 52.5f);
}

// ---- Sky ----------------------------------------------------------------------------------------------

TEST_F(SentenceDecoder, SkyGetsTheLowEightBitsOfTheYear)
{
    PublishDialog(DialogKind::Sbas, nullptr);
    FeedSentence("GPRMC,120000,A,4916.4500,N,12311.1200,E,,,210608,,");
    const double elevation = SkyObjects[SunRow].elevation;
    UpdateSkyObjects({216, 6, 0, 21, 12, 0, 0, 0}, 49 + 16.45 / 60,
                     123 + 11.12 / 60); // 2008 is 7D8 in hexadecimal
    EXPECT_DOUBLE_EQ(SkyObjects[SunRow].elevation, elevation);
    UpdateSkyObjects({2008, 6, 0, 21, 12, 0, 0, 0}, 49 + 16.45 / 60, 123 + 11.12 / 60);
    EXPECT_GT(std::fabs(SkyObjects[SunRow].elevation - elevation), 0.1);
}

TEST_F(SentenceDecoder, SkyStaysWithoutALatitudeOrItsDialog)
{
    PublishDialog(DialogKind::Sbas, nullptr);
    FeedSentence("GPRMC,120000,A,,N,12311.1200,E,,,210608,,");
    EXPECT_EQ(SkyObjects[SunRow].elevation, -90);
    PublishDialog(DialogKind::GraphOptions, nullptr);
    FeedSentence("GPRMC,120000,A,4916.4500,N,12311.1200,E,,,210608,,");
    EXPECT_EQ(SkyObjects[SunRow].elevation, -90);
    PublishDialog(DialogKind::Sbas, nullptr);
    FeedSentence("GPRMC,120000,V,4916.4500,N,12311.1200,E,,,210608,,"); // a void one counts
    EXPECT_NE(SkyObjects[SunRow].elevation, -90);
}

} // namespace
