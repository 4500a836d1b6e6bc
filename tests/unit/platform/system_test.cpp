// SPDX-License-Identifier: MIT
// Error texts, libraries, system queries, strings and icons.
#include <gtest/gtest.h>

#include "resources/resource_ids.h"
#include "tests/unit/platform/test_window.h"

namespace
{

using System = Fresh<testing::Test>;

TEST_F(System, ErrorTextsAreAllocated)
{
    wchar_t* text = nullptr;
    const DWORD flags =
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    EXPECT_EQ(FormatMessageW(flags, nullptr, 5, 0, reinterpret_cast<wchar_t*>(&text), 0, nullptr), 15u);
    EXPECT_STREQ(text, L"Error text 5.\r\n");
    EXPECT_EQ(HeadlessUnfreedTexts(), 1u);
    EXPECT_EQ(LocalFree(text), nullptr);
    EXPECT_EQ(HeadlessUnfreedTexts(), 0u);
    EXPECT_EQ(LocalFree(nullptr), nullptr);
    int other = 0;
    EXPECT_EQ(LocalFree(&other), &other);
    wchar_t small[4];
    EXPECT_EQ(FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, 5, 0, small, 4, nullptr), 0u);
    wchar_t big[40];
    EXPECT_EQ(FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, 5, 0, big, 40, nullptr), 15u);
}

TEST_F(System, LastErrorIsTheThreadsOwn)
{
    SetLastError(3);
    const LPTHREAD_START_ROUTINE other = [](void*) -> DWORD {
        EXPECT_EQ(GetLastError(), 0u);
        SetLastError(4);
        return 0;
    };
    CreateThread(nullptr, 0, other, nullptr, 0, nullptr);
    Sleep(1);
    EXPECT_EQ(GetLastError(), 3u);
}

TEST_F(System, Libraries)
{
    EXPECT_EQ(LoadLibraryW(L"AYGSHELL.DLL"), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_MOD_NOT_FOUND);
    const FARPROC byName = []() -> INT_PTR { return 1; }, byNumber = []() -> INT_PTR { return 83; };
    HeadlessAddExport(L"AYGSHELL.DLL", L"SHInitDialog", byName);
    HeadlessAddExport(L"AYGSHELL.DLL", 83, byNumber);
    const HMODULE library = LoadLibraryW(L"aygshell.dll");
    ASSERT_TRUE(library);
    EXPECT_EQ(GetProcAddressW(library, L"SHInitDialog"), byName);
    EXPECT_EQ(GetProcAddressW(library, MAKEINTRESOURCEW(83))(), 83);
    EXPECT_EQ(GetProcAddressW(library, L"Other"), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_PROC_NOT_FOUND);
    EXPECT_EQ(GetProcAddressW(nullptr, L"Other"), nullptr);
    EXPECT_EQ(HeadlessLoadedLibraries(), std::vector<std::wstring>{L"AYGSHELL.DLL"});
    EXPECT_TRUE(FreeLibrary(library));
    EXPECT_FALSE(FreeLibrary(library));
    EXPECT_TRUE(HeadlessLoadedLibraries().empty());
}

TEST_F(System, PlatformQueries)
{
    wchar_t text[12] = L"";
    EXPECT_FALSE(SystemParametersInfoW(SPI_GETPLATFORMTYPE, 12, text, 0));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_SPI_VALUE);
    HeadlessSetPlatformType(L"SmartPhone");
    HeadlessSetOemInfo(nullptr, ERROR_ACCESS_DENIED);
    EXPECT_TRUE(SystemParametersInfoW(SPI_GETPLATFORMTYPE, 12, text, 0));
    EXPECT_STREQ(text, L"SmartPhone");
    EXPECT_FALSE(SystemParametersInfoW(SPI_GETPLATFORMTYPE, 10, text, 0)) << "no room for the end";
    EXPECT_FALSE(SystemParametersInfoW(SPI_GETOEMINFO, 12, text, 0));
    EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
    OSVERSIONINFOW version{};
    EXPECT_FALSE(GetVersionExW(&version)) << "without its size";
    version.dwOSVersionInfoSize = sizeof version;
    EXPECT_TRUE(GetVersionExW(&version));
    EXPECT_EQ(version.dwMajorVersion, 5u);
}

TEST_F(System, StringsAndIcons)
{
    wchar_t text[16] = L"";
    EXPECT_EQ(LoadStringW(nullptr, STRING_PROGRAM_NAME, text, 16), 8);
    EXPECT_STREQ(text, L"Toravane");
    EXPECT_EQ(LoadStringW(nullptr, STRING_PROGRAM_NAME, text, 4), 3);
    EXPECT_STREQ(text, L"Tor");
    EXPECT_EQ(LoadStringW(nullptr, STRING_BAR_OK + 1, text, 16), 0);
    EXPECT_EQ(LoadStringW(nullptr, 60000, text, 16), 0);
    EXPECT_TRUE(LoadIconW(nullptr, MAKEINTRESOURCEW(ICON_PROGRAM)));
    EXPECT_FALSE(LoadIconW(nullptr, MAKEINTRESOURCEW(77)));
    EXPECT_TRUE(LoadCursorW(nullptr, MAKEINTRESOURCEW(32512)));
}

} // namespace
