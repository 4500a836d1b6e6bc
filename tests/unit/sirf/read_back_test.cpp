// SPDX-License-Identifier: MIT
#include "resources/resource_ids.h"
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
    void Open() { OpenDialog(DialogKind::PollSoftwareVersion, {.texts = {CONTROL_SOFTWARE_VERSION}}); }
};

TEST_F(SoftwareVersion, IsShownUpToItsNul)
{
    Open();
    Decode(Payload("06 47 53 57 33 2E 35 00 58 58"));
    EXPECT_EQ(Text(CONTROL_SOFTWARE_VERSION), L"GSW3.5");
}

TEST_F(SoftwareVersion, EndsWithTheMessage)
{
    Open();
    Decode(Payload("06 47 53 57"));
    EXPECT_EQ(Text(CONTROL_SOFTWARE_VERSION), L"GSW");
}

TEST_F(SoftwareVersion, EndsAfter80Characters)
{
    Open();
    Payload message(6, 100);
    for (size_t i = 1; i < 100; ++i) message.At(i, i <= 80 ? "61" : "62");
    Decode(message);
    EXPECT_EQ(Text(CONTROL_SOFTWARE_VERSION), std::wstring(80, L'a'));
}

TEST_F(SoftwareVersion, IsWidenedWithoutASign)
{
    Open();
    Decode(Payload("06 B0 FF"));
    EXPECT_EQ(Text(CONTROL_SOFTWARE_VERSION), L"\u00B0\u00FF");
}

TEST_F(SoftwareVersion, ShortestHasOneByte)
{
    Open();
    Decode(Payload("06"));
    EXPECT_EQ(Text(CONTROL_SOFTWARE_VERSION), L"?"); // too short
    Decode(Payload("06 00"));
    EXPECT_EQ(Text(CONTROL_SOFTWARE_VERSION), L"");
}

TEST_F(SoftwareVersion, OnlyInItsDialog)
{
    Open();
    OpenAnotherKind(DialogKind::DgpsSource);
    Decode(Payload("06 47"));
    EXPECT_EQ(Text(CONTROL_SOFTWARE_VERSION), L"?");
    WithdrawDialog();
    Decode(Payload("06 47"));
    EXPECT_EQ(Text(CONTROL_SOFTWARE_VERSION), L"?");
}

// ---- OK to send (18) ----------------------------------------------------------------------------------

class OkToSend : public SirfTest
{
protected:
    OkToSend()
    {
        OpenDialog(DialogKind::TricklePower, {.texts = {CONTROL_SIRF_ON_TIME, CONTROL_SIRF_OFF_TIME}});
    }
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
    EXPECT_EQ(Text(CONTROL_SIRF_OFF_TIME), L"800");
    EXPECT_EQ(Text(CONTROL_SIRF_ON_TIME), L"?");
    At(11000, "12 00");
    EXPECT_EQ(Text(CONTROL_SIRF_ON_TIME), L"200");
    EXPECT_EQ(Text(CONTROL_SIRF_OFF_TIME), L"800");
    At(11750, "12 FF"); // anything but 0 is on
    EXPECT_EQ(Text(CONTROL_SIRF_OFF_TIME), L"750");
}

TEST_F(OkToSend, NoTimeBeforeBothStatesAreKnown)
{
    At(10000, "12 01"); // when it went off is not known
    EXPECT_EQ(Text(CONTROL_SIRF_OFF_TIME), L"?");
    At(10200, "12 00");
    EXPECT_EQ(Text(CONTROL_SIRF_ON_TIME), L"200");
    EXPECT_EQ(Text(CONTROL_SIRF_OFF_TIME), L"?");
}

TEST_F(OkToSend, RepeatedValueShowsNothingAndSetsTheTick)
{
    At(10000, "12 00");
    At(10500, "12 00");
    EXPECT_EQ(Text(CONTROL_SIRF_ON_TIME), L"?");
    EXPECT_EQ(Text(CONTROL_SIRF_OFF_TIME), L"?");
    At(10600, "12 01");
    EXPECT_EQ(Text(CONTROL_SIRF_OFF_TIME), L"100");
    At(10700, "12 02");
    EXPECT_EQ(Text(CONTROL_SIRF_OFF_TIME), L"100");
    At(10750, "12 00");
    EXPECT_EQ(Text(CONTROL_SIRF_ON_TIME), L"50");
}

TEST_F(OkToSend, TickMayWrap)
{
    At(0xFFFFFF00u, "12 00");
    At(0x00000100u, "12 01");
    EXPECT_EQ(Text(CONTROL_SIRF_OFF_TIME), L"512");
}

TEST_F(OkToSend, InAdvancedPowerManagementToo)
{
    OpenAnotherKind(DialogKind::AdvancedPowerManagement);
    At(10000, "12 00");
    At(10800, "12 01");
    EXPECT_EQ(Text(CONTROL_SIRF_OFF_TIME), L"800");
}

TEST_F(OkToSend, InNoOtherDialog)
{
    OpenAnotherKind(DialogKind::LowPower);
    At(10000, "12 00");
    At(10800, "12 01");
    At(10900, "12 00");
    EXPECT_EQ(Text(CONTROL_SIRF_ON_TIME), L"?");
    EXPECT_EQ(Text(CONTROL_SIRF_OFF_TIME), L"?");
}

TEST_F(OkToSend, OneByteIsIgnored)
{
    At(10000, "12 00");
    At(10100, "12");
    EXPECT_EQ(Text(CONTROL_SIRF_OFF_TIME), L"?");
    EXPECT_EQ(OkToSendRecord[0], 18);
    EXPECT_EQ(OkToSendRecord[1], 0);
}

