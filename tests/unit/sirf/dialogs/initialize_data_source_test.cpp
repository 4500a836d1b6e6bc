// SPDX-License-Identifier: MIT
#include "resources/resource_ids.h"
#include "sirf/dialogs/command_dialog.h"

#include "sirf/frame_sender.h"
#include "tests/unit/sirf/dialogs/dialog_test.h"

namespace
{

constexpr int Get = CONTROL_INIT_GET, Set = CONTROL_INIT_SET, Channels = CONTROL_INIT_CHANNELS,
              WarmInit = CONTROL_INIT_WARM_START_INIT, SystemReset = CONTROL_INIT_SYSTEM_RESET,
              NavLib = CONTROL_INIT_NAVLIB, Debug = CONTROL_INIT_DEBUG, Clear = CONTROL_INIT_CLEAR;

class InitializeDataSource : public SirfDialogTest
{
protected:
    // The dialog with its boxes clear and 12 channels; the poll of its opening is ignored.
    void Prepared(const std::function<void(HWND)>& user)
    {
        With(DIALOG_SIRF_INITIALIZE_DATA_SOURCE, [&](HWND dialog) {
            Written();
            for (int box = NavLib; box <= Clear; ++box) Enter(dialog, Ticked(box, BST_UNCHECKED));
            Enter(dialog, Typed(Channels, L"12"));
            user(dialog);
        });
    }

    void ExpectRefusal(HWND dialog, const std::wstring& caption, const std::wstring& text)
    {
        HeadlessClearBoxes();
        InitializeSent.store(0);
        HeadlessClick(dialog, Set);
        ASSERT_EQ(HeadlessBoxes().size(), 1u);
        EXPECT_TRUE(IsBox(HeadlessBoxes()[0], caption, text));
        EXPECT_TRUE(Written().empty());
        EXPECT_EQ(InitializeSent.load(), 0);
    }

