// SPDX-License-Identifier: MIT
#include "nmea/dialogs/command_dialog.h"

#include "resources/resource_ids.h"
#include "tests/unit/nmea/dialogs/command_dialog_test.h"

namespace
{

constexpr int Message = CONTROL_NMEA_RATE_MESSAGE, Seconds = CONTROL_NMEA_RATE_SECONDS,
              Checksum = CONTROL_NMEA_RATE_CHECKSUM, Set = CONTROL_NMEA_RATE_SET;

class SetMessageRateDialog : public CommandDialogTest
{
};
IN_BOTH_LAYOUTS(SetMessageRateDialog);

class SetMessageRateDialogTyping : public CommandDialogTest
{
};
IN_TOUCH_LAYOUT(SetMessageRateDialogTyping);

TEST_P(SetMessageRateDialog, InitialState)
{
    Open(&::NmeaMessageRateDialog, [](HWND dialog) {
        EXPECT_EQ(HeadlessItems(dialog, Message),
                  (std::vector<std::wstring>{L"GGA", L"GLL", L"GSA", L"GSV", L"RMC", L"VTG", L"MSS",
                                             L"User 8", L"ZDA", L"User10"}));
        EXPECT_EQ(HeadlessItems(dialog, Seconds), (std::vector<std::wstring>{L"0", L"1", L"2", L"5", L"10"}));
        // A keypad's lists always show an entry: it is selected, and it is not a rate that switches off.
        EXPECT_EQ(HeadlessSelection(dialog, Message), GetParam() ? 0 : -1);
        EXPECT_EQ(HeadlessSelection(dialog, Seconds), GetParam() ? 1 : -1);
        EXPECT_EQ(HeadlessCheck(dialog, Checksum), BST_CHECKED);
        for (const int stamp : {CONTROL_STAMP_GGA, CONTROL_STAMP_GLL, CONTROL_STAMP_GSA, CONTROL_STAMP_GSV,
                                CONTROL_STAMP_MSS, CONTROL_STAMP_RMC, CONTROL_STAMP_VTG, CONTROL_STAMP_ZDA,
                                CONTROL_STAMP_SRF150, CONTROL_STAMP_SRF151, CONTROL_STAMP_SRF152,
                                CONTROL_STAMP_SRF154, CONTROL_STAMP_SRFTXT, CONTROL_STAMP_OTHER})
            EXPECT_EQ(HeadlessText(dialog, stamp), L"") << stamp;
    });
}

TEST_P(SetMessageRateDialog, MessageNumbers)
{
    constexpr const char* Sentences[] = {
        "$PSRF103,0,0,1,1*25\r\n", "$PSRF103,1,0,1,1*24\r\n", "$PSRF103,2,0,1,1*27\r\n",
        "$PSRF103,3,0,1,1*26\r\n", "$PSRF103,4,0,1,1*21\r\n", "$PSRF103,5,0,1,1*20\r\n",
        "$PSRF103,6,0,1,1*23\r\n", "$PSRF103,7,0,1,1*22\r\n", "$PSRF103,8,0,1,1*2D\r\n",
        "$PSRF103,9,0,1,1*2C\r\n",
    };
    Open(&::NmeaMessageRateDialog, [&](HWND dialog) {
        Choose(dialog, Seconds, L"1");
        for (int i = 0; i < 10; ++i) {
            HeadlessChoose(dialog, Message, i);
            HeadlessClick(dialog, Set);
            EXPECT_EQ(TakeSent(), Sentences[i]);
        }
    });
}

TEST_P(SetMessageRateDialog, RatesAndChecksums)
{
    Open(&::NmeaMessageRateDialog, [&](HWND dialog) {
        Choose(dialog, Message, L"GSV");
        Choose(dialog, Seconds, L"5");
        HeadlessClick(dialog, Set);
        EXPECT_EQ(TakeSent(), "$PSRF103,3,0,5,1*22\r\n");
        Choose(dialog, Message, L"RMC");
        Choose(dialog, Seconds, L"10");
        SendDlgItemMessageW(dialog, Checksum, BM_SETCHECK, BST_UNCHECKED, 0);
        HeadlessClick(dialog, Set);
        EXPECT_EQ(TakeSent(), "$PSRF103,4,0,10,0*10\r\n");
        Choose(dialog, Message, L"GGA");
        Choose(dialog, Seconds, L"0");
        HeadlessClick(dialog, Set);
        EXPECT_EQ(TakeSent(), "$PSRF103,0,0,0,0*25\r\n");
        EXPECT_TRUE(TakeBoxes().empty());
    });
}

TEST_P(SetMessageRateDialog, RefusesWhatIsMissingInItsOrder)
{
    Open(&::NmeaMessageRateDialog, [&](HWND dialog) {
        Unchoose(dialog, Message);
        Unchoose(dialog, Seconds);
        SendDlgItemMessageW(dialog, Checksum, BM_SETCHECK, BST_INDETERMINATE, 0);
        HeadlessClick(dialog, Set);
        EXPECT_TRUE(Refuses(L"Message", L"Select a message."));
        Choose(dialog, Message, L"GGA");
        HeadlessClick(dialog, Set);
        EXPECT_TRUE(Refuses(L"Update Rate", L"Range 0-255 s"));
        Choose(dialog, Seconds, L"1");
        HeadlessClick(dialog, Set);
        EXPECT_TRUE(Refuses(L"Use Checksum", L"Indeterminate"));
        EXPECT_EQ(ClearOnNextAppend.load(), 0);
        SendDlgItemMessageW(dialog, Checksum, BM_SETCHECK, BST_CHECKED, 0);
        HeadlessClick(dialog, Set);
        EXPECT_EQ(TakeSent(), "$PSRF103,0,0,1,1*25\r\n");
    });
}

TEST_P(SetMessageRateDialogTyping, TypedRates)
{
    Open(&::NmeaMessageRateDialog, [&](HWND dialog) {
        Choose(dialog, Message, L"RMC");
        HeadlessType(dialog, Seconds, L"7");
        HeadlessClick(dialog, Set);
        EXPECT_EQ(TakeSent(), "$PSRF103,4,0,7,1*27\r\n");
        Choose(dialog, Message, L"User10");
        HeadlessType(dialog, Seconds, L"255");
        HeadlessClick(dialog, Set);
        EXPECT_EQ(TakeSent(), "$PSRF103,9,0,255,1*2F\r\n");
        for (const wchar_t* typed : {L"256", L"-1", L"", L"often", L"0.2", L"5x", L"1 0", L"1e1"}) {
            HeadlessType(dialog, Seconds, typed);
            HeadlessClick(dialog, Set);
            EXPECT_TRUE(Refuses(L"Update Rate", L"Range 0-255 s")) << typed;
        }
    });
}

TEST_P(SetMessageRateDialog, StampsTheArrivalOfEachSentence)
{
    struct Row {
        const char* sentence;
        int stamp;
    };
    constexpr Row Rows[] = {
        {"GPGGA", CONTROL_STAMP_GGA},        {"GPGLL", CONTROL_STAMP_GLL},
        {"GPGSA,1", CONTROL_STAMP_GSA},      {"GPGSV", CONTROL_STAMP_GSV},
        {"GPMSS,55", CONTROL_STAMP_MSS},     {"GPRMC", CONTROL_STAMP_RMC},
        {"GPVTG", CONTROL_STAMP_VTG},        {"GPZDA", CONTROL_STAMP_ZDA},
        {"PSRF150,1", CONTROL_STAMP_SRF150}, {"PSRFTXT,x", CONTROL_STAMP_SRFTXT},
        {"GPXYZ", CONTROL_STAMP_OTHER},      {"PSRF151", CONTROL_STAMP_OTHER},
        {"PSRF152", CONTROL_STAMP_OTHER},    {"PSRF154", CONTROL_STAMP_OTHER},
    };
    SYSTEMTIME now = {};
    now.wYear = 2026;
    now.wMonth = 6;
    now.wDay = 21;
    now.wHour = 7;
    now.wMinute = 5;
    Open(&::NmeaMessageRateDialog, [&](HWND dialog) {
        for (const Row& row : Rows) {
            now.wSecond = static_cast<WORD>(now.wSecond + 1);
            HeadlessSetLocalTime(now);
            FeedSentence(row.sentence);
            wchar_t expected[16];
            std::swprintf(expected, 16, L"07:05:%02d", now.wSecond);
            EXPECT_EQ(HeadlessText(dialog, row.stamp), expected) << row.sentence;
        }
        // The others keep theirs: that of GGA is still the first. Unknown sentences share one stamp.
        EXPECT_EQ(HeadlessText(dialog, CONTROL_STAMP_GGA), L"07:05:01");
        for (const int stamp : {CONTROL_STAMP_SRF151, CONTROL_STAMP_SRF152, CONTROL_STAMP_SRF154})
            EXPECT_EQ(HeadlessText(dialog, stamp), L"") << stamp;
    });
}

} // namespace