// ---- Navigation parameters (19) -----------------------------------------------------------------------

class NavigationParameters : public SirfTest
{
protected:
    static Payload Message() { return Payload(19, 65); }
    void OpenLowPower()
    {
        OpenDialog(DialogKind::LowPower,
                   {.texts = {CONTROL_LOW_POWER_MAX_OFF_TIME, CONTROL_LOW_POWER_MAX_SEARCH_TIME,
                              CONTROL_LOW_POWER_PERIOD},
                    .boxes = {CONTROL_LOW_POWER_ADAPTIVE}});
    }
    void OpenPowerManagement()
    {
        OpenDialog(DialogKind::AdvancedPowerManagement,
                   {.texts = {CONTROL_APM_CYCLES, CONTROL_APM_TIME_BETWEEN_FIXES,
                              CONTROL_APM_MAX_RESPONSE_TIME, CONTROL_APM_DUTY_CYCLE},
                    .boxes = {CONTROL_APM_ENABLED},
                    .lists = {{CONTROL_APM_MAX_HORIZONTAL_ERROR, 8},
                              {CONTROL_APM_MAX_VERTICAL_ERROR, 8},
                              {CONTROL_APM_ACCURACY_PRIORITY, 3},
                              {CONTROL_APM_TIMING_PRIORITY, 3}}});
    }
};

TEST_F(NavigationParameters, TwoTimesInLowPower)
{
    OpenLowPower();
    Decode(Message().At(49, "0001D4C0 00007530"));
    EXPECT_EQ(Text(CONTROL_LOW_POWER_MAX_SEARCH_TIME), L"120000");
    EXPECT_EQ(Text(CONTROL_LOW_POWER_MAX_OFF_TIME), L"30000");
    EXPECT_EQ(Text(CONTROL_LOW_POWER_PERIOD), L"?");
    EXPECT_EQ(Check(CONTROL_LOW_POWER_ADAPTIVE), BST_INDETERMINATE);
    Decode(Message().At(49, "FFFFFFFF 80000000"));
    EXPECT_EQ(Text(CONTROL_LOW_POWER_MAX_SEARCH_TIME), L"4294967295");
    EXPECT_EQ(Text(CONTROL_LOW_POWER_MAX_OFF_TIME), L"2147483648");
}

TEST_F(NavigationParameters, PowerManagementFields)
{
    OpenPowerManagement();
    Decode(Message().At(1, "01").At(57, "8A 0105 023C 47 FF 09"));
    EXPECT_EQ(Check(CONTROL_APM_ENABLED), BST_CHECKED);
    EXPECT_EQ(Text(CONTROL_APM_DUTY_CYCLE), L"50"); // ten steps of five
    EXPECT_EQ(Text(CONTROL_APM_CYCLES), L"5");      // low bytes
    EXPECT_EQ(Text(CONTROL_APM_TIME_BETWEEN_FIXES), L"60");
    EXPECT_EQ(Selection(CONTROL_APM_MAX_HORIZONTAL_ERROR), 4);
    EXPECT_EQ(Selection(CONTROL_APM_MAX_VERTICAL_ERROR), 7);
    EXPECT_EQ(Text(CONTROL_APM_MAX_RESPONSE_TIME), L"255");
    EXPECT_EQ(Selection(CONTROL_APM_ACCURACY_PRIORITY), 2);
    EXPECT_EQ(Selection(CONTROL_APM_TIMING_PRIORITY), 1);
}

TEST_F(NavigationParameters, DutyCycleReadsBackInStepsOfFive)
{
    OpenPowerManagement();
    Decode(Message().At(1, "01").At(57, "01"));
    EXPECT_EQ(Check(CONTROL_APM_ENABLED), BST_UNCHECKED);
    EXPECT_EQ(Text(CONTROL_APM_DUTY_CYCLE), L"5");
    Decode(Message().At(1, "01").At(57, "7F"));
    EXPECT_EQ(Check(CONTROL_APM_ENABLED), BST_UNCHECKED);
    EXPECT_EQ(Text(CONTROL_APM_DUTY_CYCLE), L"155");
}

TEST_F(NavigationParameters, ListIndexThatTheListDoesNotHaveSelectsNothing)
{
    OpenPowerManagement();
    Decode(Message().At(1, "01").At(62, "80").At(64, "0F"));
    EXPECT_EQ(Selection(CONTROL_APM_MAX_HORIZONTAL_ERROR), -1);
    EXPECT_EQ(Selection(CONTROL_APM_MAX_VERTICAL_ERROR), 0);
    EXPECT_EQ(Selection(CONTROL_APM_ACCURACY_PRIORITY), -1);
    EXPECT_EQ(Selection(CONTROL_APM_TIMING_PRIORITY), -1);
    Decode(Message().At(1, "01").At(62, "0F").At(64, "F4"));
    EXPECT_EQ(Selection(CONTROL_APM_MAX_HORIZONTAL_ERROR), 0);
    EXPECT_EQ(Selection(CONTROL_APM_MAX_VERTICAL_ERROR), -1);
    EXPECT_EQ(Selection(CONTROL_APM_ACCURACY_PRIORITY), 1);
    EXPECT_EQ(Selection(CONTROL_APM_TIMING_PRIORITY), 0);
}

TEST_F(NavigationParameters, PowerManagementOnlyWhenByte1SaysSo)
{
    OpenPowerManagement();
    for (const char* other : {"00", "02", "81"}) Decode(Message().At(1, other).At(57, "8A"));
    EXPECT_EQ(Check(CONTROL_APM_ENABLED), BST_INDETERMINATE);
    EXPECT_EQ(Text(CONTROL_APM_DUTY_CYCLE), L"?");
}

