// SPDX-License-Identifier: MIT
#include "link/link_state.h"

#include "link/protocol_recognition.h"
#include "tests/unit/support/product_test.h"
#include "ui/dialog_support.h"

namespace
{

class LinkState : public ProductTest
{
};

TEST_F(LinkState, ProtocolNames)
{
    EXPECT_STREQ(ProtocolName(0), L"-");
    EXPECT_STREQ(ProtocolName(1), L"NMEA");
    EXPECT_STREQ(ProtocolName(2), L"SiRF");
    EXPECT_STREQ(ProtocolName(3), L"-");
}

TEST_F(LinkState, ModeIsTheSetOfFlags)
{
    EXPECT_EQ(ProtocolMode(), 0);
    SirfRecognised.store(1);
    EXPECT_EQ(ProtocolMode(), 2);
    NmeaRecognised.store(1);
    EXPECT_EQ(ProtocolMode(), 3);
    ResetProtocolMode();
    EXPECT_EQ(ProtocolMode(), 0);
}

TEST_F(LinkState, IndexesAreRanged)
{
    EXPECT_FALSE(IsPortIndex(-1));
    EXPECT_TRUE(IsPortIndex(9));
    EXPECT_FALSE(IsPortIndex(10));
    EXPECT_FALSE(IsBaudIndex(-1));
    EXPECT_TRUE(IsBaudIndex(7));
    EXPECT_FALSE(IsBaudIndex(8));
}

TEST_F(LinkState, WorkingPortIsStoredAsItIs)
{
    CommPortIdx.store(4);
    BaudrateIdx.store(7);
    StoreWorkingPort();
    EXPECT_EQ(Setting(L"CommPortIdx"), 4);
    EXPECT_EQ(Setting(L"BaudrateIdx"), 7);
}

TEST_F(LinkState, ChosenRateNeedsItsDialog)
{
    StoreChosenRate(DialogKind::SwitchToNmea, 12912, L"NmeaBaudrateIdx");
    EXPECT_EQ(Setting(L"NmeaBaudrateIdx"), -12345);
    // A kind whose window is already gone: nothing is selected there, and nothing may be stored.
    ActiveDialogKind.store(DialogKind::SwitchToNmea);
    StoreChosenRate(DialogKind::SwitchToNmea, 12912, L"NmeaBaudrateIdx");
    EXPECT_EQ(Setting(L"NmeaBaudrateIdx"), -12345);
}

} // namespace
