// SPDX-License-Identifier: MIT
#include "resources/resource_ids.h"
#include "sirf/message_decoder.h"

#include "graph/channels.h"
#include "graph/recorder.h"
#include "link/link_state.h"
#include "sirf/frame_assembler.h"
#include "sirf/frame_sender.h"
#include "tests/unit/sirf/sample_messages.h"

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

class FirstFrame : public SirfTest
{
};

TEST_F(FirstFrame, StoresTheWorkingPortAndRate)
{
    CommPortIdx.store(7);
    BaudrateIdx.store(5);
    Decode(Payload("07"));
    EXPECT_EQ(Setting(L"CommPortIdx"), 7);
    EXPECT_EQ(Setting(L"BaudrateIdx"), 5);
    CommPortIdx.store(8);
    Decode(Payload("07"));
    EXPECT_EQ(Setting(L"CommPortIdx"), 7); // once, until the next reset
    ResetProtocolMode();
    Decode(Payload("07"));
    EXPECT_EQ(Setting(L"CommPortIdx"), 8);
}

TEST_F(FirstFrame, EmptiesThePageButForItsHint)
{
    for (uint32_t i = 0; i < TextLineCount; ++i) SetTextLine(i, L"old");
    Decode(Payload("07"));
    for (uint32_t i = 0; i < LastTextLine; ++i) EXPECT_EQ(Line(i), L"");
    EXPECT_EQ(Line(18), L" Use joystick to toggle graph/text.");
    SetTextLine(3, L"new");
    Decode(Payload("07"));
    EXPECT_EQ(Line(3), L"new");
}

TEST_F(FirstFrame, NamesTheProtocolInTheCommunicationDialog)
{
    OpenDialog(DialogKind::Communication, {.texts = {CONTROL_COM_PROTOCOL}});
    Decode(Payload("07"));
    EXPECT_EQ(Text(CONTROL_COM_PROTOCOL), L"SiRF");
}

TEST_F(FirstFrame, NamesNoProtocolWhenBothHaveBeenRecognised)
{
    OpenDialog(DialogKind::Communication, {.texts = {CONTROL_COM_PROTOCOL}});
    NmeaRecognised.store(1);
    Decode(Payload("07"));
    EXPECT_EQ(Text(CONTROL_COM_PROTOCOL), L"-");
    EXPECT_EQ(ProtocolMode(), 3);
}

TEST_F(FirstFrame, LeavesOtherDialogsAlone)
{
    OpenDialog(DialogKind::Sbas, {.texts = {CONTROL_COM_PROTOCOL}});
    Decode(Payload("07"));
    EXPECT_EQ(Text(CONTROL_COM_PROTOCOL), L"?");
}

TEST_F(FirstFrame, StoresTheRateChosenInSetSerialPort)
{
    OpenDialog(DialogKind::SetSerialPort, {.lists = {{CONTROL_TO_SIRF_BAUDRATE, 6}}});
    Decode(Payload("07"));
    EXPECT_EQ(Setting(L"SirfBaudrateIdx"), 5);
}

TEST_F(FirstFrame, StoresNoRateWithoutASelectionOrOutsideTheTable)
{
    OpenDialog(DialogKind::SetSerialPort,
               {.lists = {{CONTROL_TO_SIRF_BAUDRATE, 9}}}); // index 8: no such rate
    Decode(Payload("07"));
    EXPECT_EQ(Setting(L"SirfBaudrateIdx"), -12345);
    OpenDialog(DialogKind::SetSerialPort, {.lists = {{CONTROL_TO_SIRF_BAUDRATE, 0}}}); // nothing selected
    ResetProtocolMode();
    Decode(Payload("07"));
    EXPECT_EQ(Setting(L"SirfBaudrateIdx"), -12345);
}

TEST_F(FirstFrame, StoresNoRateFromAnotherDialog)
{
    OpenDialog(DialogKind::SwitchToNmea, {.lists = {{CONTROL_TO_SIRF_BAUDRATE, 3}}});
    Decode(Payload("07"));
    EXPECT_EQ(Setting(L"SirfBaudrateIdx"), -12345);
}

TEST_F(FirstFrame, SendsNothing)
{
    HeadlessPort& port = OpenPort();
    Decode(Payload("07"));
    EXPECT_EQ(port.sent, "");
}

TEST_F(FirstFrame, CountsInASearchButNothingIsDecoded)
{
    SearchInProgress.store(1);
    Decode(NavigationMessage());
    Decode(Payload("EE 07"));
    EXPECT_EQ(ProtocolMode(), ProtocolSirf);
    EXPECT_EQ(Line(5), L"");
    EXPECT_EQ(Samples(), 0u);
    EXPECT_EQ(WrapEE.load(), 0);
}