TEST_F(NavigationParameters, Of64BytesAreIgnored)
{
    OpenLowPower();
    Decode(Message().Shorten());
    EXPECT_EQ(Text(CONTROL_LOW_POWER_MAX_OFF_TIME), L"?");
    EXPECT_EQ(NavigationParameterRecord[0], 0);
    Decode(Message().At(64, "5A"));
    EXPECT_EQ(Text(CONTROL_LOW_POWER_MAX_OFF_TIME), L"0");
    EXPECT_EQ(NavigationParameterRecord[64], 0x5A);
}

TEST_F(NavigationParameters, OnlyInTheirDialogs)
{
    OpenLowPower();
    OpenAnotherKind(DialogKind::TricklePower);
    Decode(Message().At(1, "01"));
    EXPECT_EQ(Text(CONTROL_LOW_POWER_MAX_OFF_TIME), L"?");
    OpenPowerManagement();
    OpenAnotherKind(DialogKind::LowPower);
    Decode(Message().At(1, "01"));
    EXPECT_EQ(Text(CONTROL_APM_CYCLES), L"?");
}

// ---- DGPS status (27) ---------------------------------------------------------------------------------

class DgpsStatus : public SirfTest
{
protected:
    DgpsStatus()
    {
        OpenDialog(DialogKind::DgpsSource,
                   {.texts = {CONTROL_DGPS_STATUS_SOURCE, CONTROL_DGPS_STATUS_SVS,
                              CONTROL_DGPS_STATUS_CORRECTIONS, CONTROL_DGPS_STATUS_AGES}});
    }

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
    EXPECT_EQ(Text(CONTROL_DGPS_STATUS_SOURCE), L"DGPS Source: SBAS");
    EXPECT_EQ(Text(CONTROL_DGPS_STATUS_SVS), L"Sv:  3 13 120 22 0 5 6 7 8 9 10 255");
    // 100 -100 49 50 0 -50 -51 -150 -151 32767 -32768 1 cm
    EXPECT_EQ(Text(CONTROL_DGPS_STATUS_CORRECTIONS), L"Cor: 1 0 0 1 0 0 0 -1 -1 328 -327 0 m");
    EXPECT_EQ(Text(CONTROL_DGPS_STATUS_AGES), L"Age: 1 2 3 4 5 6 7 8 9 10 11 255 s");
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
        EXPECT_EQ(Text(CONTROL_DGPS_STATUS_SOURCE), text);
    }
}

TEST_F(DgpsStatus, NoSourceLeavesTheOtherLines)
{
    Decode(Message().At(1, "00"));
    EXPECT_EQ(Text(CONTROL_DGPS_STATUS_SOURCE), L"DGPS Source: None");
    EXPECT_EQ(Text(CONTROL_DGPS_STATUS_SVS), L"?");
    EXPECT_EQ(Text(CONTROL_DGPS_STATUS_CORRECTIONS), L"?");
    EXPECT_EQ(Text(CONTROL_DGPS_STATUS_AGES), L"?");
}

TEST_F(DgpsStatus, BeaconHasNoAges)
{
    Decode(Message());
    Decode(Message().At(1, "03"));
    EXPECT_EQ(Text(CONTROL_DGPS_STATUS_SVS), L"Sv:  3 13 120 22 0 5 6 7 8 9 10 255");
    EXPECT_EQ(Text(CONTROL_DGPS_STATUS_AGES), L"");
}

TEST_F(DgpsStatus, LongestLines)
{
    Payload message = Message().At(2, "FF FF FF FF FF FF FF FF FF FF FF FF");
    for (size_t i = 0; i < 12; ++i) message.At(16 + 3 * i, "FF 8000");
    Decode(message);
    EXPECT_EQ(Text(CONTROL_DGPS_STATUS_SVS), L"Sv:  255 255 255 255 255 255 255 255 255 255 255 255");
    EXPECT_EQ(Text(CONTROL_DGPS_STATUS_CORRECTIONS),
              L"Cor: -327 -327 -327 -327 -327 -327 -327 -327 -327 -327 -327 -327 m");
    EXPECT_EQ(Text(CONTROL_DGPS_STATUS_AGES), L"Age: 255 255 255 255 255 255 255 255 255 255 255 255 s");
}

TEST_F(DgpsStatus, Of51BytesIsIgnored)
{
    Decode(Message().Shorten());
    EXPECT_EQ(Text(CONTROL_DGPS_STATUS_SOURCE), L"?");
    EXPECT_EQ(DgpsStatusRecord[0], 0);
    Decode(Message());
    EXPECT_EQ(DgpsStatusRecord[0], 27);
    EXPECT_EQ(DgpsStatusRecord[51], 1);
}

TEST_F(DgpsStatus, OnlyInItsDialog)
{
    OpenAnotherKind(DialogKind::DgpsMode);
    Decode(Message());
    EXPECT_EQ(Text(CONTROL_DGPS_STATUS_SOURCE), L"?");
}

// ---- Differential data (29) ---------------------------------------------------------------------------

class DifferentialData : public SirfTest
{
protected:
    DifferentialData()
    {
        OpenDialog(DialogKind::DgpsSource,
                   {.texts = {CONTROL_DGPS_DATA_SOURCE, CONTROL_DGPS_DATA_SVS, CONTROL_DGPS_DATA_CORRECTIONS,
                              CONTROL_DGPS_DATA_AGES}});
    }

    static Payload Message(const char* sv, const char* correction, const char* age)
    {
        return Payload(29, 26).At(1, sv).At(5, "02").At(6, correction).At(14, age);
    }
    static Payload EndOfSet() { return Payload(41, 91); }
};

