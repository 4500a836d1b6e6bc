// SPDX-License-Identifier: MIT
#include "resources/resource_ids.h"
#include "sirf/arrival_list.h"

#include "link/link_state.h"
#include "tests/unit/sirf/sirf_test.h"

namespace
{

// The rows of the SiRF Set Message Rate dialog, 16602 to 16614; 16601 and 16615 are not rows.
class ArrivalList : public SirfTest
{
protected:
    ArrivalList()
    {
        std::vector<int> rows;
        for (int control = CONTROL_ARRIVAL_ROWS; control <= CONTROL_ARRIVAL_ROWS + 14; ++control)
            rows.push_back(control);
        OpenDialog(DialogKind::SirfSetMessageRate, {.texts = rows});
        SetTime(9, 5, 7);
    }
    static void SetTime(WORD hour, WORD minute, WORD second)
    {
        HeadlessSetLocalTime({2026, 3, 0, 1, hour, minute, second, 0});
    }
};

TEST_F(ArrivalList, FirstMessageTakesTheFirstRow)
{
    Decode(Payload("07"));
    EXPECT_EQ(Text(16602), L"007  09:05:07");
    EXPECT_EQ(Text(CONTROL_ARRIVAL_ROWS), L"?");
    EXPECT_EQ(Text(16603), L"?");
}

TEST_F(ArrivalList, MessageKeepsItsRow)
{
    Decode(Payload("07"));
    Decode(Payload("FF"));
    SetTime(23, 59, 58);
    Decode(Payload("07"));
    EXPECT_EQ(Text(16602), L"007  23:59:58");
    EXPECT_EQ(Text(16603), L"255  09:05:07");
    EXPECT_EQ(Text(16604), L"?");
}

TEST_F(ArrivalList, FourteenthMessageIdSharesRow13)
{
    for (unsigned id = 101; id <= 113; ++id) Decode(Payload(static_cast<uint8_t>(id), 1));
    EXPECT_EQ(Text(16602), L"101  09:05:07");
    EXPECT_EQ(Text(16613), L"112  09:05:07");
    EXPECT_EQ(Text(16614), L"113  09:05:07");
    Decode(Payload("72"));
    EXPECT_EQ(Text(16614), L"114  09:05:07");
    Decode(Payload("73"));
    EXPECT_EQ(Text(16614), L"115  09:05:07");
    Decode(Payload("71"));
    EXPECT_EQ(Text(16614), L"113  09:05:07");
    Decode(Payload("65"));
    EXPECT_EQ(Text(16602), L"101  09:05:07");
    EXPECT_EQ(Text(16615), L"?");
}

TEST_F(ArrivalList, AnswersAreNotListed)
{
    for (const int id : {6, 11, 12, 14, 15, 18, 19, 43}) Decode(Payload(static_cast<uint8_t>(id), 70));
    Decode(Payload("EE"));
    EXPECT_EQ(Text(16602), L"?");
}

TEST_F(ArrivalList, WrappedMessageIsListedUnderItsOwnId)
{
    Decode(Payload("EE 07"));
    EXPECT_EQ(Text(16602), L"007  09:05:07");
    EXPECT_EQ(Text(16603), L"?");
    Decode(Payload("EE 0B"));
    EXPECT_EQ(Text(16603), L"?");
}

TEST_F(ArrivalList, TooShortAMessageIsListedAllTheSame)
{
    Decode(Payload("02 00"));
    EXPECT_EQ(Text(16602), L"002  09:05:07");
}

TEST_F(ArrivalList, NothingWhileAnotherDialogIsOpen)
{
    OpenAnotherKind(DialogKind::Sbas);
    Decode(Payload("07"));
    EXPECT_EQ(Text(16602), L"?");
    OpenAnotherKind(DialogKind::SirfSetMessageRate);
    Decode(Payload("08")); // 7 was not given a row meanwhile
    EXPECT_EQ(Text(16602), L"008  09:05:07");
}

TEST_F(ArrivalList, RecognisingTheProtocolAgainStartsAnew)
{
    Decode(Payload("07"));
    Decode(Payload("08"));
    ResetProtocolMode();
    Decode(Payload("08"));
    EXPECT_EQ(Text(16602), L"008  09:05:07");
    Decode(Payload("07"));
    EXPECT_EQ(Text(16603), L"007  09:05:07");
}

} // namespace