TEST_F(FirstFrame, NothingOfItWhileThePortIsBeingClosed)
{
    LinkClosing.store(1);
    Decode(Payload("07"));
    EXPECT_EQ(ProtocolMode(), ProtocolNone);
    EXPECT_EQ(Line(0), L" Menu Com. Open a port.");
}

TEST_F(FirstFrame, IsDecodedItself)
{
    Decode(NavigationMessage());
    EXPECT_EQ(Line(5), L" Fix: 3D Kalman Filter, 9 SVs" + std::wstring(38, L' '));
}

// ---- Every message one byte short ---------------------------------------------------------------------

class ShortMessages : public SirfTest
{
};

TEST_F(ShortMessages, NavigationOf40Bytes)
{
    Decode(NavigationMessage().Shorten());
    EXPECT_EQ(Line(5), L"");
    EXPECT_EQ(Samples(), 0u);
    EXPECT_EQ(NavigationRecord[0], 0);
    Decode(NavigationMessage());
    EXPECT_NE(Line(5), L"");
    EXPECT_EQ(Samples(), 1u);
}

TEST_F(ShortMessages, TrackingOf187Bytes)
{
    Decode(Payload(4, 188).Shorten());
    EXPECT_EQ(Line(1), L"");
    Decode(Payload(4, 188));
    EXPECT_EQ(Line(1), L" Sv: ");
}

TEST_F(ShortMessages, GeodeticOf90Bytes)
{
    Decode(GeodeticMessage().Shorten());
    EXPECT_EQ(Line(0), L"");
    EXPECT_EQ(GeodeticRecord[0], 0);
    Decode(GeodeticMessage());
    EXPECT_NE(Line(0), L"");
}

TEST_F(ShortMessages, RefusalOf1Byte)
{
    MakeMainWindow();
    Decode(Payload("0C"));
    HeadlessPumpMessages();
    EXPECT_TRUE(HeadlessBoxes().empty());
    EXPECT_EQ(RefusalRecord[0], 0);
}

TEST_F(ShortMessages, LongerOnesAreDecodedByTheirBeginning)
{
    Payload longer = NavigationMessage();
    longer.bytes.resize(60, 0xFF);
    Decode(longer);
    EXPECT_EQ(Line(5), L" Fix: 3D Kalman Filter, 9 SVs" + std::wstring(38, L' '));
}

TEST_F(ShortMessages, UnknownOnesDoNothing)
{
    MakeMainWindow();
    HeadlessClearInvalidations(MainWindow.load());
    for (const int id : {0, 1, 3, 5, 7, 8, 9, 10, 11, 13, 20, 28, 30, 42, 50, 129, 200})
        Decode(Payload(static_cast<uint8_t>(id), 200));
    HeadlessPumpMessages();
    for (uint32_t i = 0; i < LastTextLine; ++i) EXPECT_EQ(Line(i), L"");
    EXPECT_TRUE(HeadlessBoxes().empty());
    EXPECT_TRUE(HeadlessInvalidations(MainWindow.load()).empty());
}

// ---- Message id 2 -------------------------------------------------------------------------------------

class MeasuredNavigation : public SirfTest
{
};

TEST_F(MeasuredNavigation, FillsItsLinesAndNoOthers)
{
    Decode(NavigationMessage());
    EXPECT_EQ(Line(0), L" UTC: 0000-00-00 07:08:09");
    EXPECT_EQ(Line(5), L" Fix: 3D Kalman Filter, 9 SVs" + std::wstring(38, L' '));
    EXPECT_EQ(Line(6), L" HDOP: 1.4  ");
    EXPECT_EQ(Line(8), L" Latitude: 59.2000147 \u00B0N      ");
    EXPECT_EQ(Line(9), L" Longitude: 13.1000058 \u00B0E        ");
    EXPECT_EQ(Line(10), L" Northing: 6590441.64 m             ");
    EXPECT_EQ(Line(11), L" Easting: 746741.56 m             ");
    EXPECT_EQ(Line(13), L" Altitude Ellipsoid: 97.31 m      ");
    for (const uint32_t empty : {1, 2, 3, 4, 7, 12, 14, 15, 16, 17}) EXPECT_EQ(Line(empty), L"") << empty;
}