    static void EnterStart(HWND dialog)
    {
        HeadlessClick(dialog, WarmInit);
        const wchar_t* const texts[] = {L"-2686700", L"-4304200", L"3851600", L"96250", L"604800", L"1443"};
        for (int i = 0; i < 6; ++i) Enter(dialog, Typed(CONTROL_INIT_ECEF_X + i, texts[i]));
    }
};

TEST_F(InitializeDataSource, OpensWithNothingChosen)
{
    With(DIALOG_SIRF_INITIALIZE_DATA_SOURCE, [&](HWND dialog) {
        for (int option = CONTROL_INIT_SNAP_START; option <= CONTROL_INIT_SYSTEM_RESET; ++option)
            EXPECT_EQ(HeadlessCheck(dialog, option), BST_UNCHECKED) << option;
        for (int box = NavLib; box <= Clear; ++box)
            EXPECT_EQ(HeadlessCheck(dialog, box), BST_INDETERMINATE) << box;
        for (int edit = CONTROL_INIT_ECEF_X; edit <= CONTROL_INIT_WEEK; ++edit)
            EXPECT_FALSE(HeadlessEnabled(dialog, edit)) << edit;
        EXPECT_TRUE(HeadlessEnabled(dialog, Channels));
    });
}

TEST_F(InitializeDataSource, KeypadHasDecidedBoxes)
{
    UseKeypad();
    With(DIALOG_SIRF_INITIALIZE_DATA_SOURCE, [&](HWND dialog) {
        for (int box = NavLib; box <= Clear; ++box)
            EXPECT_EQ(HeadlessCheck(dialog, box), BST_UNCHECKED) << box;
    });
}

TEST_F(InitializeDataSource, ResetTypesInBothLayouts)
{
    const struct {
        int option;
        const char* bits;
    } rows[] = {{CONTROL_INIT_SNAP_START, "00"},         {CONTROL_INIT_HOT_START, "40"},
                {CONTROL_INIT_WARM_START_NO_INIT, "02"}, {CONTROL_INIT_COLD_START, "04"},
                {CONTROL_INIT_FACTORY_RESET, "08"},      {CONTROL_INIT_SYSTEM_RESET, "88"}};
    for (int layout = 0; layout < 2; ++layout) {
        if (layout) UseKeypad();
        for (const auto& row : rows)
            Prepared([&](HWND dialog) {
                InitializeSent.store(0);
                HeadlessClick(dialog, row.option);
                HeadlessClick(dialog, Set);
                EXPECT_EQ(Written(), std::vector{Frame(Payload(128, 25).At(23, "0C").At(24, row.bits))})
                    << row.option;
                EXPECT_EQ(InitializeSent.load(), 1);
            });
    }
}

TEST_F(InitializeDataSource, ColdStartWithNavLibIsSentInFull)
{
    Prepared([&](HWND dialog) {
        EnterStart(dialog); // what stands in the fields counts for the warm start only
        HeadlessClick(dialog, CONTROL_INIT_COLD_START);
        HeadlessClick(dialog, NavLib);
        HeadlessClick(dialog, Set);
        EXPECT_EQ(Written(),
                  std::vector{HexText("A0A2 0019 80 00000000 00000000 00000000 00000000 00000000 0000 0C 14"
                                      "00A0 B0B3")});
    });
}

TEST_F(InitializeDataSource, WarmStartIsSentInFull)
{
    Prepared([&](HWND dialog) {
        EnterStart(dialog);
        HeadlessClick(dialog, Set);
        EXPECT_EQ(Written(),
                  std::vector{HexText("A0A2 0019 80 FFD70114 FFBE52B8 003AC550 000177FA 039ADA00 05A3 0C 03"
                                      "0A21 B0B3")});
        EXPECT_EQ(InitializeSent.load(), 1);
    });
}

TEST_F(InitializeDataSource, BoxesAddTheirBits)
{
    const struct {
        int box;
        const char* bits;
    } rows[] = {{NavLib, "50"}, {Debug, "60"}, {Clear, "C0"}};
    for (const auto& row : rows)
        Prepared([&](HWND dialog) {
            HeadlessClick(dialog, CONTROL_INIT_HOT_START);
            HeadlessClick(dialog, row.box);
            HeadlessClick(dialog, Set);
            EXPECT_EQ(Written(), std::vector{Frame(Payload(128, 25).At(23, "0C").At(24, row.bits))});
        });
}

TEST_F(InitializeDataSource, OnlyTheWarmStartEnablesItsFields)
{
    With(DIALOG_SIRF_INITIALIZE_DATA_SOURCE, [&](HWND dialog) {
        for (int option = CONTROL_INIT_SNAP_START; option <= CONTROL_INIT_SYSTEM_RESET; ++option) {
            HeadlessClick(dialog, WarmInit);
            EXPECT_TRUE(HeadlessEnabled(dialog, CONTROL_INIT_ECEF_X) &&
                        HeadlessEnabled(dialog, CONTROL_INIT_WEEK));
            HeadlessClick(dialog, option);
            for (int edit = CONTROL_INIT_ECEF_X; edit <= CONTROL_INIT_WEEK; ++edit)
                EXPECT_EQ(HeadlessEnabled(dialog, edit), option == WarmInit) << option;
            EXPECT_TRUE(HeadlessEnabled(dialog, Channels));
        }
    });
}

TEST_F(InitializeDataSource, SystemResetTicksClear)
{
    With(DIALOG_SIRF_INITIALIZE_DATA_SOURCE, [&](HWND dialog) {
        for (int option = CONTROL_INIT_SNAP_START; option < SystemReset; ++option)
            HeadlessClick(dialog, option);
        EXPECT_EQ(HeadlessCheck(dialog, Clear), BST_INDETERMINATE);
        HeadlessClick(dialog, SystemReset);
        EXPECT_EQ(HeadlessCheck(dialog, Clear), BST_CHECKED);
        HeadlessClick(dialog, CONTROL_INIT_SNAP_START);
        EXPECT_EQ(HeadlessCheck(dialog, Clear), BST_CHECKED);
    });
}

// ---- Refusals, in their order -------------------------------------------------------------------------

TEST_F(InitializeDataSource, ChecksGoFromTheResetTypeToTheBoxes)
{
    const std::wstring ecef = L"Range -10000000 to 10000000 m";
    With(DIALOG_SIRF_INITIALIZE_DATA_SOURCE, [&](HWND dialog) {
        Written();
        ExpectRefusal(dialog, L"Reset Configuration Bit Map", L"Choose reset type.");
        HeadlessClick(dialog, WarmInit);
        ExpectRefusal(dialog, L"ECEF X", ecef);
        Enter(dialog, Typed(CONTROL_INIT_ECEF_X, L"0"));
        ExpectRefusal(dialog, L"ECEF Y", ecef);
        Enter(dialog, Typed(CONTROL_INIT_ECEF_Y, L"0"));
        ExpectRefusal(dialog, L"ECEF Z", ecef);
        Enter(dialog, Typed(CONTROL_INIT_ECEF_Z, L"0"));
        ExpectRefusal(dialog, L"Clock Offset", L"Range 0-1000000 Hz");
        Enter(dialog, Typed(CONTROL_INIT_CLOCK_OFFSET, L"0"));
        ExpectRefusal(dialog, L"Time of Week", L"Range 0-604800 s");
        Enter(dialog, Typed(CONTROL_INIT_TIME_OF_WEEK, L"0"));
        ExpectRefusal(dialog, L"Week Number", L"Range 0-10000");
        Enter(dialog, Typed(CONTROL_INIT_WEEK, L"0"));
        ExpectRefusal(dialog, L"Channels", L"Range 1-12");
        Enter(dialog, Typed(Channels, L"1"));
        ExpectRefusal(dialog, L"NavLib", L"Indeterminate");
        Enter(dialog, Ticked(NavLib, BST_UNCHECKED));
        ExpectRefusal(dialog, L"Debug", L"Indeterminate");
        Enter(dialog, Ticked(Debug, BST_UNCHECKED));
        ExpectRefusal(dialog, L"Clear", L"Indeterminate");
        Enter(dialog, Ticked(Clear, BST_UNCHECKED));
        HeadlessClick(dialog, Set);
        EXPECT_EQ(Written(), std::vector{Frame(Payload(128, 25).At(23, "01").At(24, "03"))});
    });
}

TEST_F(InitializeDataSource, EdgesOfItsFields)
{
    const std::wstring ecef = L"Range -10000000 to 10000000 m";
    const struct {
        int control;
        const wchar_t *low, *high, *below, *above;
        size_t offset;
        const char *lowBytes, *highBytes;
        std::wstring caption, text;
    } rows[] = {
        {CONTROL_INIT_ECEF_X, L"-10000000", L"10000000", L"-10000001", L"10000001", 1, "FF676980", "00989680",
         L"ECEF X", ecef},
        {CONTROL_INIT_ECEF_Y, L"-10000000", L"10000000", L"-10000001", L"10000001", 5, "FF676980", "00989680",
         L"ECEF Y", ecef},
        {CONTROL_INIT_ECEF_Z, L"-10000000", L"10000000", L"-10000001", L"10000001", 9, "FF676980", "00989680",
         L"ECEF Z", ecef},
        {CONTROL_INIT_CLOCK_OFFSET, L"0", L"1000000", L"-1", L"1000001", 13, "00000000", "000F4240",
         L"Clock Offset", L"Range 0-1000000 Hz"},
        {CONTROL_INIT_TIME_OF_WEEK, L"0", L"604800", L"-1", L"604801", 17, "00000000", "039ADA00",
         L"Time of Week", L"Range 0-604800 s"},
        {CONTROL_INIT_WEEK, L"0", L"10000", L"-1", L"10001", 21, "0000", "2710", L"Week Number",
         L"Range 0-10000"},
        {CONTROL_INIT_CHANNELS, L"1", L"12", L"0", L"13", 23, "01", "0C", L"Channels", L"Range 1-12"},
    };
    Prepared([&](HWND dialog) {
        HeadlessClick(dialog, WarmInit);
        for (int edit = CONTROL_INIT_ECEF_X; edit <= CONTROL_INIT_WEEK; ++edit)
            Enter(dialog, Typed(edit, L"0"));
        for (const auto& row : rows) {
            SCOPED_TRACE(row.control);
            for (const wchar_t* text : {row.below, row.above, L"", L"x", L"4294967295"}) {
                Enter(dialog, Typed(row.control, text));
                ExpectRefusal(dialog, row.caption, row.text);
            }
            for (const bool high : {false, true}) {
                Enter(dialog, Typed(row.control, high ? row.high : row.low));
                HeadlessClick(dialog, Set);
                EXPECT_EQ(Written(), std::vector{Frame(Payload(128, 25).At(23, "0C").At(24, "03").At(
                                         row.offset, high ? row.highBytes : row.lowBytes))});
            }
            Enter(dialog, Typed(row.control, row.control == Channels ? L"12" : L"0"));
        }
    });
}

// ---- Answer -------------------------------------------------------------------------------------------

TEST_F(InitializeDataSource, AnswerIsShownInTheRealDialog)
{
    With(DIALOG_SIRF_INITIALIZE_DATA_SOURCE, [&](HWND dialog) {
        HeadlessClick(dialog, CONTROL_INIT_SNAP_START);
        // After the 43: 128, its position (X negative), clock, time of week, week, channels and bit map.
        Decode(Payload("2B 80 FFFFFFFF 00000002 00000003 000177FA 039ADA00 05A3 0C 88"));
        EXPECT_EQ(HeadlessText(dialog, CONTROL_INIT_ECEF_X), L"4294967295"); // shown without its sign
        EXPECT_EQ(HeadlessText(dialog, CONTROL_INIT_CLOCK_OFFSET), L"96250");
        EXPECT_EQ(HeadlessText(dialog, CONTROL_INIT_TIME_OF_WEEK), L"604800");
        EXPECT_EQ(HeadlessText(dialog, CONTROL_INIT_WEEK), L"1443");
        EXPECT_EQ(HeadlessText(dialog, Channels), L"12");
        EXPECT_EQ(HeadlessCheck(dialog, CONTROL_INIT_SNAP_START), BST_UNCHECKED);
        EXPECT_EQ(HeadlessCheck(dialog, SystemReset), BST_CHECKED);
        EXPECT_EQ(HeadlessCheck(dialog, NavLib), BST_UNCHECKED);
        EXPECT_EQ(HeadlessCheck(dialog, Clear), BST_CHECKED);
        EXPECT_FALSE(HeadlessEnabled(dialog, CONTROL_INIT_ECEF_X));
        HeadlessClick(dialog, Get);
        EXPECT_EQ(PendingPollId.load(), 128);
    });
}

} // namespace
