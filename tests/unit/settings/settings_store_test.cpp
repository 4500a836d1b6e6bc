// SPDX-License-Identifier: MIT
#include "settings/settings_store.h"

#include "tests/support/settings_key.h"
#include "tests/unit/support/product_test.h"

namespace
{

class SettingsStore : public ProductTest
{
};

TEST_F(SettingsStore, FreshDeviceAnswersWithTheDefault)
{
    EXPECT_EQ(SettingsGetDword(L"CommPortIdx", -1), -1);
    EXPECT_EQ(SettingsGetDword(L"HDOPValueMax", 2147483647), 2147483647);
}

TEST_F(SettingsStore, StoresAndReads)
{
    for (const int32_t value : {0, 1, -40, 2147483647, -2147483647 - 1}) {
        SettingsSetDword(L"Lines", value);
        EXPECT_EQ(SettingsGetDword(L"Lines", 12), value);
        EXPECT_EQ(Setting(L"Lines"), value);
    }
}

TEST_F(SettingsStore, TypeIsNotLookedAt)
{
    HeadlessRegistrySetBytes(HKEY_LOCAL_MACHINE, SettingsKey, L"Lines", REG_BINARY,
                             std::string_view("\x02\x01\x00\x00", 4));
    EXPECT_EQ(SettingsGetDword(L"Lines", -1), 258);
}

TEST_F(SettingsStore, LongerThanFourBytesIsAbsent)
{
    HeadlessRegistrySetBytes(HKEY_LOCAL_MACHINE, SettingsKey, L"Lines", REG_BINARY, "12345");
    EXPECT_EQ(SettingsGetDword(L"Lines", -1), -1);
}

TEST_F(SettingsStore, FailuresAreSilent)
{
    SettingsSetDword(L"Lines", 5);
    for (const char* call : {"RegOpenKeyExW", "RegQueryValueExW"}) {
        HeadlessFailCall(call, 1, ERROR_ACCESS_DENIED, FailMode::FromHereOn);
        EXPECT_EQ(SettingsGetDword(L"Lines", -1), -1) << call;
    }
    for (const char* call : {"RegCreateKeyExW", "RegSetValueExW"}) {
        HeadlessFailCall(call, 1, ERROR_ACCESS_DENIED, FailMode::FromHereOn);
        SettingsSetDword(L"Lines", 6);
        EXPECT_EQ(Setting(L"Lines"), 5) << call;
    }
    EXPECT_TRUE(HeadlessBoxes().empty());
}

TEST_F(SettingsStore, RefusedMachineRootFallsBackToTheUsersRoot)
{
    SettingsSetDword(L"Lines", 5);
    HeadlessRegistryRefuseWrites(HKEY_LOCAL_MACHINE, true);
    SettingsSetDword(L"Lines", 6);
    EXPECT_EQ(Setting(L"Lines"), 5);
    EXPECT_EQ(SettingsGetDword(L"Lines", -1), 6);
    uint32_t value = 0;
    EXPECT_TRUE(HeadlessRegistryGetDword(HKEY_CURRENT_USER, SettingsKey, L"Lines", value));
    EXPECT_EQ(value, 6u);
}

TEST_F(SettingsStore, WritableMachineRootEndsTheFallback)
{
    HeadlessRegistryRefuseWrites(HKEY_LOCAL_MACHINE, true);
    SettingsSetDword(L"Lines", 6);
    HeadlessRegistryRefuseWrites(HKEY_LOCAL_MACHINE, false);
    SettingsSetDword(L"Lines", 7);
    uint32_t value = 0;
    EXPECT_FALSE(HeadlessRegistryGetDword(HKEY_CURRENT_USER, SettingsKey, L"Lines", value));
    EXPECT_EQ(SettingsGetDword(L"Lines", -1), 7);
}

} // namespace