TEST_F(MeasuredNavigation, SouthAndWest)
{
    Decode(NavigationMessage().At(1, "FFB92379 FFD90B29 FFCA068C"));
    EXPECT_EQ(Line(8), L" Latitude: 33.9000029 \u00B0S      ");
    EXPECT_EQ(Line(9), L" Longitude: 151.1999987 \u00B0W        ");
    EXPECT_EQ(Line(10), L" Northing: -3773917.83 m             ");
    EXPECT_EQ(Line(11), L" Easting: -13971048.39 m             ");
    EXPECT_EQ(Line(13), L" Altitude Ellipsoid: 40.13 m      ");
}

TEST_F(MeasuredNavigation, OnTheEquatorAtGreenwich)
{
    Decode(Payload(2, 41).At(1, "006152A6")); // X 6378150 m
    EXPECT_EQ(Line(8), L" Latitude: 0.0000000 \u00B0N      ");
    EXPECT_EQ(Line(9), L" Longitude: 0.0000000 \u00B0E        ");
    EXPECT_EQ(Line(13), L" Altitude Ellipsoid: 13.00 m      ");
}

TEST_F(MeasuredNavigation, SetsItsChannelsAndSamples)
{
    Decode(NavigationMessage());
    EXPECT_EQ(Value(ChannelSvsInFix), 9.0);
    EXPECT_EQ(Value(ChannelHdop), 7 * 0.2);
    EXPECT_NEAR(Value(ChannelNorthing), 6590441.6409, 0.001);
    EXPECT_NEAR(Value(ChannelEasting), 746741.5613, 0.001);
    EXPECT_NEAR(Value(ChannelAltitude), 97.3094, 0.001);
    for (const Channel other : {ChannelEhpe, ChannelVdop, ChannelEvpe, ChannelSpeed, ChannelCourse})
        EXPECT_EQ(Value(other), 0.0);
    EXPECT_EQ(Samples(), 1u);
}

TEST_F(MeasuredNavigation, Hdop51)
{
    Decode(NavigationMessage().At(20, "FF"));
    EXPECT_EQ(Line(6), L" HDOP: 51.0  ");
    EXPECT_EQ(Value(ChannelHdop), 255 * 0.2);
}

TEST_F(MeasuredNavigation, TimeOfWeekIsCutDownToTheTimeOfDay)
{
    FixTime = {2031, 7, 0, 9, 1, 1, 1, 0};
    Decode(NavigationMessage().At(24, "00000000"));
    EXPECT_EQ(Line(0), L" UTC: 2031-07-09 00:00:00"); // the date stays
    Decode(NavigationMessage().At(24, "0083D5FF"));   // 23:59:59.99 of the first day
    EXPECT_EQ(Line(0), L" UTC: 2031-07-09 23:59:59");
    Decode(NavigationMessage().At(24, "FFFFFFFF")); // 497 d 02:27:52.95
    EXPECT_EQ(Line(0), L" UTC: 2031-07-09 02:27:52");
    EXPECT_EQ(FixTime.wHour, 2);
    EXPECT_EQ(FixTime.wMinute, 27);
    EXPECT_EQ(FixTime.wSecond, 52);
    EXPECT_EQ(FixTime.wYear, 2031);
}

TEST_F(MeasuredNavigation, Mode84hIsADifferential3DFix)
{
    Decode(NavigationMessage().At(19, "84"));
    EXPECT_EQ(Line(5), L" Fix: 3D Kalman Filter, 9 SVs, DGPS" + std::wstring(32, L' '));
}

TEST_F(MeasuredNavigation, OnlyThreeBitsOfTheModeAreTheFixType)
{
    Decode(NavigationMessage().At(19, "7E").At(28, "07"));
    EXPECT_EQ(Line(5), L" Fix: 3-D Least-Squares, 7 SVs" + std::wstring(38, L' '));
}

TEST_F(MeasuredNavigation, KeepsTheMessage)
{
    Decode(NavigationMessage().At(40, "5A"));
    EXPECT_EQ(NavigationRecord[0], 2);
    EXPECT_EQ(NavigationRecord[40], 0x5A);
}

TEST_F(MeasuredNavigation, AfterAGeodeticMessageOnlyTheFixLineAndItsSatellites)
{
    Decode(NavigationMessage());
    Decode(GeodeticMessage());
    const std::wstring utc = Line(0), hdop = Line(6), latitude = Line(8), altitude = Line(13);
    const double northing = Value(ChannelNorthing), height = Value(ChannelAltitude);
    Decode(NavigationMessage().At(19, "83").At(28, "05").At(20, "14"));
    EXPECT_EQ(Line(5), L" Fix: 2D Kalman Filter, 5 SVs, DGPS" + std::wstring(32, L' '));
    EXPECT_EQ(Value(ChannelSvsInFix), 5.0);
    EXPECT_EQ(Line(0), utc);
    EXPECT_EQ(Line(6), hdop);
    EXPECT_EQ(Line(8), latitude);
    EXPECT_EQ(Line(13), altitude);
    EXPECT_EQ(Value(ChannelNorthing), northing);
    EXPECT_EQ(Value(ChannelAltitude), height);
    EXPECT_EQ(Samples(), 2u);
    ResetProtocolMode(); // nor after a reset
    Decode(NavigationMessage());
    EXPECT_EQ(Line(8), L"");
    EXPECT_EQ(Samples(), 2u);
}

