// SPDX-License-Identifier: MIT
#include "sirf/command_layouts.h"

#include <set>

#include "sirf/message_names.h"
#include "tests/unit/sirf/sirf_test.h"

namespace
{

TEST(CommandLayouts, ElevenAreReportedByThePoll)
{
    const std::set<unsigned> polled = {128, 133, 136, 137, 138, 139, 140, 143, 151, 167, 170};
    for (unsigned command = 0; command < 256; ++command) {
        const CommandLayout* layout = FindPolledCommand(static_cast<uint8_t>(command));
        ASSERT_EQ(layout != nullptr, polled.contains(command)) << command;
        EXPECT_EQ(layout ? layout->command : command, command);
    }
}

TEST(CommandLayouts, BeaconTakesZeroOrItsBand)
{
    const auto accepts = DgpsSourceLayout.fields[1].accepts;
    ASSERT_NE(accepts, nullptr);
    EXPECT_TRUE(accepts(0));
    EXPECT_FALSE(accepts(1));
    EXPECT_FALSE(accepts(283499));
    EXPECT_TRUE(accepts(283500));
    EXPECT_TRUE(accepts(325000));
}

TEST(CommandLayouts, BeaconTakesFiveBitRates)
{
    const auto accepts = DgpsSourceLayout.fields[2].accepts;
    ASSERT_NE(accepts, nullptr);
    for (int32_t rate = 0; rate <= 255; ++rate) {
        const bool expected = rate == 0 || rate == 25 || rate == 50 || rate == 100 || rate == 200;
        EXPECT_EQ(accepts(rate), expected) << rate;
    }
}

TEST(CommandLayouts, SbasEntriesAreTheSatellitesInOrder)
{
    const auto entries = SbasLayout.fields[0].entries;
    ASSERT_EQ(entries.size(), 20u);
    EXPECT_STREQ(entries[0], L"Auto");
    for (size_t i = 1; i < entries.size(); ++i)
        EXPECT_EQ(std::wstring(entries[i]).substr(0, 3), std::to_wstring(SbasEntryToPrn + i));
    EXPECT_STREQ(entries[1], L"120 EGNOS/ESTB");
    EXPECT_STREQ(entries[10], L"129 MSAS");
    EXPECT_STREQ(entries[19], L"138 WAAS");
}

TEST(CommandLayouts, MessageNamesBeginWithTheirNumbersInOrder)
{
    constexpr size_t count = sizeof MessageNames / sizeof *MessageNames;
    EXPECT_EQ(count, 58u);
    long last = 0;
    for (const wchar_t* name : MessageNames) {
        const long number = std::wcstol(name, nullptr, 10);
        EXPECT_GT(number, last);
        last = number;
    }
    EXPECT_EQ(last, 255);
    EXPECT_STREQ(MessageNames[40], L"41 Geodetic Navigation Data");
    EXPECT_STREQ(MessageNames[54], L"221");
}

} // namespace
