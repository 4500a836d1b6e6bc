// SPDX-License-Identifier: MIT
// The receiver's settings by name.

#include "console/setting_names.h"

#include <gtest/gtest.h>

using namespace console;

// 135 is a satellite that can be chosen, but not the 135th entry, which a receiver with other lists may
// report.
TEST(SettingNames, EntryThatIsInNoListHasNoNameOfAnother)
{
    const Setting& sbas = FindSetting("sbas");
    EXPECT_EQ(SettingText(sbas, {135, 0, 0}), "sbas prn=entry-135 mode=testing timeout=default");
    EXPECT_EQ(SettingJson(sbas, {135, 0, 0})["prn"], "entry-135");
    EXPECT_EQ(SettingText(sbas, {16, 0, 0}), "sbas prn=135 mode=testing timeout=default");
    const std::string reported[] = {"prn=entry-135"}, named[] = {"prn=135"};
    EXPECT_THROW(ParseKeyValues(sbas, reported), Failure);
    EXPECT_EQ(ParseKeyValues(sbas, named)[0].value, 16);
}
