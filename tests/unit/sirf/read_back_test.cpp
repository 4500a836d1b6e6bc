// SPDX-License-Identifier: MIT
#include "sirf/read_back.h"

#include "link/link_state.h"
#include "sirf/frame_sender.h"
#include "sirf/message_decoder.h"
#include "tests/unit/sirf/sirf_test.h"

namespace
{

// ---- Software version (6) -----------------------------------------------------------------------------

class SoftwareVersion : public SirfTest
{
protected:
    void Open() { OpenDialog(DialogKind::PollSoftwareVersion, {.texts = {1322}}); }
};

TEST_F(SoftwareVersion, IsShownUpToItsNul)
{
    Open();
    Decode(Payload("06 47 53 57 33 2E 35 00 58 58"));
    EXPECT_EQ(Text(1322), L"GSW3.5");
}

TEST_F(SoftwareVersion, EndsWithTheMessage)
{
    Open();
    Decode(Payload("06 47 53 57"));
    EXPECT_EQ(Text(1322), L"GSW");
}

TEST_F(SoftwareVersion, EndsAfter80Characters)
{
    Open();
    Payload message(6, 100);
    for (size_t i = 1; i < 100; ++i) message.At(i, i <= 80 ? "61" : "62");
    Decode(message);
    EXPECT_EQ(Text(1322), std::wstring(80, L'a'));
}

TEST_F(SoftwareVersion, IsWidenedWithoutASign)
{
    Open();
    Decode(Payload("06 B0 FF"));
    EXPECT_EQ(Text(1322), L"\u00B0\u00FF");
}

TEST_F(SoftwareVersion, ShortestHasOneByte)
{
    Open();
    Decode(Payload("06"));
    EXPECT_EQ(Text(1322), L"?"); // too short
    Decode(Payload("06 00"));
    EXPECT_EQ(Text(1322), L"");
}

TEST_F(SoftwareVersion, OnlyInItsDialog)
{
    Open();
    OpenAnotherKind(DialogKind::DgpsSource);
    Decode(Payload("06 47"));
    EXPECT_EQ(Text(1322), L"?");
    WithdrawDialog();
    Decode(Payload("06 47"));
    EXPECT_EQ(Text(1322), L"?");
}

// ---- OK to send (18) ----------------------------------------------------------------------------------

class OkToSend : public SirfTest
{
protected:
    OkToSend() { OpenDialog(DialogKind::TricklePower, {.texts = {1516, 1517}}); }
    static void At(uint32_t tick, const char* message)
    {
        HeadlessSetTick(tick);
        Decode(Payload(message));
    }
};

TEST_F(OkToSend, ChangesAreTimed)
{
    At(10000, "12 00");
    At(10800, "12 01");
    EXPECT_EQ(Text(1517), L"800");
    EXPECT_EQ(Text(1516), L"?");
    At(11000, "12 00");
    EXPECT_EQ(Text(1516), L"200");
    EXPECT_EQ(Text(1517), L"800");
    At(11750, "12 FF"); // anything but 0 is on
    EXPECT_EQ(Text(1517), L"750");
}

TEST_F(OkToSend, NoTimeBeforeBothStatesAreKnown)
{
    At(10000, "12 01"); // when it went off is not known
    EXPECT_EQ(Text(1517), L"?");
    At(10200, "12 00");
    EXPECT_EQ(Text(1516), L"200");
    EXPECT_EQ(Text(1517), L"?");
}

TEST_F(OkToSend, RepeatedValueShowsNothingAndSetsTheTick)
{
    At(10000, "12 00");
    At(10500, "12 00");
    EXPECT_EQ(Text(1516), L"?");
    EXPECT_EQ(Text(1517), L"?");
    At(10600, "12 01");
    EXPECT_EQ(Text(1517), L"100");
    At(10700, "12 02");
    EXPECT_EQ(Text(1517), L"100");
    At(10750, "12 00");
    EXPECT_EQ(Text(1516), L"50");
}

TEST_F(OkToSend, TickMayWrap)
{
    At(0xFFFFFF00u, "12 00");
    At(0x00000100u, "12 01");
    EXPECT_EQ(Text(1517), L"512");
}

TEST_F(OkToSend, InAdvancedPowerManagementToo)
{
    OpenAnotherKind(DialogKind::AdvancedPowerManagement);
    At(10000, "12 00");
    At(10800, "12 01");
    EXPECT_EQ(Text(1517), L"800");
}

TEST_F(OkToSend, InNoOtherDialog)
{
    OpenAnotherKind(DialogKind::LowPower);
    At(10000, "12 00");
    At(10800, "12 01");
    At(10900, "12 00");
    EXPECT_EQ(Text(1516), L"?");
    EXPECT_EQ(Text(1517), L"?");
}

TEST_F(OkToSend, OneByteIsIgnored)
{
    At(10000, "12 00");
    At(10100, "12");
    EXPECT_EQ(Text(1517), L"?");
    EXPECT_EQ(OkToSendRecord[0], 18);
    EXPECT_EQ(OkToSendRecord[1], 0);
}

// ---- Navigation parameters (19) -----------------------------------------------------------------------

class NavigationParameters : public SirfTest
{
protected:
    static Payload Message() { return Payload(19, 65); }
    void OpenLowPower() { OpenDialog(DialogKind::LowPower, {.texts = {1673, 1674, 1675}, .boxes = {1676}}); }
    void OpenPowerManagement()
    {
        OpenDialog(DialogKind::AdvancedPowerManagement,
                   {.texts = {5302, 5303, 5306, 5308},
                    .boxes = {5301},
                    .lists = {{5304, 8}, {5305, 8}, {5307, 3}, {5309, 3}}});
    }
};

TEST_F(NavigationParameters, TwoTimesInLowPower)
{
    OpenLowPower();
    Decode(Message().At(49, "0001D4C0 00007530"));
    EXPECT_EQ(Text(1674), L"120000");
    EXPECT_EQ(Text(1673), L"30000");
    EXPECT_EQ(Text(1675), L"?");
    EXPECT_EQ(Check(1676), BST_INDETERMINATE);
    Decode(Message().At(49, "FFFFFFFF 80000000"));
    EXPECT_EQ(Text(1674), L"4294967295");
    EXPECT_EQ(Text(1673), L"2147483648");
}

TEST_F(NavigationParameters, PowerManagementFields)
{
    OpenPowerManagement();
    Decode(Message().At(1, "01").At(57, "8A 0105 023C 47 FF 09"));
    EXPECT_EQ(Check(5301), BST_CHECKED);
    EXPECT_EQ(Text(5308), L"50"); // ten steps of five
    EXPECT_EQ(Text(5302), L"5");  // low bytes
    EXPECT_EQ(Text(5303), L"60");
    EXPECT_EQ(Selection(5304), 4);
    EXPECT_EQ(Selection(5305), 7);
    EXPECT_EQ(Text(5306), L"255");
    EXPECT_EQ(Selection(5307), 2);
    EXPECT_EQ(Selection(5309), 1);
}

TEST_F(NavigationParameters, DutyCycleReadsBackInStepsOfFive)
{
    OpenPowerManagement();
    Decode(Message().At(1, "01").At(57, "01"));
    EXPECT_EQ(Check(5301), BST_UNCHECKED);
    EXPECT_EQ(Text(5308), L"5");
    Decode(Message().At(1, "01").At(57, "7F"));
    EXPECT_EQ(Check(5301), BST_UNCHECKED);
    EXPECT_EQ(Text(5308), L"155");
}

TEST_F(NavigationParameters, ListIndexThatTheListDoesNotHaveSelectsNothing)
{
    OpenPowerManagement();
    Decode(Message().At(1, "01").At(62, "80").At(64, "0F"));
    EXPECT_EQ(Selection(5304), -1);
    EXPECT_EQ(Selection(5305), 0);
    EXPECT_EQ(Selection(5307), -1);
    EXPECT_EQ(Selection(5309), -1);
    Decode(Message().At(1, "01").At(62, "0F").At(64, "F4"));
    EXPECT_EQ(Selection(5304), 0);
    EXPECT_EQ(Selection(5305), -1);
    EXPECT_EQ(Selection(5307), 1);
    EXPECT_EQ(Selection(5309), 0);
}

TEST_F(NavigationParameters, PowerManagementOnlyWhenByte1SaysSo)
{
    OpenPowerManagement();
    for (const char* other : {"00", "02", "81"}) Decode(Message().At(1, other).At(57, "8A"));
    EXPECT_EQ(Check(5301), BST_INDETERMINATE);
    EXPECT_EQ(Text(5308), L"?");
}

TEST_F(NavigationParameters, Of64BytesAreIgnored)
{
    OpenLowPower();
    Decode(Message().Shorten());
    EXPECT_EQ(Text(1673), L"?");
    EXPECT_EQ(NavigationParameterRecord[0], 0);
    Decode(Message().At(64, "5A"));
    EXPECT_EQ(Text(1673), L"0");
    EXPECT_EQ(NavigationParameterRecord[64], 0x5A);
}

TEST_F(NavigationParameters, OnlyInTheirDialogs)
{
    OpenLowPower();
    OpenAnotherKind(DialogKind::TricklePower);
    Decode(Message().At(1, "01"));
    EXPECT_EQ(Text(1673), L"?");
    OpenPowerManagement();
    OpenAnotherKind(DialogKind::LowPower);
    Decode(Message().At(1, "01"));
    EXPECT_EQ(Text(5302), L"?");
}

// ---- DGPS status (27) ---------------------------------------------------------------------------------

class DgpsStatus : public SirfTest
{
protected:
    DgpsStatus() { OpenDialog(DialogKind::DgpsSource, {.texts = {1336, 1337, 1338, 1339}}); }