TEST_F(MeasuredNavigation, RepaintsWithoutErasingUnlessADialogIsOpen)
{
    const HWND window = MakeMainWindow();
    HeadlessClearInvalidations(window);
    Decode(NavigationMessage());
    EXPECT_EQ(HeadlessInvalidations(window), std::vector<bool>{false});
    Decode(GeodeticMessage());
    Decode(NavigationMessage()); // the same message again shows nothing new
    EXPECT_EQ(HeadlessInvalidations(window).size(), 2u);
    Decode(NavigationMessage().At(28, "03")); // its fix line alone counts, too
    EXPECT_EQ(HeadlessInvalidations(window).size(), 3u);
    OpenDialog(DialogKind::About, {});
    Decode(NavigationMessage());
    Decode(GeodeticMessage());
    EXPECT_EQ(HeadlessInvalidations(window).size(), 3u);
}

// ---- Message id 41 ------------------------------------------------------------------------------------

class GeodeticNavigation : public SirfTest
{
};

TEST_F(GeodeticNavigation, FillsItsLines)
{
    Decode(GeodeticMessage());
    EXPECT_EQ(Line(0), L" UTC: 2024-02-29 23:59:58");
    EXPECT_EQ(Line(6), L" HDOP: 1.8  ");
    EXPECT_EQ(Line(7), L" EstimatedHorizontalPrecisionError: 4.56 m          ");
    EXPECT_EQ(Line(8), L" Latitude: 52.1234567 \u00B0N      ");
    EXPECT_EQ(Line(9), L" Longitude: 4.5678901 \u00B0W        ");
    EXPECT_EQ(Line(10), L" Northing: 5802643.82 m             ");
    EXPECT_EQ(Line(11), L" Easting: -312212.23 m             ");
    EXPECT_EQ(Line(12), L" EstimatedVerticalPrecisionError: 7.89 m          ");
    EXPECT_EQ(Line(13), L" Altitude Ellipsoid: 123.45 m      ");
    EXPECT_EQ(Line(14), L" Altitude MSL: -6.78 m      ");
    EXPECT_EQ(Line(15), L" Speed: 12.34 m/s        ");
    EXPECT_EQ(Line(16), L" Course: 359.99 \u00B0        ");
    EXPECT_EQ(Line(17), L" Map Datum: WGS-84");
    for (const uint32_t empty : {1, 2, 3, 4, 5}) EXPECT_EQ(Line(empty), L"") << empty;
}

TEST_F(GeodeticNavigation, SetsItsChannelsAndSamples)
{
    Decode(GeodeticMessage());
    EXPECT_EQ(Value(ChannelHdop), 9 * 0.2);
    EXPECT_EQ(Value(ChannelEhpe), 456 * 0.01);
    EXPECT_EQ(Value(ChannelEvpe), 789 * 0.01);
    EXPECT_NEAR(Value(ChannelNorthing), 5802643.8171275, 1e-6);
    EXPECT_NEAR(Value(ChannelEasting), -312212.2315505875, 1e-6);
    EXPECT_EQ(Value(ChannelAltitude), -678 * 0.01);
    EXPECT_EQ(Value(ChannelSpeed), 1234 * 0.01);
    EXPECT_EQ(Value(ChannelCourse), 35999 * 0.01);
    EXPECT_EQ(Value(ChannelSvsInFix), 0.0);
    EXPECT_EQ(Value(ChannelVdop), 0.0);
    EXPECT_EQ(Samples(), 1u);
}

TEST_F(GeodeticNavigation, SouthAndEast)
{
    Decode(GeodeticMessage().At(23, "EBCED988 5A20CBCD"));
    EXPECT_EQ(Line(8), L" Latitude: 33.8765432 \u00B0S      ");
    EXPECT_EQ(Line(9), L" Longitude: 151.2098765 \u00B0E        ");
    EXPECT_NEAR(Value(ChannelNorthing), -3771306.17174, 1e-6);
    EXPECT_NEAR(Value(ChannelEasting), 13975804.162280297, 1e-6);
}