TEST_F(DifferentialData, IsCollectedUntilTheNextNavigationMessage)
{
    Decode(Message("0007", "C0600000", "41440000")); // -3.5 m, 12.25 s
    EXPECT_EQ(Text(CONTROL_DGPS_DATA_SOURCE), L"DGPS Source: External RTCM");
    EXPECT_EQ(Text(CONTROL_DGPS_DATA_SVS), L"Sv:  7");
    EXPECT_EQ(Text(CONTROL_DGPS_DATA_CORRECTIONS), L"Cor: -4"); // half to even
    EXPECT_EQ(Text(CONTROL_DGPS_DATA_AGES), L"Age: 12");
    Decode(Message("0102", "40F80000", "00000000").At(5, "09"));              // 7.75 m
    EXPECT_EQ(Text(CONTROL_DGPS_DATA_SOURCE), L"DGPS Source: External RTCM"); // the first message's
    EXPECT_EQ(Text(CONTROL_DGPS_DATA_SVS), L"Sv:  7 258");
    EXPECT_EQ(Text(CONTROL_DGPS_DATA_CORRECTIONS), L"Cor: -4 8");
    EXPECT_EQ(Text(CONTROL_DGPS_DATA_AGES), L"Age: 12 0");
    Decode(EndOfSet());
    EXPECT_EQ(Text(CONTROL_DGPS_DATA_SVS), L"Sv:  7 258");
    EXPECT_EQ(Text(CONTROL_DGPS_DATA_CORRECTIONS), L"Cor: -4 8 m");
    EXPECT_EQ(Text(CONTROL_DGPS_DATA_AGES), L"Age: 12 0 s");
    Decode(Message("0003", "00000000", "3F800000").At(5, "09"));
    EXPECT_EQ(Text(CONTROL_DGPS_DATA_SOURCE), L"DGPS Source: 9");
    EXPECT_EQ(Text(CONTROL_DGPS_DATA_SVS), L"Sv:  3");
    EXPECT_EQ(Text(CONTROL_DGPS_DATA_CORRECTIONS), L"Cor: 0");
    EXPECT_EQ(Text(CONTROL_DGPS_DATA_AGES), L"Age: 1");
}

TEST_F(DifferentialData, NavigationMessageWithoutDataChangesNothing)
{
    Decode(EndOfSet());
    EXPECT_EQ(Text(CONTROL_DGPS_DATA_CORRECTIONS), L"?");
    Decode(Message("0007", "00000000", "00000000"));
    Decode(EndOfSet());
    Decode(EndOfSet());
    EXPECT_EQ(Text(CONTROL_DGPS_DATA_CORRECTIONS), L"Cor: 0 m");
}

TEST_F(DifferentialData, TooShortANavigationMessageEndsNothing)
{
    Decode(Message("0007", "00000000", "00000000"));
    Decode(EndOfSet().Shorten());
    EXPECT_EQ(Text(CONTROL_DGPS_DATA_CORRECTIONS), L"Cor: 0");
}

TEST_F(DifferentialData, ValuesThatAreNoNumbersShowZero)
{
    Decode(Message("0007", "7FC00000", "7F800000"));
    Decode(Message("0008", "FF800000", "FFFFFFFF"));
    EXPECT_EQ(Text(CONTROL_DGPS_DATA_CORRECTIONS), L"Cor: 0 0");
    EXPECT_EQ(Text(CONTROL_DGPS_DATA_AGES), L"Age: 0 0");
}

TEST_F(DifferentialData, LinesTakeWhatFitsWithTheirUnit)
{
    // 39 digits and a blank: six fit after "Cor:", then the shorter ones up to 253 characters.
    for (int i = 0; i < 60; ++i) Decode(Message("FFFF", "7F7FFFFF", "00000000"));
    const std::wstring largest = L" 340282346638528859811704183484516925440";
    std::wstring corrections = L"Cor:";
    for (int i = 0; i < 6; ++i) corrections += largest;
    EXPECT_EQ(Text(CONTROL_DGPS_DATA_CORRECTIONS), corrections);
    for (int i = 0; i < 60; ++i) Decode(Message("FFFF", "00000000", "00000000"));
    while (corrections.size() + 2 <= 253) corrections += L" 0";
    EXPECT_EQ(Text(CONTROL_DGPS_DATA_CORRECTIONS), corrections);
    std::wstring svs = L"Sv: ", ages = L"Age:";
    while (svs.size() + 6 <= 253) svs += L" 65535";
    for (int i = 0; i < 120; ++i) ages += L" 0";
    EXPECT_EQ(Text(CONTROL_DGPS_DATA_SVS), svs);
    EXPECT_EQ(Text(CONTROL_DGPS_DATA_AGES), ages);
    Decode(EndOfSet());
    EXPECT_EQ(Text(CONTROL_DGPS_DATA_CORRECTIONS), corrections + L" m");
    EXPECT_EQ(Text(CONTROL_DGPS_DATA_AGES), ages + L" s");
}

TEST_F(DifferentialData, Of25BytesIsIgnored)
{
    Decode(Message("0007", "00000000", "00000000").Shorten());
    EXPECT_EQ(Text(CONTROL_DGPS_DATA_SOURCE), L"?");
    EXPECT_EQ(CorrectionRecord[0], 0);
    Decode(Message("0007", "00000000", "00000000").At(25, "5A"));
    EXPECT_EQ(CorrectionRecord[25], 0x5A);
}

TEST_F(DifferentialData, OnlyInItsDialog)
{
    OpenAnotherKind(DialogKind::DgpsMode);
    Decode(Message("0007", "00000000", "00000000"));
    EXPECT_EQ(Text(CONTROL_DGPS_DATA_SOURCE), L"?");
    EXPECT_EQ(CorrectionRecord[0], 29);
}