    // Twelve ages from byte 2 on; satellites and corrections from byte 16 on.
    static Payload Message()
    {
        return Payload(27, 52)
            .At(1, "01")
            .At(2, "01 02 03 04 05 06 07 08 09 0A 0B FF")
            .At(16, "03 0064 0D FF9C 78 0031 16 0032 00 0000 05 FFCE 06 FFCD 07 FF6A 08 FF69 09 7FFF 0A 8000 "
                    "FF 0001");
    }
};

TEST_F(DgpsStatus, ThreeLinesOfTwelve)
{
    Decode(Message());
    EXPECT_EQ(Text(1336), L"DGPS Source: SBAS");
    EXPECT_EQ(Text(1337), L"Sv:  3 13 120 22 0 5 6 7 8 9 10 255");
    // 100 -100 49 50 0 -50 -51 -150 -151 32767 -32768 1 cm
    EXPECT_EQ(Text(1338), L"Cor: 1 0 0 1 0 0 0 -1 -1 328 -327 0 m");
    EXPECT_EQ(Text(1339), L"Age: 1 2 3 4 5 6 7 8 9 10 11 255 s");
}

TEST_F(DgpsStatus, SourceNames)
{
    const std::pair<const char*, const wchar_t*> rows[] = {
        {"00", L"DGPS Source: None"},          {"01", L"DGPS Source: SBAS"},
        {"02", L"DGPS Source: External RTCM"}, {"03", L"DGPS Source: Internal Beacon"},
        {"04", L"DGPS Source: User Software"}, {"05", L"DGPS Source: 5"},
        {"FF", L"DGPS Source: 255"},
    };
    for (const auto& [source, text] : rows) {
        Decode(Message().At(1, source));
        EXPECT_EQ(Text(1336), text);
    }
}

TEST_F(DgpsStatus, NoSourceLeavesTheOtherLines)
{
    Decode(Message().At(1, "00"));
    EXPECT_EQ(Text(1336), L"DGPS Source: None");
    EXPECT_EQ(Text(1337), L"?");
    EXPECT_EQ(Text(1338), L"?");
    EXPECT_EQ(Text(1339), L"?");
}

TEST_F(DgpsStatus, BeaconHasNoAges)
{
    Decode(Message());
    Decode(Message().At(1, "03"));
    EXPECT_EQ(Text(1337), L"Sv:  3 13 120 22 0 5 6 7 8 9 10 255");
    EXPECT_EQ(Text(1339), L"");
}

TEST_F(DgpsStatus, LongestLines)
{
    Payload message = Message().At(2, "FF FF FF FF FF FF FF FF FF FF FF FF");
    for (size_t i = 0; i < 12; ++i) message.At(16 + 3 * i, "FF 8000");
    Decode(message);
    EXPECT_EQ(Text(1337), L"Sv:  255 255 255 255 255 255 255 255 255 255 255 255");
    EXPECT_EQ(Text(1338), L"Cor: -327 -327 -327 -327 -327 -327 -327 -327 -327 -327 -327 -327 m");
    EXPECT_EQ(Text(1339), L"Age: 255 255 255 255 255 255 255 255 255 255 255 255 s");
}

TEST_F(DgpsStatus, Of51BytesIsIgnored)
{
    Decode(Message().Shorten());
    EXPECT_EQ(Text(1336), L"?");
    EXPECT_EQ(DgpsStatusRecord[0], 0);
    Decode(Message());
    EXPECT_EQ(DgpsStatusRecord[0], 27);
    EXPECT_EQ(DgpsStatusRecord[51], 1);
}

TEST_F(DgpsStatus, OnlyInItsDialog)
{
    OpenAnotherKind(DialogKind::DgpsMode);
    Decode(Message());
    EXPECT_EQ(Text(1336), L"?");
}

// ---- Differential data (29) ---------------------------------------------------------------------------

class DifferentialData : public SirfTest
{
protected:
    DifferentialData() { OpenDialog(DialogKind::DgpsSource, {.texts = {1340, 1341, 1342, 1343}}); }

