// SPDX-License-Identifier: MIT
// Calls that are made to fail.
#include <gtest/gtest.h>

#include "tests/unit/platform/test_window.h"

namespace
{

using Faults = Fresh<testing::Test>;

bool WriteSucceeds()
{
    static HANDLE file;
    if (HeadlessOpenHandles() == 0)
        file =
            CreateFileW(L"\\file", GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    DWORD written = 9;
    const bool success = WriteFile(file, "x", 1, &written, nullptr) != FALSE;
    return success;
}

TEST_F(Faults, OnceOrFromHereOn)
{
    struct Row {
        uint32_t n;
        FailMode mode;
        const char* outcome;
    };
    const Row rows[] = {{1, FailMode::Once, "-+++"},
                        {3, FailMode::Once, "++-+"},
                        {3, FailMode::FromHereOn, "++--"},
                        {5, FailMode::FromHereOn, "++++"}};
    for (const Row& row : rows) {
        HeadlessReset();
        WriteSucceeds();
        HeadlessFailCall("WriteFile", row.n, ERROR_GEN_FAILURE, row.mode);
        std::string outcome;
        for (int i = 0; i < 4; ++i) outcome += WriteSucceeds() ? '+' : '-';
        EXPECT_EQ(outcome, row.outcome);
        const bool hit = outcome.find('-') != outcome.npos;
        EXPECT_EQ(HeadlessFailedCall(), hit ? "WriteFile" : "");
        if (hit) {
            EXPECT_EQ(GetLastError(), ERROR_GEN_FAILURE);
        }
    }
}

TEST_F(Faults, AnyCallCountsAllButBoxes)
{
    HeadlessFailAnyCall(3, ERROR_ACCESS_DENIED, FailMode::FromHereOn);
    wchar_t path[MAX_PATH];
    EXPECT_TRUE(SHGetSpecialFolderPathW(nullptr, path, CSIDL_PERSONAL, FALSE));
    EXPECT_EQ(MessageBoxW(nullptr, L"", L"", MB_OK), IDOK);
    Sleep(1);
    EXPECT_TRUE(CreateSolidBrush(0));
    EXPECT_EQ(LoadLibraryW(L"X.DLL"), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
    EXPECT_FALSE(GetDC(nullptr));
    EXPECT_EQ(MessageBoxW(nullptr, L"", L"", MB_OK), IDOK);
    EXPECT_EQ(HeadlessFailedCall(), "LoadLibraryW") << "the first";
    HeadlessClearFaults();
    EXPECT_TRUE(GetDC(nullptr));
    EXPECT_EQ(HeadlessFailedCall(), "");
}

TEST_F(Faults, SeveralAtOnce)
{
    HeadlessFailCall("LoadLibraryW", 1, 11);
    HeadlessFailCall("GetDC", 2, 12);
    GetDC(nullptr);
    LoadLibraryW(L"");
    EXPECT_EQ(GetLastError(), 11u);
    EXPECT_FALSE(GetDC(nullptr));
    EXPECT_EQ(GetLastError(), 12u);
    EXPECT_TRUE(GetDC(nullptr));
}

TEST_F(Faults, RegistryCallsReturnTheError)
{
    HKEY key = nullptr;
    HeadlessFailCall("RegCreateKeyExW", 1, ERROR_DISK_FULL);
    EXPECT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, L"A", 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr),
              static_cast<LONG>(ERROR_DISK_FULL));
}

TEST_F(Faults, CallsAreCountedOnRequest)
{
    GetDC(nullptr);
    HeadlessCountCalls();
    EXPECT_TRUE(HeadlessCountedCalls().empty());
    GetDC(nullptr);
    LoadLibraryW(L"");
    GetDC(nullptr);
    Sleep(1); // cannot fail
    HeadlessClearFaults();
    GetDC(nullptr);
    const std::vector<HeadlessCallCount> counted = HeadlessCountedCalls();
    ASSERT_EQ(counted.size(), 2u);
    EXPECT_EQ(counted[0].call, "LoadLibraryW");
    EXPECT_EQ(counted[0].count, 1u);
    EXPECT_EQ(counted[1].call, "GetDC");
    EXPECT_EQ(counted[1].count, 2u);
    HeadlessCountCalls();
    EXPECT_TRUE(HeadlessCountedCalls().empty()) << "from the beginning";
}

TEST_F(Faults, OnlyCallsThatCanFail)
{
    EXPECT_DEATH(HeadlessFailCall("Sleep", 1, 5), "no call that can fail: Sleep");
    EXPECT_DEATH(HeadlessFailAnyCall(0, 5), "counted from 1");
}

} // namespace