TEST_F(DifferentialData, SetThatEndsWhileTheDialogIsClosedIsForgotten)
{
    Decode(Message("0007", "00000000", "00000000"));
    WithdrawDialog();
    Decode(EndOfSet());
    PublishDialog(DialogKind::DgpsSource, Dialog);
    Decode(Message("0008", "00000000", "00000000"));
    EXPECT_EQ(Text(CONTROL_DGPS_DATA_SVS), L"Sv:  8");
}

// ---- Settings (43) ------------------------------------------------------------------------------------

class CommandParameters : public SirfTest
{
};

TEST_F(CommandParameters, InitializeDataSource)
{
    OpenDialog(
        DialogKind::InitializeDataSource,
        {.texts = {CONTROL_INIT_ECEF_X, CONTROL_INIT_ECEF_Y, CONTROL_INIT_ECEF_Z, CONTROL_INIT_CLOCK_OFFSET,
                   CONTROL_INIT_TIME_OF_WEEK, CONTROL_INIT_WEEK, CONTROL_INIT_CHANNELS},
         .boxes = {CONTROL_INIT_SNAP_START, CONTROL_INIT_HOT_START, CONTROL_INIT_WARM_START_INIT,
                   CONTROL_INIT_WARM_START_NO_INIT, CONTROL_INIT_COLD_START, CONTROL_INIT_FACTORY_RESET,
                   CONTROL_INIT_SYSTEM_RESET, CONTROL_INIT_NAVLIB, CONTROL_INIT_DEBUG, CONTROL_INIT_CLEAR}});
    Decode(Payload("2B 80 0030A854 FFFFFFFF 80000000 00017700 039AD500 0834 0C 10"));
    EXPECT_EQ(Text(CONTROL_INIT_ECEF_X), L"3188820");
    EXPECT_EQ(Text(CONTROL_INIT_ECEF_Y), L"4294967295"); // negative ones read as large ones
    EXPECT_EQ(Text(CONTROL_INIT_ECEF_Z), L"2147483648");
    EXPECT_EQ(Text(CONTROL_INIT_CLOCK_OFFSET), L"96000");
    EXPECT_EQ(Text(CONTROL_INIT_TIME_OF_WEEK), L"604787"); // of 60478720 hundredths
    EXPECT_EQ(Text(CONTROL_INIT_WEEK), L"2100");
    EXPECT_EQ(Text(CONTROL_INIT_CHANNELS), L"12");
    EXPECT_EQ(Check(CONTROL_INIT_SNAP_START), BST_CHECKED);
    EXPECT_EQ(Check(CONTROL_INIT_NAVLIB), BST_CHECKED);
    EXPECT_EQ(Check(CONTROL_INIT_DEBUG), BST_UNCHECKED);
    EXPECT_EQ(Check(CONTROL_INIT_CLEAR), BST_UNCHECKED);
}

TEST_F(CommandParameters, ResetConfigurations)
{
    OpenDialog(
        DialogKind::InitializeDataSource,
        {.boxes = {CONTROL_INIT_SNAP_START, CONTROL_INIT_HOT_START, CONTROL_INIT_WARM_START_INIT,
                   CONTROL_INIT_WARM_START_NO_INIT, CONTROL_INIT_COLD_START, CONTROL_INIT_FACTORY_RESET,
                   CONTROL_INIT_SYSTEM_RESET, CONTROL_INIT_NAVLIB, CONTROL_INIT_DEBUG, CONTROL_INIT_CLEAR}});
    struct Row {
        const char* map;
        int option;
        bool navLib, debug, clear;
    };
    const Row rows[] = {
        {"00", CONTROL_INIT_SNAP_START, false, false, false},
        {"40", CONTROL_INIT_HOT_START, false, false, false},
        {"03", CONTROL_INIT_WARM_START_INIT, false, false, false},
        {"02", CONTROL_INIT_WARM_START_NO_INIT, false, false, false},
        {"04", CONTROL_INIT_COLD_START, false, false, false},
        {"08", CONTROL_INIT_FACTORY_RESET, false, false, false},
        {"88", CONTROL_INIT_SYSTEM_RESET, false, false, true},
        {"14", CONTROL_INIT_COLD_START, true, false, false},
        {"B0", CONTROL_INIT_SNAP_START, true, true, true},
        {"01", CONTROL_INIT_SNAP_START, false, false, false},
        {"FF", CONTROL_INIT_WARM_START_INIT, true, true, true},
        {"FE", CONTROL_INIT_WARM_START_NO_INIT, true, true, true},
        {"CC", CONTROL_INIT_COLD_START, false, false, true},
        {"C8", CONTROL_INIT_SYSTEM_RESET, false, false, true},
        {"48", CONTROL_INIT_FACTORY_RESET, false, false, false},
        {"E0", CONTROL_INIT_HOT_START, false, true, true},
    };
    for (const Row& row : rows) {
        Decode(Payload(43, 26).At(1, "80").At(25, row.map));
        for (int option = CONTROL_INIT_SNAP_START; option <= CONTROL_INIT_SYSTEM_RESET; ++option)
            EXPECT_EQ(Check(option) == BST_CHECKED, option == row.option) << row.map << " " << option;
        EXPECT_EQ(Check(CONTROL_INIT_NAVLIB), row.navLib ? BST_CHECKED : BST_UNCHECKED) << row.map;
        EXPECT_EQ(Check(CONTROL_INIT_DEBUG), row.debug ? BST_CHECKED : BST_UNCHECKED) << row.map;
        EXPECT_EQ(Check(CONTROL_INIT_CLEAR), row.clear ? BST_CHECKED : BST_UNCHECKED) << row.map;
    }
}