TEST_F(GeodeticNavigation, LargestMagnitudes)
{
    Decode(GeodeticMessage()
               .At(23, "80000000 80000000 80000000 80000000")
               .At(50, "FFFFFFFF FFFFFFFF")
               .At(89, "FF"));
    EXPECT_EQ(Line(8), L" Latitude: 214.7483648 \u00B0S      ");
    EXPECT_EQ(Line(9), L" Longitude: 214.7483648 \u00B0W        ");
    EXPECT_EQ(Line(13), L" Altitude Ellipsoid: -21474836.00 m      "); // single precision
    EXPECT_EQ(Line(14), L" Altitude MSL: -21474836.48 m      ");
    EXPECT_EQ(Line(7), L" EstimatedHorizontalPrecisionError: 42949672.95 m          ");
    EXPECT_EQ(Line(12), L" EstimatedVerticalPrecisionError: 42949672.95 m          ");
    EXPECT_EQ(Line(6), L" HDOP: 51.0  ");
}

TEST_F(GeodeticNavigation, SpeedAndCourseOfAllOnes)
{
    Decode(GeodeticMessage().At(40, "FFFF FFFF"));
    EXPECT_EQ(Line(15), L" Speed: 655.35 m/s        ");
    EXPECT_EQ(Line(16), L" Course: 655.35 \u00B0        ");
}

TEST_F(GeodeticNavigation, WithoutSpeedOrCourseTheOldOnesStay)
{
    Decode(GeodeticMessage());
    Decode(GeodeticMessage().At(1, "8000").At(3, "1204").At(40, "0001 0002"));
    EXPECT_EQ(Line(15), L" Speed: 12.34 m/s        ");
    EXPECT_EQ(Line(16), L" Course: 359.99 \u00B0        ");
    EXPECT_EQ(Value(ChannelSpeed), 1234 * 0.01);
    EXPECT_EQ(Value(ChannelCourse), 35999 * 0.01);
    Decode(GeodeticMessage().At(1, "7FFF").At(3, "1204").At(40, "0001 0002")); // course alone
    EXPECT_EQ(Line(15), L" Speed: 12.34 m/s        ");
    EXPECT_EQ(Line(16), L" Course: 0.02 \u00B0        ");
    Decode(GeodeticMessage().At(1, "8000").At(3, "EFFF").At(40, "0001 0003")); // speed alone
    EXPECT_EQ(Line(15), L" Speed: 0.01 m/s        ");
    EXPECT_EQ(Line(16), L" Course: 0.02 \u00B0        ");
}

TEST_F(GeodeticNavigation, LinesBeforeTheFirstSpeedAndCourseStayEmpty)
{
    Decode(GeodeticMessage().At(1, "8000").At(3, "1204"));
    EXPECT_EQ(Line(15), L"");
    EXPECT_EQ(Line(16), L"");
}

TEST_F(GeodeticNavigation, Day0TakesTheTimeOfWeekLess14Seconds)
{
    FixTime = {2031, 7, 0, 9, 0, 0, 0, 0};
    Decode(GeodeticMessage().At(14, "00").At(7, "000036B0")); // 14000 ms
    EXPECT_EQ(Line(0), L" UTC: 2031-07-09 00:00:00");
    Decode(GeodeticMessage().At(14, "00")); // 345678901 ms: 4 d 00:01:18.901
    EXPECT_EQ(Line(0), L" UTC: 2031-07-09 00:01:04");
    Decode(
        GeodeticMessage().At(14, "00").At(7, "00001388")); // 5000 ms: still the last day of the week before
    EXPECT_EQ(Line(0), L" UTC: 2031-07-09 23:59:51");
    Decode(GeodeticMessage().At(14, "00").At(7, "0526922F")); // 23:59:59.999 + 14 s
    EXPECT_EQ(Line(0), L" UTC: 2031-07-09 23:59:59");
    Decode(GeodeticMessage().At(14, "00").At(7, "FFFFFFFF")); // no time of a week, but a time
    EXPECT_EQ(Line(0), L" UTC: 2031-07-09 17:02:33");
    EXPECT_EQ(FixTime.wHour, 17);
    EXPECT_EQ(FixTime.wYear, 2031);
    EXPECT_EQ(FixTime.wDay, 9);
}