    static Payload Message(const char* sv, const char* correction, const char* age)
    {
        return Payload(29, 26).At(1, sv).At(5, "02").At(6, correction).At(14, age);
    }
    static Payload EndOfSet() { return Payload(41, 91); }
};

TEST_F(DifferentialData, IsCollectedUntilTheNextNavigationMessage)
{
    Decode(Message("0007", "C0600000", "41440000")); // -3.5 m, 12.25 s
    EXPECT_EQ(Text(1340), L"DGPS Source: External RTCM");
    EXPECT_EQ(Text(1341), L"Sv:  7");
    EXPECT_EQ(Text(1342), L"Cor: -4"); // half to even
    EXPECT_EQ(Text(1343), L"Age: 12");
    Decode(Message("0102", "40F80000", "00000000").At(5, "09")); // 7.75 m
    EXPECT_EQ(Text(1340), L"DGPS Source: External RTCM");        // the first message's
    EXPECT_EQ(Text(1341), L"Sv:  7 258");
    EXPECT_EQ(Text(1342), L"Cor: -4 8");
    EXPECT_EQ(Text(1343), L"Age: 12 0");
    Decode(EndOfSet());
    EXPECT_EQ(Text(1341), L"Sv:  7 258");
    EXPECT_EQ(Text(1342), L"Cor: -4 8 m");
    EXPECT_EQ(Text(1343), L"Age: 12 0 s");
    Decode(Message("0003", "00000000", "3F800000").At(5, "09"));
    EXPECT_EQ(Text(1340), L"DGPS Source: 9");
    EXPECT_EQ(Text(1341), L"Sv:  3");
    EXPECT_EQ(Text(1342), L"Cor: 0");
    EXPECT_EQ(Text(1343), L"Age: 1");
}

TEST_F(DifferentialData, NavigationMessageWithoutDataChangesNothing)
{
    Decode(EndOfSet());
    EXPECT_EQ(Text(1342), L"?");
    Decode(Message("0007", "00000000", "00000000"));
    Decode(EndOfSet());
    Decode(EndOfSet());
    EXPECT_EQ(Text(1342), L"Cor: 0 m");
}

TEST_F(DifferentialData, TooShortANavigationMessageEndsNothing)
{
    Decode(Message("0007", "00000000", "00000000"));
    Decode(EndOfSet().Shorten());
    EXPECT_EQ(Text(1342), L"Cor: 0");
}

TEST_F(DifferentialData, ValuesThatAreNoNumbersShowZero)
{
    Decode(Message("0007", "7FC00000", "7F800000"));
    Decode(Message("0008", "FF800000", "FFFFFFFF"));
    EXPECT_EQ(Text(1342), L"Cor: 0 0");
    EXPECT_EQ(Text(1343), L"Age: 0 0");
}

TEST_F(DifferentialData, LinesTakeWhatFitsWithTheirUnit)
{
    // 39 digits and a blank: six fit behind "Cor:", then the shorter ones up to 253 characters.
    for (int i = 0; i < 60; ++i) Decode(Message("FFFF", "7F7FFFFF", "00000000"));
    const std::wstring largest = L" 340282346638528859811704183484516925440";
    std::wstring corrections = L"Cor:";
    for (int i = 0; i < 6; ++i) corrections += largest;
    EXPECT_EQ(Text(1342), corrections);
    for (int i = 0; i < 60; ++i) Decode(Message("FFFF", "00000000", "00000000"));
    while (corrections.size() + 2 <= 253) corrections += L" 0";
    EXPECT_EQ(Text(1342), corrections);
    std::wstring svs = L"Sv: ", ages = L"Age:";
    while (svs.size() + 6 <= 253) svs += L" 65535";
    for (int i = 0; i < 120; ++i) ages += L" 0";
    EXPECT_EQ(Text(1341), svs);
    EXPECT_EQ(Text(1343), ages);
    Decode(EndOfSet());
    EXPECT_EQ(Text(1342), corrections + L" m");
    EXPECT_EQ(Text(1343), ages + L" s");
}

TEST_F(DifferentialData, Of25BytesIsIgnored)
{
    Decode(Message("0007", "00000000", "00000000").Shorten());
    EXPECT_EQ(Text(1340), L"?");
    EXPECT_EQ(CorrectionRecord[0], 0);
    Decode(Message("0007", "00000000", "00000000").At(25, "5A"));
    EXPECT_EQ(CorrectionRecord[25], 0x5A);
}

TEST_F(DifferentialData, OnlyInItsDialog)
{
    OpenAnotherKind(DialogKind::DgpsMode);
    Decode(Message("0007", "00000000", "00000000"));
    EXPECT_EQ(Text(1340), L"?");
    EXPECT_EQ(CorrectionRecord[0], 29);
}

TEST_F(DifferentialData, SetThatEndsWhileTheDialogIsClosedIsForgotten)
{
    Decode(Message("0007", "00000000", "00000000"));
    WithdrawDialog();
    Decode(EndOfSet());
    PublishDialog(DialogKind::DgpsSource, Dialog);
    Decode(Message("0008", "00000000", "00000000"));
    EXPECT_EQ(Text(1341), L"Sv:  8");
}

// ---- Settings (43) ------------------------------------------------------------------------------------

class CommandParameters : public SirfTest
{
};

TEST_F(CommandParameters, InitializeDataSource)
{
    OpenDialog(DialogKind::InitializeDataSource,
               {.texts = {1281, 1282, 1283, 1284, 1285, 1286, 1287},
                .boxes = {12811, 12812, 12813, 12814, 12815, 12816, 12817, 12818, 12819, 12820}});
    Decode(Payload("2B 80 0030A854 FFFFFFFF 80000000 00017700 039AD500 0834 0C 10"));
    EXPECT_EQ(Text(1281), L"3188820");
    EXPECT_EQ(Text(1282), L"4294967295"); // negative ones read as large ones
    EXPECT_EQ(Text(1283), L"2147483648");
    EXPECT_EQ(Text(1284), L"96000");
    EXPECT_EQ(Text(1285), L"604787"); // of 60478720 hundredths
    EXPECT_EQ(Text(1286), L"2100");
    EXPECT_EQ(Text(1287), L"12");
    EXPECT_EQ(Check(12811), BST_CHECKED);
    EXPECT_EQ(Check(12818), BST_CHECKED);
    EXPECT_EQ(Check(12819), BST_UNCHECKED);
    EXPECT_EQ(Check(12820), BST_UNCHECKED);
}

TEST_F(CommandParameters, ResetConfigurations)
{
    OpenDialog(DialogKind::InitializeDataSource,
               {.boxes = {12811, 12812, 12813, 12814, 12815, 12816, 12817, 12818, 12819, 12820}});
    struct Row {
        const char* map;
        int option;
        bool navLib, debug, clear;
    };
    const Row rows[] = {
        {"00", 12811, false, false, false}, {"40", 12812, false, false, false},
        {"03", 12813, false, false, false}, {"02", 12814, false, false, false},
        {"04", 12815, false, false, false}, {"08", 12816, false, false, false},
        {"88", 12817, false, false, true},  {"14", 12815, true, false, false},
        {"B0", 12811, true, true, true},    {"01", 12811, false, false, false},
        {"FF", 12813, true, true, true},    {"FE", 12814, true, true, true},
        {"CC", 12815, false, false, true},  {"C8", 12817, false, false, true},
        {"48", 12816, false, false, false}, {"E0", 12812, false, true, true},
    };
    for (const Row& row : rows) {
        Decode(Payload(43, 26).At(1, "80").At(25, row.map));
        for (int option = 12811; option <= 12817; ++option)
            EXPECT_EQ(Check(option) == BST_CHECKED, option == row.option) << row.map << " " << option;
        EXPECT_EQ(Check(12818), row.navLib ? BST_CHECKED : BST_UNCHECKED) << row.map;
        EXPECT_EQ(Check(12819), row.debug ? BST_CHECKED : BST_UNCHECKED) << row.map;
        EXPECT_EQ(Check(12820), row.clear ? BST_CHECKED : BST_UNCHECKED) << row.map;
    }
}

TEST_F(CommandParameters, DgpsSource)
{
    OpenDialog(DialogKind::DgpsSource, {.texts = {1332, 1333}, .lists = {{1331, 5}}});
    Decode(Payload("2B 85 03 0004F588 C8"));
    EXPECT_EQ(Selection(1331), 3);
    EXPECT_EQ(Text(1332), L"325000");
    EXPECT_EQ(Text(1333), L"200");
    Decode(Payload("2B 85 01 0004F588 C8")); // the beacon is not the source
    EXPECT_EQ(Selection(1331), 1);
    EXPECT_EQ(Text(1332), L"0");
    EXPECT_EQ(Text(1333), L"0");
    Decode(Payload("2B 85 05 0004F588 C8"));
    EXPECT_EQ(Selection(1331), -1);
}

TEST_F(CommandParameters, ModeControl)
{
    OpenDialog(DialogKind::ModeControl,
               {.texts = {1364, 1367, 1368}, .boxes = {1369}, .lists = {{1363, 5}, {1365, 3}, {1366, 2}}});
    Decode(Payload("2B 88 FFFF 04 FFFF 03E8 02 01 FF 1E 78 01"));
    EXPECT_EQ(Selection(1363), 4);
    EXPECT_EQ(Text(1364), L"1000");
    EXPECT_EQ(Selection(1365), 2);
    EXPECT_EQ(Selection(1366), 1);
    EXPECT_EQ(Text(1367), L"30");
    EXPECT_EQ(Text(1368), L"120");
    EXPECT_EQ(Check(1369), BST_CHECKED);
    Decode(Payload("2B 88 0000 05 0000 FC18 03 02 00 00 00 00")); // altitude -1000
    EXPECT_EQ(Selection(1363), -1);
    EXPECT_EQ(Text(1364), L"64536");
    EXPECT_EQ(Selection(1365), -1);
    EXPECT_EQ(Selection(1366), -1);
    EXPECT_EQ(Check(1369), BST_UNCHECKED);
}

TEST_F(CommandParameters, DopMask)
{
    OpenDialog(DialogKind::DopMask, {.texts = {1374, 1375, 1376}, .lists = {{1373, 5}}});
    Decode(Payload("2B 89 02 0A 0B FF"));
    EXPECT_EQ(Selection(1373), 2);
    EXPECT_EQ(Text(1374), L"10");
    EXPECT_EQ(Text(1375), L"11");
    EXPECT_EQ(Text(1376), L"255");
}

TEST_F(CommandParameters, DgpsMode)
{
    OpenDialog(DialogKind::DgpsMode, {.texts = {1384}, .lists = {{1383, 3}}});
    Decode(Payload("2B 8A 01 FF"));
    EXPECT_EQ(Selection(1383), 1);
    EXPECT_EQ(Text(1384), L"255");
}

TEST_F(CommandParameters, ElevationMask)
{
    OpenDialog(DialogKind::ElevationMask, {.texts = {1393, 1394}});
    Decode(Payload("2B 8B 0032 004B"));
    EXPECT_EQ(Text(1393), L"5.0");
    EXPECT_EQ(Text(1394), L"7.5");
    Decode(Payload("2B 8B FFCF 0000")); // a negative one reads as a large one
    EXPECT_EQ(Text(1393), L"6548.7");
    EXPECT_EQ(Text(1394), L"0.0");
}

TEST_F(CommandParameters, PowerMask)
{
    OpenDialog(DialogKind::PowerMask, {.texts = {1403, 1404}});
    Decode(Payload("2B 8C 1C 32"));
    EXPECT_EQ(Text(1403), L"28");
    EXPECT_EQ(Text(1404), L"50");
}

TEST_F(CommandParameters, StaticNavigation)
{
    OpenDialog(DialogKind::StaticNavigation, {.boxes = {1433}});
    Decode(Payload("2B 8F 01"));
    EXPECT_EQ(Check(1433), BST_CHECKED);
    Decode(Payload("2B 8F 00"));
    EXPECT_EQ(Check(1433), BST_UNCHECKED);
    Decode(Payload("2B 8F 80"));
    EXPECT_EQ(Check(1433), BST_CHECKED);
}

TEST_F(CommandParameters, TricklePower)
{
    OpenDialog(DialogKind::TricklePower, {.texts = {1514, 1515}, .boxes = {1513}});
    Decode(Payload("2B 97 0100 007B 0000012C"));
    EXPECT_EQ(Check(1513), BST_CHECKED);
    EXPECT_EQ(Text(1514), L"12.3");
    EXPECT_EQ(Text(1515), L"300");
    Decode(Payload("2B 97 0000 03E8 00000384"));
    EXPECT_EQ(Check(1513), BST_UNCHECKED);
    EXPECT_EQ(Text(1514), L"100.0");
    EXPECT_EQ(Text(1515), L"900");
}

TEST_F(CommandParameters, LowPower)
{
    OpenDialog(DialogKind::LowPower, {.texts = {1673, 1674, 1675}, .boxes = {1676}});
    Decode(Payload("2B A7 00007530 0001D4C0 00000708 0001"));
    EXPECT_EQ(Text(1673), L"30000");
    EXPECT_EQ(Text(1674), L"120000");
    EXPECT_EQ(Text(1675), L"1800");
    EXPECT_EQ(Check(1676), BST_CHECKED);
}

TEST_F(CommandParameters, Sbas)
{
    OpenDialog(DialogKind::Sbas, {.lists = {{1701, 20}, {1702, 2}, {1703, 2}}});
    struct Row {
        const char* settings;
        int prn, mode, timeout;
    };
    const Row rows[] = {
        {"7E 01 09 00 00", 7, 1, 1},  // 126 EGNOS, Integrity, User input
        {"78 00 08 00 00", 1, 0, 0},  // the first entry, 120
        {"8A 00 08 00 00", 19, 0, 0}, // the last one, 138
        {"7E 00 01 00 00", 0, 0, 1},  // no satellite chosen: Auto
        {"00 00 08 00 00", 0, 0, 0},  // satellite 0: Auto
        {"77 00 08 00 00", -1, 0, 0}, // 119, 139, 1 and 255 have no entry
        {"8B 00 08 00 00", -1, 0, 0}, {"01 00 08 00 00", -1, 0, 0},
        {"FF 02 F6 00 00", 0, -1, 0}, // without bit 3
        {"FF 00 FF 00 00", -1, 0, 1},
    };
    for (const Row& row : rows) {
        Decode(Payload(std::string("2B AA ") + row.settings));
        EXPECT_EQ(Selection(1701), row.prn) << row.settings;
        EXPECT_EQ(Selection(1702), row.mode) << row.settings;
        EXPECT_EQ(Selection(1703), row.timeout) << row.settings;
    }
}

TEST_F(CommandParameters, OneByteShortShowsNothing)
{
    struct Row {
        uint8_t command;
        size_t length; // of the answer
        DialogKind kind;
        int text;
        int box;
        int list;
    };
    const Row rows[] = {
        {128, 26, DialogKind::InitializeDataSource, 1281, 12818, 0},
        {133, 8, DialogKind::DgpsSource, 1332, 0, 1331},
        {136, 15, DialogKind::ModeControl, 1364, 1369, 1363},
        {137, 6, DialogKind::DopMask, 1374, 0, 1373},
        {138, 4, DialogKind::DgpsMode, 1384, 0, 1383},
        {139, 6, DialogKind::ElevationMask, 1393, 0, 0},
        {140, 4, DialogKind::PowerMask, 1403, 0, 0},
        {143, 3, DialogKind::StaticNavigation, 0, 1433, 0},
        {151, 10, DialogKind::TricklePower, 1514, 1513, 0},
        {167, 16, DialogKind::LowPower, 1673, 1676, 0},
        {170, 7, DialogKind::Sbas, 0, 0, 1702},
    };
    for (const Row& row : rows) {
        Controls controls;
        if (row.text) controls.texts.push_back(row.text);
        if (row.box) controls.boxes.push_back(row.box);
        if (row.list) controls.lists.push_back({row.list, 2}); // the second entry selected
        OpenDialog(row.kind, controls);
        Payload answer(43, row.length);
        answer.bytes[1] = row.command;
        const auto isUntouched = [&] {
            return (!row.text || Text(row.text) == L"?") &&
                   (!row.box || Check(row.box) == BST_INDETERMINATE) &&
                   (!row.list || Selection(row.list) == 1);
        };
        Payload shorter = answer;
        Decode(shorter.Shorten());
        EXPECT_TRUE(isUntouched()) << int{row.command};
        OpenAnotherKind(DialogKind::GraphOptions); // another dialog is not touched
        Decode(answer);
        EXPECT_TRUE(isUntouched()) << int{row.command};
        OpenAnotherKind(row.kind);
        Decode(answer);
        EXPECT_FALSE(isUntouched()) << int{row.command};
    }
}

TEST_F(CommandParameters, EveryAnswerEndsThePoll)
{
    for (const char* answer : {"2B 8F 01", "2B 8F", "2B 35 01", "2B"}) {
        PendingPollId.store(143);
        Decode(Payload(answer));
        EXPECT_EQ(PendingPollId.load(), 0) << answer;
    }
}

TEST_F(CommandParameters, OfCommandsThatAreNotPolledShowNothing)
{
    OpenDialog(DialogKind::AdvancedPowerManagement, {.texts = {5302}, .boxes = {5301}});
    Decode(Payload(43, 26).At(1, "35 01 02"));
    EXPECT_EQ(Text(5302), L"?");
    OpenDialog(DialogKind::SirfSetMessageRate, {.texts = {16616, 16617}});
    Decode(Payload(43, 26).At(1, "A6 00 02 05"));
    EXPECT_EQ(Text(16617), L"?");
}

TEST_F(CommandParameters, RecordHolds26Bytes)
{
    Payload answer(43, 40);
    answer.At(1, "80").At(25, "5A FF");
    Decode(answer);
    EXPECT_EQ(ParameterRecord[0], 43);
    EXPECT_EQ(ParameterRecord[25], 0x5A);
    Decode(Payload("2B 8F 01")); // a shorter one leaves nothing behind it
    EXPECT_EQ(ParameterRecord[2], 1);
    EXPECT_EQ(ParameterRecord[25], 0);
}

// ---- SBAS satellites (4) ------------------------------------------------------------------------------

class SbasSatellites : public SirfTest
{
protected:
    SbasSatellites() { OpenDialog(DialogKind::Sbas, {.texts = {401, 402, 403, 404, 405}}); }
};

TEST_F(SbasSatellites, ShowTheirChannel)
{
    Decode(
        Payload(4, 188).At(7, "02").At(8, "78 F1 2D 01BF 28282828282828282828").At(23, "07 10 10 0001 0A"));
    EXPECT_EQ(Text(401), L"120");
    EXPECT_EQ(Text(402), L"40");
    EXPECT_EQ(Text(403), L"1BF"); // the whole state
    EXPECT_EQ(Text(404), L"361"); // 241 * 3 / 2
    EXPECT_EQ(Text(405), L"22");  // 45 / 2
}

TEST_F(SbasSatellites, NumbersAbove32AreSbas)
{
    Decode(Payload(4, 188).At(7, "01").At(8, "20 00 00 0001"));
    EXPECT_EQ(Text(401), L"?");
    Decode(Payload(4, 188).At(7, "01").At(8, "21 00 00 0005"));
    EXPECT_EQ(Text(401), L"33");
    EXPECT_EQ(Text(403), L"05");
}

TEST_F(SbasSatellites, LastOfSeveralStays)
{
    Decode(Payload(4, 188).At(7, "03").At(8, "78").At(23, "7E").At(38, "0B"));
    EXPECT_EQ(Text(401), L"126");
}

TEST_F(SbasSatellites, OnlyInTheirDialog)
{
    OpenAnotherKind(DialogKind::DgpsMode);
    Decode(Payload(4, 188).At(7, "01").At(8, "78"));
    EXPECT_EQ(Text(401), L"?");
}

// ---- A dialog that is just opening or closing ----------------------------------------------------------

class KindWithoutWindow : public SirfTest
{
};

TEST_F(KindWithoutWindow, ShowsNothing)
{
    HeadlessPort& port = OpenPort();
    for (uint32_t kind = 1; kind <= 23; ++kind) {
        ActiveDialogKind.store(static_cast<DialogKind>(kind));
        for (const int id : {2, 4, 6, 18, 19, 27, 29, 41, 255})
            Decode(Payload(static_cast<uint8_t>(id), 200));
        for (const char* command : {"80", "85", "88", "89", "8A", "8B", "8C", "8F", "97", "A7", "AA"})
            Decode(Payload(43, 26).At(1, command));
    }
    ActiveDialogKind.store(DialogKind::None);
    EXPECT_EQ(Setting(L"SirfBaudrateIdx"), -12345);
    EXPECT_EQ(port.sent, "");
    EXPECT_EQ(GeodeticRecord[0], 41); // decoded all the same
    EXPECT_EQ(ParameterRecord[1], 0xAA);
}

// ---- Times --------------------------------------------------------------------------------------------

class Times : public SirfTest
{
protected:
    static Payload Geodetic() { return Payload(41, 91).At(7, "149AA435").At(11, "07E8 02 1D 17 3B E484"); }
    static Payload Navigation() { return Payload(2, 41).At(24, "01B2B51B"); }
};

TEST_F(Times, TimeOfDayInFourDialogs)
{
    const DialogKind kinds[] = {DialogKind::SetSerialPort, DialogKind::AdvancedPowerManagement,
                                DialogKind::SwitchToNmea, DialogKind::TricklePower};
    for (const DialogKind kind : kinds) {
        OpenDialog(kind, {.texts = {1518, 1285}});
        Decode(Navigation());
        EXPECT_EQ(Text(1518), L"07:08:09");
        EXPECT_EQ(Text(1285), L"?");
        ResetSirfDecoder();
    }
    for (const DialogKind kind : kinds) {
        OpenDialog(kind, {.texts = {1518, 1285}});
        Decode(Geodetic());
        EXPECT_EQ(Text(1518), L"23:59:58");
        EXPECT_EQ(Text(1285), L"?");
    }
}

TEST_F(Times, TimeOfWeekInInitializeDataSource)
{
    OpenDialog(DialogKind::InitializeDataSource, {.texts = {1518, 1285}});
    Decode(Navigation());
    EXPECT_EQ(Text(1285), L"0"); // known from the geodetic message alone
    Decode(Geodetic());
    EXPECT_EQ(Text(1285), L"345678");
    EXPECT_EQ(Text(1518), L"?");
}

TEST_F(Times, AfterAGeodeticMessageTheOtherShowsNone)
{
    OpenDialog(DialogKind::TricklePower, {.texts = {1518}});
    Decode(Geodetic());
    OpenDialog(DialogKind::TricklePower, {.texts = {1518}});
    Decode(Navigation());
    EXPECT_EQ(Text(1518), L"?");
}

TEST_F(Times, InNoOtherDialog)
{
    for (uint32_t kind = 1; kind <= 23; ++kind) {
        if (kind == 3 || kind == 8 || kind == 9 || kind == 10 || kind == 19) continue;
        OpenDialog(static_cast<DialogKind>(kind), {.texts = {1518, 1285}});
        Decode(Geodetic());
        EXPECT_EQ(Text(1518), L"?") << kind;
        EXPECT_EQ(Text(1285), L"?") << kind;
    }
}

} // namespace