TEST_F(CommandParameters, DgpsSource)
{
    OpenDialog(DialogKind::DgpsSource,
               {.texts = {CONTROL_DGPS_BEACON_FREQUENCY, CONTROL_DGPS_BEACON_BIT_RATE},
                .lists = {{CONTROL_DGPS_SOURCE, 5}}});
    Decode(Payload("2B 85 03 0004F588 C8"));
    EXPECT_EQ(Selection(CONTROL_DGPS_SOURCE), 3);
    EXPECT_EQ(Text(CONTROL_DGPS_BEACON_FREQUENCY), L"325000");
    EXPECT_EQ(Text(CONTROL_DGPS_BEACON_BIT_RATE), L"200");
    Decode(Payload("2B 85 01 0004F588 C8")); // the beacon is not the source
    EXPECT_EQ(Selection(CONTROL_DGPS_SOURCE), 1);
    EXPECT_EQ(Text(CONTROL_DGPS_BEACON_FREQUENCY), L"0");
    EXPECT_EQ(Text(CONTROL_DGPS_BEACON_BIT_RATE), L"0");
    Decode(Payload("2B 85 05 0004F588 C8"));
    EXPECT_EQ(Selection(CONTROL_DGPS_SOURCE), -1);
}

TEST_F(CommandParameters, ModeControl)
{
    OpenDialog(DialogKind::ModeControl,
               {.texts = {CONTROL_MODE_ALTITUDE, CONTROL_MODE_DEGRADED_TIMEOUT, CONTROL_MODE_DR_TIMEOUT},
                .boxes = {CONTROL_MODE_TRACK_SMOOTHING},
                .lists = {{CONTROL_MODE_DEGRADED, 5},
                          {CONTROL_MODE_ALTITUDE_HOLD, 3},
                          {CONTROL_MODE_ALTITUDE_SOURCE, 2}}});
    Decode(Payload("2B 88 FFFF 04 FFFF 03E8 02 01 FF 1E 78 01"));
    EXPECT_EQ(Selection(CONTROL_MODE_DEGRADED), 4);
    EXPECT_EQ(Text(CONTROL_MODE_ALTITUDE), L"1000");
    EXPECT_EQ(Selection(CONTROL_MODE_ALTITUDE_HOLD), 2);
    EXPECT_EQ(Selection(CONTROL_MODE_ALTITUDE_SOURCE), 1);
    EXPECT_EQ(Text(CONTROL_MODE_DEGRADED_TIMEOUT), L"30");
    EXPECT_EQ(Text(CONTROL_MODE_DR_TIMEOUT), L"120");
    EXPECT_EQ(Check(CONTROL_MODE_TRACK_SMOOTHING), BST_CHECKED);
    Decode(Payload("2B 88 0000 05 0000 FC18 03 02 00 00 00 00")); // altitude -1000
    EXPECT_EQ(Selection(CONTROL_MODE_DEGRADED), -1);
    EXPECT_EQ(Text(CONTROL_MODE_ALTITUDE), L"64536");
    EXPECT_EQ(Selection(CONTROL_MODE_ALTITUDE_HOLD), -1);
    EXPECT_EQ(Selection(CONTROL_MODE_ALTITUDE_SOURCE), -1);
    EXPECT_EQ(Check(CONTROL_MODE_TRACK_SMOOTHING), BST_UNCHECKED);
}

TEST_F(CommandParameters, DopMask)
{
    OpenDialog(DialogKind::DopMask, {.texts = {CONTROL_DOP_GDOP, CONTROL_DOP_PDOP, CONTROL_DOP_HDOP},
                                     .lists = {{CONTROL_DOP_SELECTION, 5}}});
    Decode(Payload("2B 89 02 0A 0B FF"));
    EXPECT_EQ(Selection(CONTROL_DOP_SELECTION), 2);
    EXPECT_EQ(Text(CONTROL_DOP_GDOP), L"10");
    EXPECT_EQ(Text(CONTROL_DOP_PDOP), L"11");
    EXPECT_EQ(Text(CONTROL_DOP_HDOP), L"255");
}

TEST_F(CommandParameters, DgpsMode)
{
    OpenDialog(DialogKind::DgpsMode, {.texts = {CONTROL_DGPS_TIMEOUT}, .lists = {{CONTROL_DGPS_MODE, 3}}});
    Decode(Payload("2B 8A 01 FF"));
    EXPECT_EQ(Selection(CONTROL_DGPS_MODE), 1);
    EXPECT_EQ(Text(CONTROL_DGPS_TIMEOUT), L"255");
}

TEST_F(CommandParameters, ElevationMask)
{
    OpenDialog(DialogKind::ElevationMask,
               {.texts = {CONTROL_ELEVATION_TRACKING, CONTROL_ELEVATION_NAVIGATION}});
    Decode(Payload("2B 8B 0032 004B"));
    EXPECT_EQ(Text(CONTROL_ELEVATION_TRACKING), L"5.0");
    EXPECT_EQ(Text(CONTROL_ELEVATION_NAVIGATION), L"7.5");
    Decode(Payload("2B 8B FFCF 0000")); // a negative one reads as a large one
    EXPECT_EQ(Text(CONTROL_ELEVATION_TRACKING), L"6548.7");
    EXPECT_EQ(Text(CONTROL_ELEVATION_NAVIGATION), L"0.0");
}

