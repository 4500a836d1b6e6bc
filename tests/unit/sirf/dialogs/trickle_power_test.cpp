// SPDX-License-Identifier: MIT
#include "resources/resource_ids.h"
#include "sirf/dialogs/command_dialog.h"

#include "tests/unit/sirf/dialogs/dialog_test.h"

namespace
{

constexpr int Set = CONTROL_TRICKLE_SET;

class TricklePowerWarning : public SirfDialogTest
{
protected:
    void SetDuty(const wchar_t* duty, const wchar_t* onTime)
    {
        With(DIALOG_SIRF_TRICKLE_POWER, [&](HWND dialog) {
            Enter(dialog, Ticked(CONTROL_TRICKLE_PUSH_TO_FIX, BST_UNCHECKED));
            Enter(dialog, Typed(CONTROL_TRICKLE_DUTY_CYCLE, duty));
            Enter(dialog, Typed(CONTROL_TRICKLE_ON_TIME, onTime));
            HeadlessClick(dialog, Set);
        });
    }
};

TEST_F(TricklePowerWarning, NamesThePeriodAndProposesToCancel)
{
    SetDuty(L"1.0", L"200");
    ASSERT_EQ(HeadlessBoxes().size(), 1u);
    const HeadlessBox& box = HeadlessBoxes()[0];
    EXPECT_EQ(box.caption, L"Warning");
    EXPECT_EQ(box.text, L"GPS will be on for only 200 milliseconds every 20 seconds."
                        L" It may be VERY difficult to communicate with it. Try anyway?");
    EXPECT_EQ(box.type, MB_OKCANCEL | MB_DEFBUTTON2 | MB_ICONEXCLAMATION);
    EXPECT_NE(box.owner, nullptr);
    EXPECT_TRUE(Written().empty()); // the default button is Cancel
}

TEST_F(TricklePowerWarning, OkSendsAllTheSame)
{
    HeadlessAnswerBox(IDOK);
    SetDuty(L"1.0", L"200");
    EXPECT_EQ(Written(), std::vector{HexText("A0A2 0009 97 0000 000A 000000C8 0169 B0B3")});
}

TEST_F(TricklePowerWarning, BeginsAtTenSeconds)
{
    SetDuty(L"5", L"200");   // 4 s
    SetDuty(L"2.0", L"199"); // refused
    EXPECT_EQ(HeadlessBoxes().size(), 1u);
    HeadlessClearBoxes();
    SetDuty(L"2.1", L"200"); // 9.5 s
    SetDuty(L"8.2", L"819"); // 9.99 s
    EXPECT_TRUE(HeadlessBoxes().empty());
    SetDuty(L"2.0", L"200"); // 10 s
    EXPECT_EQ(HeadlessBoxes().size(), 1u);
    SetDuty(L"0.1", L"900"); // the longest
    ASSERT_EQ(HeadlessBoxes().size(), 2u);
    EXPECT_EQ(HeadlessBoxes()[1].text, L"GPS will be on for only 900 milliseconds every 900 seconds."
                                       L" It may be VERY difficult to communicate with it. Try anyway?");
}

TEST_F(TricklePowerWarning, NotWithDutyZero)
{
    SetDuty(L"0", L"200");
    EXPECT_TRUE(HeadlessBoxes().empty());
    EXPECT_EQ(Written(), std::vector{HexText("A0A2 0009 97 0000 0000 000000C8 015F B0B3")});
}

} // namespace
