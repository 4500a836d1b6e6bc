// SPDX-License-Identifier: MIT
// The registry.
#include <cstring>

#include <gtest/gtest.h>

#include "tests/unit/platform/test_window.h"

namespace
{

constexpr const wchar_t* Path = L"Software\\Maker\\Program";

struct Registry : Fresh<testing::Test> {
    static HKEY Open(const wchar_t* path, DWORD access = KEY_READ, HKEY root = HKEY_LOCAL_MACHINE)
    {
        HKEY key = nullptr;
        return RegOpenKeyExW(root, path, 0, access, &key) == ERROR_SUCCESS ? key : nullptr;
    }
    static LONG Create(HKEY root, HKEY& key)
    {
        return RegCreateKeyExW(root, Path, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_WRITE, nullptr, &key,
                               nullptr);
    }
};

TEST_F(Registry, NumbersGoInAndOut)
{
    HKEY key = nullptr;
    EXPECT_EQ(Open(Path), nullptr);
    ASSERT_EQ(Create(HKEY_LOCAL_MACHINE, key), ERROR_SUCCESS);
    const uint32_t seven = 7;
    EXPECT_EQ(RegSetValueExW(key, L"Value", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&seven), 4),
              ERROR_SUCCESS);
    uint32_t value = 0;
    DWORD size = 4, type = 0;
    EXPECT_EQ(RegQueryValueExW(key, L"Value", nullptr, nullptr, reinterpret_cast<BYTE*>(&value), &size),
              static_cast<LONG>(ERROR_ACCESS_DENIED))
        << "opened for writing only";
    EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
    EXPECT_EQ(RegCloseKey(key), static_cast<LONG>(ERROR_INVALID_HANDLE));

    key = Open(L"\\software\\MAKER\\program");
    ASSERT_TRUE(key);
    EXPECT_EQ(RegQueryValueExW(key, L"VALUE", nullptr, &type, reinterpret_cast<BYTE*>(&value), &size),
              ERROR_SUCCESS);
    EXPECT_EQ(value, 7u);
    EXPECT_EQ(type, REG_DWORD);
    EXPECT_EQ(RegSetValueExW(key, L"Value", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&seven), 4),
              static_cast<LONG>(ERROR_ACCESS_DENIED));
    EXPECT_EQ(RegQueryValueExW(key, L"Other", nullptr, nullptr, nullptr, nullptr),
              static_cast<LONG>(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(HeadlessOpenKeys(), 1u);
    EXPECT_TRUE(HeadlessRegistryGetDword(HKEY_LOCAL_MACHINE, Path, L"Value", value));
    EXPECT_FALSE(HeadlessRegistryGetDword(HKEY_CURRENT_USER, Path, L"Value", value));
}

TEST_F(Registry, SizesAreChecked)
{
    HeadlessRegistrySetText(HKEY_LOCAL_MACHINE, Path, L"Text", L"COM");
    const HKEY key = Open(Path);
    DWORD size = 0;
    EXPECT_EQ(RegQueryValueExW(key, L"Text", nullptr, nullptr, nullptr, &size), ERROR_SUCCESS);
    EXPECT_EQ(size, 4 * sizeof(wchar_t));
    wchar_t text[4];
    size -= 1;
    EXPECT_EQ(RegQueryValueExW(key, L"Text", nullptr, nullptr, reinterpret_cast<BYTE*>(text), &size),
              static_cast<LONG>(ERROR_MORE_DATA));
    EXPECT_EQ(size, sizeof text);
    EXPECT_EQ(RegQueryValueExW(key, L"Text", nullptr, nullptr, reinterpret_cast<BYTE*>(text), &size),
              ERROR_SUCCESS);
    EXPECT_STREQ(text, L"COM");
}

TEST_F(Registry, WideTextOfOtherSystems)
{
    HeadlessRegistrySetBytes(HKEY_LOCAL_MACHINE, Path, L"Odd", REG_MULTI_SZ, std::string_view("a\0b\0x", 5));
    HeadlessRegistrySetBytes(HKEY_LOCAL_MACHINE, Path, L"Raw", REG_BINARY, std::string_view("ab", 2));
    const HKEY key = Open(Path);
    BYTE bytes[32];
    DWORD size = sizeof bytes, type = 0;
    EXPECT_EQ(RegQueryValueExW(key, L"Odd", nullptr, &type, bytes, &size), ERROR_SUCCESS);
    EXPECT_EQ(type, REG_MULTI_SZ);
    EXPECT_EQ(size, 2 * sizeof(wchar_t) + 1);
    EXPECT_EQ(0, std::memcmp(bytes, L"ab", 2 * sizeof(wchar_t)));
    size = sizeof bytes;
    RegQueryValueExW(key, L"Raw", nullptr, &type, bytes, &size);
    EXPECT_EQ(size, 2u);
}

TEST_F(Registry, Enumeration)
{
    HeadlessRegistryCreateKey(HKEY_LOCAL_MACHINE, L"Drivers\\BuiltIn\\Serial");
    HeadlessRegistryCreateKey(HKEY_LOCAL_MACHINE, L"Drivers\\BuiltIn\\IrCOMM");
    const HKEY key = Open(L"Drivers\\BuiltIn");
    wchar_t name[7];
    DWORD count = 7;
    EXPECT_EQ(RegEnumKeyExW(key, 0, name, &count, nullptr, nullptr, nullptr, nullptr), ERROR_SUCCESS);
    EXPECT_STREQ(name, L"IrCOMM");
    EXPECT_EQ(count, 6u);
    EXPECT_EQ(RegEnumKeyExW(key, 1, name, &count, nullptr, nullptr, nullptr, nullptr),
              static_cast<LONG>(ERROR_MORE_DATA));
    count = 7;
    EXPECT_EQ(RegEnumKeyExW(key, 1, name, &count, nullptr, nullptr, nullptr, nullptr), ERROR_SUCCESS);
    EXPECT_EQ(RegEnumKeyExW(key, 2, name, &count, nullptr, nullptr, nullptr, nullptr),
              static_cast<LONG>(ERROR_NO_MORE_ITEMS));
    EXPECT_TRUE(Open(L"serial", KEY_READ, key)) << "below an open key";
    EXPECT_FALSE(Open(L"missing", KEY_READ, key));
}

TEST_F(Registry, RefusedWrites)
{
    HeadlessRegistrySetDword(HKEY_LOCAL_MACHINE, Path, L"Value", 1);
    HeadlessRegistryRefuseWrites(HKEY_LOCAL_MACHINE, true);
    HKEY key = nullptr;
    EXPECT_EQ(Create(HKEY_LOCAL_MACHINE, key), static_cast<LONG>(ERROR_ACCESS_DENIED));
    EXPECT_TRUE(Open(Path));
    EXPECT_FALSE(Open(Path, KEY_WRITE));
    EXPECT_EQ(Create(HKEY_CURRENT_USER, key), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteValueW(key, L"Value"), static_cast<LONG>(ERROR_FILE_NOT_FOUND));
    HeadlessRegistryRefuseWrites(HKEY_LOCAL_MACHINE, false);
    EXPECT_EQ(Create(HKEY_LOCAL_MACHINE, key), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteValueW(key, L"Value"), ERROR_SUCCESS);
    uint32_t value = 0;
    EXPECT_FALSE(HeadlessRegistryGetDword(HKEY_LOCAL_MACHINE, Path, L"Value", value));
}

} // namespace