TEST_F(CommandParameters, PowerMask)
{
    OpenDialog(DialogKind::PowerMask, {.texts = {CONTROL_POWER_TRACKING, CONTROL_POWER_NAVIGATION}});
    Decode(Payload("2B 8C 1C 32"));
    EXPECT_EQ(Text(CONTROL_POWER_TRACKING), L"28");
    EXPECT_EQ(Text(CONTROL_POWER_NAVIGATION), L"50");
}

TEST_F(CommandParameters, StaticNavigation)
{
    OpenDialog(DialogKind::StaticNavigation, {.boxes = {CONTROL_STATIC_NAVIGATION}});
    Decode(Payload("2B 8F 01"));
    EXPECT_EQ(Check(CONTROL_STATIC_NAVIGATION), BST_CHECKED);
    Decode(Payload("2B 8F 00"));
    EXPECT_EQ(Check(CONTROL_STATIC_NAVIGATION), BST_UNCHECKED);
    Decode(Payload("2B 8F 80"));
    EXPECT_EQ(Check(CONTROL_STATIC_NAVIGATION), BST_CHECKED);
}

TEST_F(CommandParameters, TricklePower)
{
    OpenDialog(DialogKind::TricklePower, {.texts = {CONTROL_TRICKLE_DUTY_CYCLE, CONTROL_TRICKLE_ON_TIME},
                                          .boxes = {CONTROL_TRICKLE_PUSH_TO_FIX}});
    Decode(Payload("2B 97 0100 007B 0000012C"));
    EXPECT_EQ(Check(CONTROL_TRICKLE_PUSH_TO_FIX), BST_CHECKED);
    EXPECT_EQ(Text(CONTROL_TRICKLE_DUTY_CYCLE), L"12.3");
    EXPECT_EQ(Text(CONTROL_TRICKLE_ON_TIME), L"300");
    Decode(Payload("2B 97 0000 03E8 00000384"));
    EXPECT_EQ(Check(CONTROL_TRICKLE_PUSH_TO_FIX), BST_UNCHECKED);
    EXPECT_EQ(Text(CONTROL_TRICKLE_DUTY_CYCLE), L"100.0");
    EXPECT_EQ(Text(CONTROL_TRICKLE_ON_TIME), L"900");
}

TEST_F(CommandParameters, LowPower)
{
    OpenDialog(DialogKind::LowPower, {.texts = {CONTROL_LOW_POWER_MAX_OFF_TIME,
                                                CONTROL_LOW_POWER_MAX_SEARCH_TIME, CONTROL_LOW_POWER_PERIOD},
                                      .boxes = {CONTROL_LOW_POWER_ADAPTIVE}});
    Decode(Payload("2B A7 00007530 0001D4C0 00000708 0001"));
    EXPECT_EQ(Text(CONTROL_LOW_POWER_MAX_OFF_TIME), L"30000");
    EXPECT_EQ(Text(CONTROL_LOW_POWER_MAX_SEARCH_TIME), L"120000");
    EXPECT_EQ(Text(CONTROL_LOW_POWER_PERIOD), L"1800");
    EXPECT_EQ(Check(CONTROL_LOW_POWER_ADAPTIVE), BST_CHECKED);
}

TEST_F(CommandParameters, Sbas)
{
    OpenDialog(DialogKind::Sbas,
               {.lists = {{CONTROL_SBAS_PRN, 20}, {CONTROL_SBAS_MODE, 2}, {CONTROL_SBAS_TIMEOUT, 2}}});
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
        EXPECT_EQ(Selection(CONTROL_SBAS_PRN), row.prn) << row.settings;
        EXPECT_EQ(Selection(CONTROL_SBAS_MODE), row.mode) << row.settings;
        EXPECT_EQ(Selection(CONTROL_SBAS_TIMEOUT), row.timeout) << row.settings;
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
        {128, 26, DialogKind::InitializeDataSource, CONTROL_INIT_ECEF_X, CONTROL_INIT_NAVLIB, 0},
        {133, 8, DialogKind::DgpsSource, CONTROL_DGPS_BEACON_FREQUENCY, 0, CONTROL_DGPS_SOURCE},
        {136, 15, DialogKind::ModeControl, CONTROL_MODE_ALTITUDE, CONTROL_MODE_TRACK_SMOOTHING,
         CONTROL_MODE_DEGRADED},
        {137, 6, DialogKind::DopMask, CONTROL_DOP_GDOP, 0, CONTROL_DOP_SELECTION},
        {138, 4, DialogKind::DgpsMode, CONTROL_DGPS_TIMEOUT, 0, CONTROL_DGPS_MODE},
        {139, 6, DialogKind::ElevationMask, CONTROL_ELEVATION_TRACKING, 0, 0},
        {140, 4, DialogKind::PowerMask, CONTROL_POWER_TRACKING, 0, 0},
        {143, 3, DialogKind::StaticNavigation, 0, CONTROL_STATIC_NAVIGATION, 0},
        {151, 10, DialogKind::TricklePower, CONTROL_TRICKLE_DUTY_CYCLE, CONTROL_TRICKLE_PUSH_TO_FIX, 0},
        {167, 16, DialogKind::LowPower, CONTROL_LOW_POWER_MAX_OFF_TIME, CONTROL_LOW_POWER_ADAPTIVE, 0},
        {170, 7, DialogKind::Sbas, 0, 0, CONTROL_SBAS_MODE},
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
    OpenDialog(DialogKind::AdvancedPowerManagement,
               {.texts = {CONTROL_APM_CYCLES}, .boxes = {CONTROL_APM_ENABLED}});
    Decode(Payload(43, 26).At(1, "35 01 02"));
    EXPECT_EQ(Text(CONTROL_APM_CYCLES), L"?");
    OpenDialog(DialogKind::SirfSetMessageRate, {.texts = {CONTROL_RATE_MESSAGE_ID, CONTROL_RATE_SECONDS}});
    Decode(Payload(43, 26).At(1, "A6 00 02 05"));
    EXPECT_EQ(Text(CONTROL_RATE_SECONDS), L"?");
}

