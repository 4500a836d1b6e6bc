// SPDX-License-Identifier: MIT
// Files in memory and special folders.
#include <atomic>

#include <gtest/gtest.h>

#include "tests/unit/platform/test_window.h"

namespace
{

using Files = Fresh<testing::Test>;

HANDLE Open(const wchar_t* name, DWORD disposition, DWORD access = GENERIC_WRITE)
{
    return CreateFileW(name, access, 0, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
}

bool Write(HANDLE file, std::string_view text)
{
    DWORD written = 0;
    return WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr) &&
           written == text.size();
}

TEST_F(Files, Dispositions)
{
    EXPECT_EQ(Open(L"\\Dir\\File", OPEN_EXISTING), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
    HANDLE file = Open(L"\\Dir\\File", OPEN_ALWAYS);
    EXPECT_TRUE(Write(file, "abcdef"));
    EXPECT_TRUE(CloseHandle(file));
    EXPECT_FALSE(Write(file, "late"));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    EXPECT_FALSE(CloseHandle(file));
    file = Open(L"\\DIR\\file", OPEN_ALWAYS);
    EXPECT_TRUE(Write(file, "XY"));
    CloseHandle(file);
    EXPECT_EQ(HeadlessFileContent(L"\\dir\\FILE"), "XYcdef") << "overwritten from its start";
    EXPECT_EQ(Open(L"\\Dir\\File", CREATE_NEW), INVALID_HANDLE_VALUE);
    CloseHandle(Open(L"\\Dir\\File", CREATE_ALWAYS));
    EXPECT_EQ(HeadlessFileContent(L"\\Dir\\File"), "");
    EXPECT_TRUE(HeadlessFileExists(L"\\Dir\\File"));
    EXPECT_FALSE(HeadlessFileExists(L"\\Dir\\Other"));
    EXPECT_EQ(HeadlessOpenHandles(), 0u);
}

TEST_F(Files, Reading)
{
    HeadlessWriteFile(L"\\in", "12345");
    const HANDLE file = Open(L"\\in", OPEN_EXISTING, GENERIC_READ);
    char bytes[4] = {};
    DWORD read = 0;
    EXPECT_TRUE(ReadFile(file, bytes, 3, &read, nullptr));
    EXPECT_EQ(std::string(bytes, read), "123");
    EXPECT_TRUE(ReadFile(file, bytes, 3, &read, nullptr));
    EXPECT_EQ(read, 2u);
    EXPECT_TRUE(ReadFile(file, bytes, 3, &read, nullptr));
    EXPECT_EQ(read, 0u);
    EXPECT_FALSE(Write(file, "x"));
    EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
}

TEST_F(Files, AreNotShared)
{
    Open(L"\\a", OPEN_ALWAYS);
    EXPECT_EQ(Open(L"\\a", OPEN_ALWAYS), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), 32u);
}

TEST_F(Files, BadNames)
{
    for (const wchar_t* const name : {L"\\a:b", L"\\a?b", L"", L"\\dir\\", L"\\a\"b"}) {
        EXPECT_EQ(Open(name, OPEN_ALWAYS), INVALID_HANDLE_VALUE);
        EXPECT_EQ(GetLastError(), 123u);
    }
    EXPECT_NE(Open(L"C:\\a;b!.txt", OPEN_ALWAYS), INVALID_HANDLE_VALUE);
}

TEST_F(Files, FullDisk)
{
    const HANDLE file = Open(L"\\a", OPEN_ALWAYS);
    HeadlessDiskFullAfter(3);
    EXPECT_TRUE(Write(file, "ab"));
    EXPECT_FALSE(Write(file, "cd"));
    EXPECT_EQ(GetLastError(), ERROR_DISK_FULL);
    EXPECT_TRUE(Write(file, "c"));
    EXPECT_EQ(HeadlessFileContent(L"\\a"), "abc");
}

TEST_F(Files, Folders)
{
    wchar_t path[MAX_PATH] = L"";
    EXPECT_TRUE(SHGetSpecialFolderPathW(nullptr, path, CSIDL_PERSONAL, FALSE));
    EXPECT_STREQ(path, L"\\My Documents");
    EXPECT_TRUE(SHGetSpecialFolderPathW(nullptr, path, CSIDL_APPDATA, FALSE));
    EXPECT_STREQ(path, L"\\Application Data");
    HeadlessSetFolder(CSIDL_APPDATA, L"\\Elsewhere");
    EXPECT_TRUE(SHGetSpecialFolderPathW(nullptr, path, CSIDL_APPDATA, FALSE));
    EXPECT_STREQ(path, L"\\Elsewhere");
    HeadlessSetFolder(CSIDL_APPDATA, L"");
    EXPECT_FALSE(SHGetSpecialFolderPathW(nullptr, path, CSIDL_APPDATA, FALSE));
}

TEST_F(Files, ExchangeOfHandles)
{
    const HANDLE file = Open(L"\\a", OPEN_ALWAYS);
    std::atomic<HANDLE> place = file;
    EXPECT_FALSE(ReplaceHandle(place, INVALID_HANDLE_VALUE, nullptr));
    EXPECT_TRUE(ReplaceHandle(place, file, INVALID_HANDLE_VALUE));
    EXPECT_EQ(ExchangeHandle(place, file), INVALID_HANDLE_VALUE);
    EXPECT_EQ(place, file);
}

} // namespace
