#include "link/receiver_log.h"

#include "tests/unit/support/product_test.h"

namespace
{

class ReceiverLog : public ProductTest
{
protected:
    static void OpenLog(const wchar_t* path)
    {
        LogFileHandle.store(
            CreateFileW(path, GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    }
};

TEST_F(ReceiverLog, ClosingWithoutALogDoesNothing)
{
    EXPECT_FALSE(LogClose());
    EXPECT_TRUE(HeadlessBoxes().empty());
}

TEST_F(ReceiverLog, RecordsEveryByte)
{
    OpenLog(L"\\a");
    Feed(std::string("a\0\xFF", 3));
    EXPECT_TRUE(LogClose());
    EXPECT_EQ(HeadlessFileContent(L"\\a"), std::string("a\0\xFF", 3));
}

TEST_F(ReceiverLog, FirstFailureEndsTheLogWithOneBox)
{
    OpenLog(L"\\a");
    HeadlessFailCall("WriteFile", 2, ERROR_DISK_FULL, FailMode::FromHereOn);
    Feed("abc");
    ASSERT_EQ(HeadlessBoxes().size(), 1u);
    EXPECT_EQ(HeadlessBoxes()[0].caption, L"WriteFile File");
    EXPECT_EQ(LogFileHandle.load(), INVALID_HANDLE_VALUE);
    EXPECT_EQ(HeadlessFileContent(L"\\a"), "a");
}

TEST_F(ReceiverLog, FailingCloseForgetsTheLogAllTheSame)
{
    OpenLog(L"\\a");
    HeadlessFailCall("CloseHandle", 1, ERROR_GEN_FAILURE);
    EXPECT_FALSE(LogClose());
    ASSERT_EQ(HeadlessBoxes().size(), 1u);
    EXPECT_EQ(HeadlessBoxes()[0].caption, L"CloseHandle File");
    EXPECT_FALSE(LogClose());
}

} // namespace
