// SPDX-License-Identifier: MIT
#include "nmea/dialogs/command_dialog.h"

#include "resources/resource_ids.h"
#include "tests/unit/nmea/dialogs/command_dialog_test.h"

namespace
{

constexpr int EcefX = CONTROL_NAVINIT_ECEF_X, EcefY = CONTROL_NAVINIT_ECEF_Y, EcefZ = CONTROL_NAVINIT_ECEF_Z,
              ClockOffset = CONTROL_NAVINIT_CLOCK_OFFSET, TimeOfWeek = CONTROL_NAVINIT_TIME_OF_WEEK,
              Week = CONTROL_NAVINIT_WEEK, Channels = CONTROL_NAVINIT_CHANNELS, Set = CONTROL_NAVINIT_SET;
constexpr int SnapStart = CONTROL_NAVINIT_SNAP_START, HotStart = CONTROL_NAVINIT_HOT_START,
              WarmStartInit = CONTROL_NAVINIT_WARM_START_INIT,
              WarmStartNoInit = CONTROL_NAVINIT_WARM_START_NO_INIT, ColdStart = CONTROL_NAVINIT_COLD_START,
              FactoryReset = CONTROL_NAVINIT_FACTORY_RESET;
constexpr int StartFields[] = {EcefX, EcefY, EcefZ, ClockOffset, TimeOfWeek, Week};
constexpr int ResetTypes[] = {SnapStart, HotStart, WarmStartInit, WarmStartNoInit, ColdStart, FactoryReset};

class NavigationInitializationDialog : public CommandDialogTest
{
protected:
    static void EnterAll(HWND dialog, std::initializer_list<const wchar_t*> texts)
    {
        int field = EcefX;
        for (const wchar_t* text : texts) HeadlessType(dialog, field++, text);
    }
};
IN_BOTH_LAYOUTS(NavigationInitializationDialog);

TEST_P(NavigationInitializationDialog, InitialState)
{
    Open(&::NavigationInitializationDialog, [](HWND dialog) {
        for (const int field : StartFields) {
            EXPECT_FALSE(HeadlessEnabled(dialog, field)) << field;
            EXPECT_EQ(HeadlessText(dialog, field), L"") << field;
        }
        EXPECT_TRUE(HeadlessEnabled(dialog, Channels));
        EXPECT_EQ(HeadlessText(dialog, Channels), L"12");
        for (const int type : ResetTypes)
            EXPECT_EQ(HeadlessCheck(dialog, type), type == HotStart ? BST_CHECKED : BST_UNCHECKED) << type;
    });
}

TEST_P(NavigationInitializationDialog, StartFieldsAreEnabledForWarmStartWithInitAlone)
{
    Open(&::NavigationInitializationDialog, [](HWND dialog) {
        for (const int first : ResetTypes)
            for (const int type : {first, WarmStartInit}) { // to it from each other and back
                HeadlessClick(dialog, type);
                for (const int other : ResetTypes)
                    EXPECT_EQ(HeadlessCheck(dialog, other), other == type ? BST_CHECKED : BST_UNCHECKED);
                for (const int field : StartFields)
                    EXPECT_EQ(HeadlessEnabled(dialog, field), type == WarmStartInit) << type << " " << field;
                EXPECT_TRUE(HeadlessEnabled(dialog, Channels));
            }
    });
}

TEST_P(NavigationInitializationDialog, ResetTypes)
{
    struct Row {
        int type;
        const char* sentence;
    };
    // The contents of the disabled fields do not count.
    constexpr Row Rows[] = {
        {SnapStart, "$PSRF101,0,0,0,0,0,0,12,0*14\r\n"},
        {HotStart, "$PSRF101,0,0,0,0,0,0,12,1*15\r\n"},
        {WarmStartNoInit, "$PSRF101,0,0,0,0,0,0,12,2*16\r\n"},
        {ColdStart, "$PSRF101,0,0,0,0,0,0,12,4*10\r\n"},
        {FactoryReset, "$PSRF101,0,0,0,0,0,0,12,8*1C\r\n"},
        {WarmStartInit, "$PSRF101,-2686727,-4303285,3851643,96000,60480000,1500,12,3*1B\r\n"},
    };
    Open(&::NavigationInitializationDialog, [&](HWND dialog) {
        HeadlessClick(dialog, WarmStartInit);
        EnterAll(dialog, {L"-2686727", L"-4303285", L"3851643", L"96000", L"604800", L"1500"});
        for (const Row& row : Rows) {
            HeadlessClick(dialog, row.type);
            HeadlessClick(dialog, Set);
            EXPECT_EQ(TakeSent(), row.sentence);
        }
        EXPECT_TRUE(TakeBoxes().empty());
    });
}

TEST_P(NavigationInitializationDialog, NoResetTypeIsRefusedBeforeAnythingElse)
{
    Open(&::NavigationInitializationDialog, [&](HWND dialog) {
        SendDlgItemMessageW(dialog, HotStart, BM_SETCHECK, BST_UNCHECKED, 0);
        HeadlessType(dialog, Channels, L"99");
        HeadlessClick(dialog, Set);
        EXPECT_TRUE(Refuses(L"Reset Configuration", L"Choose reset type."));
    });
}

struct FieldRow {
    int field;
    const wchar_t *lowest, *below, *highest, *above, *caption, *refusal;
};
constexpr wchar_t PositionRange[] = L"Range -10000000 to 10000000 m";
constexpr FieldRow Fields[] = {
    {EcefX, L"-10000000", L"-10000001", L"10000000", L"10000001", L"ECEF X", PositionRange},
    {EcefY, L"-10000000", L"-10000001", L"10000000", L"10000001", L"ECEF Y", PositionRange},
    {EcefZ, L"-10000000", L"-10000001", L"10000000", L"10000001", L"ECEF Z", PositionRange},
    {ClockOffset, L"0", L"-1", L"1000000", L"1000001", L"Clock Offset", L"Range 0-1000000 Hz"},
    {TimeOfWeek, L"0", L"-1", L"604800", L"604801", L"Time of Week", L"Range 0-604800 s"},
    {Week, L"0", L"-1", L"10000", L"10001", L"Week Number", L"Range 0-10000"},
    {Channels, L"1", L"0", L"12", L"13", L"Channels", L"Range 1-12"},
};

TEST_P(NavigationInitializationDialog, EndsOfTheRangesAreSent)
{
    Open(&::NavigationInitializationDialog, [&](HWND dialog) {
        HeadlessClick(dialog, WarmStartInit);
        for (const FieldRow& row : Fields) HeadlessType(dialog, row.field, row.lowest);
        HeadlessClick(dialog, Set);
        EXPECT_EQ(TakeSent(), "$PSRF101,-10000000,-10000000,-10000000,0,0,0,1,3*39\r\n");
        for (const FieldRow& row : Fields) HeadlessType(dialog, row.field, row.highest);
        HeadlessClick(dialog, Set);
        EXPECT_EQ(TakeSent(), "$PSRF101,10000000,10000000,10000000,1000000,60480000,10000,12,3*1C\r\n");
        EXPECT_TRUE(TakeBoxes().empty());
    });
}

TEST_P(NavigationInitializationDialog, EachFieldIsRefusedOutsideItsRange)
{
    Open(&::NavigationInitializationDialog, [&](HWND dialog) {
        HeadlessClick(dialog, WarmStartInit);
        for (const FieldRow& row : Fields) HeadlessType(dialog, row.field, row.lowest);
        for (const FieldRow& row : Fields) {
            for (const wchar_t* wrong :
                 {row.below, row.above, L"", L"x", L"99999999999", L"1.0", L"1 m", L"1,0", L"\u22121"}) {
                HeadlessType(dialog, row.field, wrong);
                HeadlessClick(dialog, Set);
                EXPECT_TRUE(Refuses(row.caption, row.refusal)) << row.field << " " << wrong;
            }
            HeadlessType(dialog, row.field, row.lowest);
        }
        EXPECT_EQ(ClearOnNextAppend.load(), 0);
    });
}

TEST_P(NavigationInitializationDialog, FieldsAreCheckedInTheirOrder)
{
    Open(&::NavigationInitializationDialog, [&](HWND dialog) {
        HeadlessClick(dialog, WarmStartInit);
        for (const FieldRow& row : Fields) HeadlessType(dialog, row.field, L"wrong");
        for (const FieldRow& row : Fields) {
            HeadlessClick(dialog, Set);
            EXPECT_TRUE(Refuses(row.caption, row.refusal));
            HeadlessType(dialog, row.field, row.lowest);
        }
        HeadlessClick(dialog, Set);
        EXPECT_EQ(TakeSent(), "$PSRF101,-10000000,-10000000,-10000000,0,0,0,1,3*39\r\n");
    });
}

TEST_P(NavigationInitializationDialog, ChannelsCountForEveryResetType)
{
    Open(&::NavigationInitializationDialog, [&](HWND dialog) {
        HeadlessType(dialog, Channels, L"1");
        HeadlessClick(dialog, ColdStart);
        HeadlessClick(dialog, Set);
        EXPECT_EQ(TakeSent(), "$PSRF101,0,0,0,0,0,0,1,4*22\r\n");
        HeadlessType(dialog, Channels, L"13");
        for (const int type : ResetTypes) {
            if (type == WarmStartInit) continue; // its other fields come first
            HeadlessClick(dialog, type);
            HeadlessClick(dialog, Set);
            EXPECT_TRUE(Refuses(L"Channels", L"Range 1-12")) << type;
        }
    });
}

TEST_P(NavigationInitializationDialog, StartUpLinesFillTheFields)
{
    struct Row {
        const char* line;
        int field;
        const wchar_t* text;
    };
    constexpr Row Rows[] = {
        {"PSRFTXT,TOW: 123456", TimeOfWeek, L"123456"},
        {"PSRFTXT,WK: 1480", Week, L"1480"},
        {"PSRFTXT,CLK: 96000", ClockOffset, L"96000"},
        {"PSRFTXT,CHNL: 11", Channels, L"11"},
        {"PSRFTXTTOW:7", TimeOfWeek, L"7"},
        {"PSRFTXT,CLK: -5", ClockOffset, L"-5"},
        {"PSRFTXT,WK: none", Week, L"0"},
        {"PSRFTXT, WK: 9", Week, L"0"}, // must begin with it: the field keeps its text
    };
    Open(&::NavigationInitializationDialog, [&](HWND dialog) {
        for (const Row& row : Rows) {
            FeedSentence(row.line);
            EXPECT_EQ(HeadlessText(dialog, row.field), row.text) << row.line;
        }
        FeedSentence("PSRFTXT,POS: -2686727 -4303285 3851643");
        EXPECT_EQ(HeadlessText(dialog, EcefX), L"-2686727");
        EXPECT_EQ(HeadlessText(dialog, EcefY), L"-4303285");
        EXPECT_EQ(HeadlessText(dialog, EcefZ), L"3851643");
        FeedSentence("PSRFTXT,POS:1  2"); // the third keeps its text
        EXPECT_EQ(HeadlessText(dialog, EcefX), L"1");
        EXPECT_EQ(HeadlessText(dialog, EcefY), L"2");
        EXPECT_EQ(HeadlessText(dialog, EcefZ), L"3851643");
    });
}

TEST_P(NavigationInitializationDialog, WarmStartSendsBackWhatWasRead)
{
    Open(&::NavigationInitializationDialog, [&](HWND dialog) {
        for (const char* line : {"PSRFTXT,TOW: 123456", "PSRFTXT,WK: 1480", "PSRFTXT,CLK: 96000",
                                 "PSRFTXT,CHNL: 12", "PSRFTXT,POS: 4282000 644000 4674000"})
            FeedSentence(line);
        HeadlessClick(dialog, WarmStartInit);
        HeadlessClick(dialog, Set);
        EXPECT_EQ(TakeSent(), "$PSRF101,4282000,644000,4674000,96000,12345600,1480,12,3*29\r\n");
    });
}

} // namespace