TEST_F(CommandParameters, RecordHolds26Bytes)
{
    Payload answer(43, 40);
    answer.At(1, "80").At(25, "5A FF");
    Decode(answer);
    EXPECT_EQ(ParameterRecord[0], 43);
    EXPECT_EQ(ParameterRecord[25], 0x5A);
    Decode(Payload("2B 8F 01")); // after a shorter one nothing is left of the longer one
    EXPECT_EQ(ParameterRecord[2], 1);
    EXPECT_EQ(ParameterRecord[25], 0);
}

// ---- SBAS satellites (4) ------------------------------------------------------------------------------

class SbasSatellites : public SirfTest
{
protected:
    SbasSatellites()
    {
        OpenDialog(DialogKind::Sbas,
                   {.texts = {CONTROL_SBAS_SV, CONTROL_SBAS_CARRIER_TO_NOISE, CONTROL_SBAS_STATE,
                              CONTROL_SBAS_AZIMUTH, CONTROL_SBAS_ELEVATION}});
    }
};

TEST_F(SbasSatellites, ShowTheirChannel)
{
    Decode(
        Payload(4, 188).At(7, "02").At(8, "78 F1 2D 01BF 28282828282828282828").At(23, "07 10 10 0001 0A"));
    EXPECT_EQ(Text(CONTROL_SBAS_SV), L"120");
    EXPECT_EQ(Text(CONTROL_SBAS_CARRIER_TO_NOISE), L"40");
    EXPECT_EQ(Text(CONTROL_SBAS_STATE), L"1BF");    // the whole state
    EXPECT_EQ(Text(CONTROL_SBAS_AZIMUTH), L"361");  // 241 * 3 / 2
    EXPECT_EQ(Text(CONTROL_SBAS_ELEVATION), L"22"); // 45 / 2
}

TEST_F(SbasSatellites, NumbersAbove32AreSbas)
{
    Decode(Payload(4, 188).At(7, "01").At(8, "20 00 00 0001"));
    EXPECT_EQ(Text(CONTROL_SBAS_SV), L"?");
    Decode(Payload(4, 188).At(7, "01").At(8, "21 00 00 0005"));
    EXPECT_EQ(Text(CONTROL_SBAS_SV), L"33");
    EXPECT_EQ(Text(CONTROL_SBAS_STATE), L"05");
}

TEST_F(SbasSatellites, LastOfSeveralStays)
{
    Decode(Payload(4, 188).At(7, "03").At(8, "78").At(23, "7E").At(38, "0B"));
    EXPECT_EQ(Text(CONTROL_SBAS_SV), L"126");
}

TEST_F(SbasSatellites, OnlyInTheirDialog)
{
    OpenAnotherKind(DialogKind::DgpsMode);
    Decode(Payload(4, 188).At(7, "01").At(8, "78"));
    EXPECT_EQ(Text(CONTROL_SBAS_SV), L"?");
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
        OpenDialog(kind, {.texts = {CONTROL_SIRF_TIME, CONTROL_INIT_TIME_OF_WEEK}});
        Decode(Navigation());
        EXPECT_EQ(Text(CONTROL_SIRF_TIME), L"07:08:09");
        EXPECT_EQ(Text(CONTROL_INIT_TIME_OF_WEEK), L"?");
        ResetSirfDecoder();
    }
    for (const DialogKind kind : kinds) {
        OpenDialog(kind, {.texts = {CONTROL_SIRF_TIME, CONTROL_INIT_TIME_OF_WEEK}});
        Decode(Geodetic());
        EXPECT_EQ(Text(CONTROL_SIRF_TIME), L"23:59:58");
        EXPECT_EQ(Text(CONTROL_INIT_TIME_OF_WEEK), L"?");
    }
}

TEST_F(Times, TimeOfWeekInInitializeDataSource)
{
    OpenDialog(DialogKind::InitializeDataSource, {.texts = {CONTROL_SIRF_TIME, CONTROL_INIT_TIME_OF_WEEK}});
    Decode(Navigation());
    EXPECT_EQ(Text(CONTROL_INIT_TIME_OF_WEEK), L"0"); // known from the geodetic message alone
    Decode(Geodetic());
    EXPECT_EQ(Text(CONTROL_INIT_TIME_OF_WEEK), L"345678");
    EXPECT_EQ(Text(CONTROL_SIRF_TIME), L"?");
}

TEST_F(Times, AfterAGeodeticMessageTheOtherShowsNone)
{
    OpenDialog(DialogKind::TricklePower, {.texts = {CONTROL_SIRF_TIME}});
    Decode(Geodetic());
    OpenDialog(DialogKind::TricklePower, {.texts = {CONTROL_SIRF_TIME}});
    Decode(Navigation());
    EXPECT_EQ(Text(CONTROL_SIRF_TIME), L"?");
}

TEST_F(Times, InNoOtherDialog)
{
    for (uint32_t kind = 1; kind <= 23; ++kind) {
        if (kind == 3 || kind == 8 || kind == 9 || kind == 10 || kind == 19) continue;
        OpenDialog(static_cast<DialogKind>(kind), {.texts = {CONTROL_SIRF_TIME, CONTROL_INIT_TIME_OF_WEEK}});
        Decode(Geodetic());
        EXPECT_EQ(Text(CONTROL_SIRF_TIME), L"?") << kind;
        EXPECT_EQ(Text(CONTROL_INIT_TIME_OF_WEEK), L"?") << kind;
    }
}

} // namespace