TEST_F(GeodeticNavigation, AnyOtherDayStoresTheDate)
{
    Decode(GeodeticMessage());
    EXPECT_EQ(FixTime.wYear, 2024);
    EXPECT_EQ(FixTime.wMonth, 2);
    EXPECT_EQ(FixTime.wDay, 29);
    EXPECT_EQ(FixTime.wHour, 23);
    EXPECT_EQ(FixTime.wMinute, 59);
    EXPECT_EQ(FixTime.wSecond, 58);
    EXPECT_EQ(FixTime.wDayOfWeek, 0);
    EXPECT_EQ(FixTime.wMilliseconds, 0);
    Decode(GeodeticMessage().At(11, "FFFF FF FF FF FF FFFF"));
    EXPECT_EQ(Line(0), L" UTC: 65535-255-255 255:255:65");
}

TEST_F(GeodeticNavigation, FillsThePageWhileTheSkyIsShownToo)
{
    OpenDialog(DialogKind::Sbas, {});
    Decode(GeodeticMessage().At(3, "0000")); // no fix
    EXPECT_EQ(Line(8), L" Latitude: 52.1234567 \u00B0N      ");
    Decode(GeodeticMessage().At(14, "00")); // no date
    Decode(GeodeticMessage());
    EXPECT_EQ(Line(0), L" UTC: 2024-02-29 23:59:58");
    EXPECT_EQ(Line(17), L" Map Datum: WGS-84");
    EXPECT_EQ(Samples(), 3u);
}

TEST_F(GeodeticNavigation, KeepsTheMessage)
{
    Decode(GeodeticMessage().At(90, "5A"));
    EXPECT_EQ(GeodeticRecord[0], 41);
    EXPECT_EQ(GeodeticRecord[90], 0x5A);
}

// ---- Message id 4 -------------------------------------------------------------------------------------

class MeasuredTracking : public SirfTest
{
};

TEST_F(MeasuredTracking, ChannelsStand15BytesApart)
{
    Decode(Payload(4, 188)
               .At(7, "03")
               .At(8, "07 78 5A 00BF 28292A2B2C28292A2B2C")
               .At(23, "1F F0 B4 00FF 32323232323232323232") // state 00FF: no C/No
               .At(38, "78 01 03 012D 0909090909090909090A"));
    EXPECT_EQ(Line(1), L" Sv:07 31 120    ");
    EXPECT_EQ(Line(2), L" Cn:42 00 09 ");
    EXPECT_EQ(Line(3), L" St:BF FF 2D    ");
    EXPECT_EQ(Line(4), L" El: 45 90 01    ");
}

TEST_F(MeasuredTracking, MeanIsTheSumOfTenDividedByTen)
{
    Decode(Payload(4, 188).At(7, "01").At(8, "01 00 00 0001 FFFFFFFFFFFFFFFFFFFF"));
    EXPECT_EQ(Line(2), L" Cn:255 ");
    Decode(Payload(4, 188).At(7, "01").At(8, "01 00 00 0001 09000000000000000000"));
    EXPECT_EQ(Line(2), L" Cn:00 ");
    Decode(Payload(4, 188).At(7, "01").At(8, "01 00 00 0001 0000000000000000000A"));
    EXPECT_EQ(Line(2), L" Cn:01 ");
}

TEST_F(MeasuredTracking, OnlyTheExactState00FFHasNoCarrierToNoise)
{
    Decode(Payload(4, 188)
               .At(7, "02")
               .At(8, "01 00 00 01FF 14141414141414141414")
               .At(23, "02 00 00 00FF 14141414141414141414"));
    EXPECT_EQ(Line(2), L" Cn:20 00 ");
    EXPECT_EQ(Line(3), L" St:FF FF    ");
}

TEST_F(MeasuredTracking, CountZeroLeavesTheHeaders)
{
    Decode(Payload(4, 188).At(7, "02").At(8, "01 00 00 01FF 14"));
    Decode(Payload(4, 188));
    EXPECT_EQ(Line(1), L" Sv: ");
    EXPECT_EQ(Line(2), L" Cn: ");
    EXPECT_EQ(Line(3), L" St: ");
    EXPECT_EQ(Line(4), L" El: ");
}

TEST_F(MeasuredTracking, NoMoreThanTwelveChannelsWhateverTheCount)
{
    Payload message(4, 188);
    for (size_t i = 0; i < 12; ++i) message.At(8 + 15 * i, "0B 00 28 0001");
    for (const char* count : {"0C", "0D", "FF"}) {
        Decode(message.At(7, count));
        EXPECT_EQ(Line(1), L" Sv:11 11 11 11 11 11 11 11 11 11 11 11    ") << count;
        EXPECT_EQ(Line(4), L" El: 20 20 20 20 20 20 20 20 20 20 20 20    ") << count;
    }
}

TEST_F(MeasuredTracking, NeitherSamplesNorRepaints)
{
    const HWND window = MakeMainWindow();
    HeadlessClearInvalidations(window);
    Decode(Payload(4, 188).At(7, "01"));
    EXPECT_EQ(Samples(), 0u);
    EXPECT_TRUE(HeadlessInvalidations(window).empty());
}

TEST_F(MeasuredTracking, KeepsTheMessage)
{
    Decode(Payload(4, 188).At(187, "5A"));
    EXPECT_EQ(TrackingRecord[0], 4);
    EXPECT_EQ(TrackingRecord[187], 0x5A);
}

// ---- Message id 12 ------------------------------------------------------------------------------------

class Refusals : public SirfTest
{
protected:
    Refusals() { MakeMainWindow(); }

    // The only box that the refusal causes.
    std::wstring BoxOf(std::string_view payload)
    {
        HeadlessClearBoxes();
        Decode(Payload(payload));
        EXPECT_TRUE(HeadlessBoxes().empty()); // not on the thread that decodes
        HeadlessPumpMessages();
        if (HeadlessBoxes().empty()) return L"";
        EXPECT_EQ(HeadlessBoxes().size(), 1u);
        const HeadlessBox& box = HeadlessBoxes()[0];
        EXPECT_EQ(box.caption, L"NAcknowledgment");
        EXPECT_EQ(box.owner, MainWindow.load());
        EXPECT_EQ(box.type & 0xF0, MB_ICONINFORMATION);
        return box.text;
    }
};

TEST_F(Refusals, OfACommand)
{
    EXPECT_EQ(BoxOf("0C 80"), L"Command 128\r\rCommand or parameter not accepted.");
    EXPECT_EQ(BoxOf("0C 00"), L"Command 0\r\rCommand or parameter not accepted.");
    EXPECT_EQ(BoxOf("0C FF 01"), L"Command 255\r\rCommand or parameter not accepted.");
}

TEST_F(Refusals, OfSettingSbas)
{
    PendingPollId.store(170);
    EXPECT_EQ(
        BoxOf("0C AA"),
        L"Set SBAS parameters not accepted. A likely reason is that it is not supported on XTrac firmware.");
    EXPECT_EQ(PendingPollId.load(), 170); // the poll is still open
}

TEST_F(Refusals, OfGettingSbas)
{
    PendingPollId.store(170);
    EXPECT_EQ(BoxOf("0C A8"),
              L"Get SBAS parameters not accepted. A likely reason is that it is not supported on "
              L"XTrac or GSW3 firmware.");
    EXPECT_EQ(PendingPollId.load(), 0);
}

TEST_F(Refusals, OfAPoll)
{
    PendingPollId.store(143);
    EXPECT_EQ(BoxOf("0C A8"), L"Command 168 with parameter 143 not accepted.");
    EXPECT_EQ(BoxOf("0C A8"), L""); // the user has asked once
}

TEST_F(Refusals, OfAPollThatNobodyAskedForShowsNothing)
{
    EXPECT_EQ(BoxOf("0C A8"), L"");
}

TEST_F(Refusals, PollIsTheOneAtTheTimeOfDecoding)
{
    PendingPollId.store(136);
    Decode(Payload("0C A8"));
    PendingPollId.store(137);
    HeadlessPumpMessages();
    ASSERT_EQ(HeadlessBoxes().size(), 1u);
    EXPECT_EQ(HeadlessBoxes()[0].text, L"Command 168 with parameter 136 not accepted.");
    EXPECT_EQ(PendingPollId.load(), 137);
}

TEST_F(Refusals, KeepsTheMessage)
{
    Decode(Payload("0C 85"));
    EXPECT_EQ(RefusalRecord[0], 12);
    EXPECT_EQ(RefusalRecord[1], 0x85);
}

TEST_F(Refusals, AcknowledgmentShowsNothing)
{
    EXPECT_EQ(BoxOf("0B 80"), L"");
}

TEST_F(Refusals, OneBoxAtATimeEightWaitInTheirOrder)
{
    HeadlessDuringBox([] {
        for (uint8_t command = 1; command <= 12; ++command)
            Decode(Payload(12, 2).At(1, std::string{"0123456789ABC"[0], "0123456789ABC"[command]}));
        HeadlessPumpMessages();
        EXPECT_EQ(HeadlessBoxes().size(), 1u);
    });
    Decode(Payload("0C C8"));
    HeadlessPumpMessages();
    ASSERT_EQ(HeadlessBoxes().size(), 9u);
    EXPECT_EQ(HeadlessBoxes()[0].text, L"Command 200\r\rCommand or parameter not accepted.");
    EXPECT_EQ(HeadlessBoxes()[1].text, L"Command 1\r\rCommand or parameter not accepted.");
    EXPECT_EQ(HeadlessBoxes()[8].text, L"Command 8\r\rCommand or parameter not accepted.");
}

// ---- Message ids 225 and 255 --------------------------------------------------------------------------

class TextRecords : public SirfTest
{
};

TEST_F(TextRecords, DevelopmentTextIsTheWholeBuffer)
{
    Decode(Payload("FF 48 69"));
    EXPECT_EQ(DevelopmentText[0], 0xFF);
    EXPECT_EQ(DevelopmentText[1], 'H');
    EXPECT_EQ(DevelopmentText[2], 'i');
    EXPECT_EQ(DevelopmentText[3], BufferRest); // the old contents of the buffer
    EXPECT_EQ(DevelopmentText[1023], BufferRest);
    EXPECT_EQ(DevelopmentText[1024], 0);
}

TEST_F(TextRecords, InternalMessageIsTheWholeBuffer)
{
    Decode(Payload("E1 48 69"));
    EXPECT_EQ(InternalMessageText[0], 0xE1);
    EXPECT_EQ(InternalMessageText[2], 'i');
    EXPECT_EQ(InternalMessageText[1023], BufferRest);
    EXPECT_EQ(InternalMessageText[1024], 0);
    EXPECT_EQ(InternalMessageText[1025], 0);
}

TEST_F(TextRecords, WrappedTextEndsWithTheBuffer)
{
    Decode(Payload(255, 1023).At(1022, "5A"));
    Decode(Payload("EE EE FF 48"));
    EXPECT_EQ(DevelopmentText[0], 0xFF);
    EXPECT_EQ(DevelopmentText[1], 'H');
    EXPECT_EQ(DevelopmentText[1021], BufferRest);
    EXPECT_EQ(DevelopmentText[1022], 0);
    EXPECT_EQ(DevelopmentText[1023], 0);
    EXPECT_EQ(DevelopmentText[1024], 0);
}

TEST_F(TextRecords, LoneMessageIdIsATextToo)
{
    Decode(Payload("E1"));
    EXPECT_EQ(InternalMessageText[0], 0xE1);
}

TEST_F(TextRecords, NothingIsShown)
{
    Decode(Payload("FF 48 69"));
    Decode(Payload("E1 48 69"));
    for (uint32_t i = 0; i < LastTextLine; ++i) EXPECT_EQ(Line(i), L"");
}

// ---- Message id 238 -----------------------------------------------------------------------------------

class WrappedMessages : public SirfTest
{
};

TEST_F(WrappedMessages, AreDecodedAndSwitchTheWrappingOfCommandsOn)
{
    Payload wrapped("EE");
    const Payload inner = NavigationMessage();
    wrapped.bytes.insert(wrapped.bytes.end(), inner.bytes.begin(), inner.bytes.end());
    EXPECT_EQ(WrapEE.load(), 0);
    Decode(wrapped);
    EXPECT_EQ(WrapEE.load(), 1);
    EXPECT_EQ(Line(5), L" Fix: 3D Kalman Filter, 9 SVs" + std::wstring(38, L' '));
    EXPECT_EQ(Samples(), 1u);
}

TEST_F(WrappedMessages, InnerLengthCounts)
{
    Payload wrapped("EE");
    const Payload inner = NavigationMessage().Shorten();
    wrapped.bytes.insert(wrapped.bytes.end(), inner.bytes.begin(), inner.bytes.end());
    Decode(wrapped); // 41 bytes with the wrap
    EXPECT_EQ(Line(5), L"");
}

TEST_F(WrappedMessages, LoneWrapHoldsNothing)
{
    Decode(Payload("EE"));
    EXPECT_EQ(WrapEE.load(), 1);
}

TEST_F(WrappedMessages, FrameOfNothingButWraps)
{
    Payload wraps(0xEE, 1023);
    for (uint8_t& b : wraps.bytes) b = 0xEE;
    Feed(Frame(wraps));
    EXPECT_EQ(SirfMessageCount.load(), 1u);
    EXPECT_EQ(WrapEE.load(), 1);
    wraps.bytes[1022] = 0xFF; // at last a message
    Decode(wraps);
    EXPECT_EQ(DevelopmentText[0], 0xFF);
    EXPECT_EQ(DevelopmentText[1], BufferRest);
    EXPECT_EQ(DevelopmentText[2], 0);
}

TEST_F(WrappedMessages, StayOnForTheRestOfTheProgram)
{
    Decode(Payload("EE 07"));
    Decode(Payload("07"));
    ResetProtocolMode();
    Decode(Payload("07"));
    EXPECT_EQ(WrapEE.load(), 1);
}

} // namespace
