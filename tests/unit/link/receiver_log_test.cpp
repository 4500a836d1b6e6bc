// SPDX-License-Identifier: MIT
#include "link/receiver_log.h"

#include "link/link_state.h"
#include "tests/unit/support/product_test.h"
#include "ui/dialog_support.h"

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

DWORD WINAPI WriteAByte(void*)
{
    LogWrite(reinterpret_cast<const uint8_t*>("a"), 1);
    return 0;
}

// The disk is full, and the reader notices it before, while or after the user closes the log.
TEST_F(ReceiverLog, FailureOfALogThatTheUserHasClosedIsSilent)
{
    MakeMainWindow();
    uint32_t closedByUser = 0;
    constexpr uint32_t Rounds = 200;
    for (uint32_t round = 1; round <= Rounds; ++round) {
        OpenLog(L"\\a");
        HeadlessFailCall("WriteFile", 1, ERROR_DISK_FULL, FailMode::FromHereOn);
        HeadlessInterleave(round);
        CloseHandle(CreateThread(nullptr, 0, WriteAByte, nullptr, 0, nullptr));
        const bool closed = LogClose();
        Sleep(10);
        HeadlessInterleave(0);
        HeadlessClearFaults();
        HeadlessPumpMessages();
        ASSERT_EQ(HeadlessBoxes().size(), closed ? 0u : 1u) << round;
        HeadlessClearBoxes();
        closedByUser += closed;
    }
    EXPECT_GE(closedByUser, Rounds / 10);
    EXPECT_LE(closedByUser, Rounds - Rounds / 10);
}

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
    for (const char* byte : {"a", "b", "c"}) Feed(byte);
    ASSERT_EQ(HeadlessBoxes().size(), 1u);
    EXPECT_EQ(HeadlessBoxes()[0].caption, L"WriteFile File");
    EXPECT_EQ(LogFileHandle.load(), INVALID_HANDLE_VALUE);
    EXPECT_EQ(HeadlessFileContent(L"\\a"), "a");
}

TEST_F(ReceiverLog, WhatFitsOfARunIsWritten)
{
    OpenLog(L"\\a");
    HeadlessDiskFullAfter(5);
    Feed("abc");
    Feed("defgh");
    EXPECT_EQ(HeadlessBoxes().size(), 1u);
    EXPECT_EQ(LogFileHandle.load(), INVALID_HANDLE_VALUE);
    EXPECT_EQ(HeadlessFileContent(L"\\a"), "abcde");
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

// ---- Opening ------------------------------------------------------------------------------------------

const SYSTEMTIME Opened = {2008, 11, 0, 16, 4, 29, 5, 0};

TEST_F(ReceiverLog, ProposesTheLocalTimeInTheUsersFolder)
{
    HeadlessSetLocalTime(Opened);
    HeadlessAnswerSaveDialog(L"", 1);
    EXPECT_FALSE(LogOpen());
    ASSERT_EQ(HeadlessSaveDialogs().size(), 1u);
    const HeadlessSaveDialog& dialog = HeadlessSaveDialogs()[0];
    EXPECT_EQ(dialog.proposedName, L"\\My Documents\\081116042905");
    EXPECT_EQ(dialog.filters, L"NMEA Text (*.txt)|*.txt|SiRF Binary (*.srf)|*.srf|Any (*.*)|*.*");
    EXPECT_EQ(dialog.defaultExtension, L"log");
    EXPECT_EQ(dialog.flags, 0u);
    EXPECT_EQ(dialog.capacity, 260u);
    EXPECT_EQ(LogFileHandle.load(), INVALID_HANDLE_VALUE);
}

TEST_F(ReceiverLog, ProtocolPreselectsTheFilter)
{
    const struct {
        bool nmea, sirf;
        DWORD filter;
    } cases[] = {{false, false, 3}, {true, false, 1}, {false, true, 2}, {true, true, 3}};
    HeadlessAnswerSaveDialog(L"", 1);
    for (const auto& c : cases) {
        NmeaRecognised.store(c.nmea);
        SirfRecognised.store(c.sirf);
        LogOpen();
        EXPECT_EQ(HeadlessSaveDialogs().back().filterIndex, c.filter);
    }
}

TEST_F(ReceiverLog, NameWithoutExtensionGetsThatOfTheFilter)
{
    const wchar_t* names[] = {L"\\a.b\\log.txt", L"\\a.b\\log.srf", L"\\a.b\\log.log"};
    for (DWORD filter = 1; filter <= 3; ++filter) {
        HeadlessAnswerSaveDialog(L"\\a.b\\log", filter);
        EXPECT_TRUE(LogOpen());
        EXPECT_TRUE(LogClose());
        EXPECT_TRUE(HeadlessFileExists(names[filter - 1])) << filter;
    }
    EXPECT_FALSE(HeadlessFileExists(L"\\a.b\\log"));
}

TEST_F(ReceiverLog, NameWithExtensionIsKept)
{
    HeadlessAnswerSaveDialog(L"\\a.bin", 1);
    EXPECT_TRUE(LogOpen());
    EXPECT_TRUE(HeadlessFileExists(L"\\a.bin"));
    EXPECT_TRUE(HeadlessBoxes().empty()); // the user has chosen the name
}

TEST_F(ReceiverLog, LongestNameIsTakenAsItIs)
{
    const std::wstring name = L"\\" + std::wstring(258, L'x');
    HeadlessAnswerSaveDialog(name, 1); // no room for an extension
    EXPECT_TRUE(LogOpen());
    EXPECT_TRUE(HeadlessFileExists(name));
}

TEST_F(ReceiverLog, NameThatIsTooLongIsReported)
{
    SetLastError(206); // the system's "name too long"
    ShowLastError(L"same error");
    HeadlessAnswerSaveDialog(L"\\" + std::wstring(259, L'x'), 1);
    EXPECT_FALSE(LogOpen());
    ASSERT_EQ(HeadlessBoxes().size(), 2u);
    EXPECT_EQ(HeadlessBoxes()[1].caption, L"CreateFile File");
    EXPECT_EQ(HeadlessBoxes()[1].text, HeadlessBoxes()[0].text);
}

TEST_F(ReceiverLog, PortIsNoLog)
{
    HeadlessAddPort(3);
    HeadlessAnswerSaveDialog(L"COM3:", 3);
    EXPECT_FALSE(LogOpen());
    ASSERT_EQ(HeadlessBoxes().size(), 1u);
    EXPECT_TRUE(IsBox(HeadlessBoxes()[0], L"CreateFile File", L"A port cannot be the log. Choose a file."));
    EXPECT_EQ(HeadlessOpenHandles(), 0u);
}

TEST_F(ReceiverLog, OpenLogIsNotOpenedAgain)
{
    HeadlessAnswerSaveDialog(L"\\a.txt", 1);
    EXPECT_TRUE(LogOpen());
    HeadlessAnswerSaveDialog(L"\\b.txt", 1);
    EXPECT_TRUE(LogOpen());
    EXPECT_EQ(HeadlessSaveDialogs().size(), 1u);
    EXPECT_FALSE(HeadlessFileExists(L"\\b.txt"));
    EXPECT_TRUE(LogClose());
    EXPECT_EQ(HeadlessOpenHandles(), 0u);
}

TEST_F(ReceiverLog, SaveDialogBelongsToTheWindowInFront)
{
    HWND window = MakeMainWindow();
    HeadlessAnswerSaveDialog(L"", 1);
    LogOpen();
    EXPECT_EQ(HeadlessSaveDialogs().back().owner, window);
    DestroyWindow(window);
}

TEST_F(ReceiverLog, ExistingFileIsWrittenOverFromItsStart)
{
    HeadlessWriteFile(L"\\a.txt", "0123456789");
    HeadlessAnswerSaveDialog(L"\\a.txt", 1);
    EXPECT_TRUE(LogOpen());
    Feed("abc");
    LogClose();
    EXPECT_EQ(HeadlessFileContent(L"\\a.txt"), "abc3456789");
}

TEST_F(ReceiverLog, FileThatCannotBeOpenedIsReported)
{
    HeadlessAnswerSaveDialog(L"\\a.txt", 1);
    HeadlessFailCall("CreateFileW", 1, ERROR_ACCESS_DENIED);
    EXPECT_FALSE(LogOpen());
    ASSERT_EQ(HeadlessBoxes().size(), 1u);
    EXPECT_EQ(HeadlessBoxes()[0].caption, L"CreateFile File");
    EXPECT_EQ(LogFileHandle.load(), INVALID_HANDLE_VALUE);
}

TEST_F(ReceiverLog, UnknownFolderIsTheRoot)
{
    HeadlessSetFolder(CSIDL_PERSONAL, L"");
    HeadlessSetLocalTime(Opened);
    HeadlessAnswerSaveDialog(L"", 1);
    LogOpen();
    EXPECT_EQ(HeadlessSaveDialogs()[0].proposedName, L"\\081116042905");
}

class KeypadLog : public ReceiverLog
{
protected:
    KeypadLog()
    {
        HeadlessSetPlatformType(L"SmartPhone");
        HeadlessSetLocalTime(Opened);
        ChooseLayout();
    }
};

TEST_F(KeypadLog, NameIsShownAndNotAskedFor)
{
    EXPECT_TRUE(LogOpen());
    EXPECT_TRUE(HeadlessSaveDialogs().empty());
    ASSERT_EQ(HeadlessBoxes().size(), 1u);
    EXPECT_TRUE(IsBox(HeadlessBoxes()[0], L"Log File Name", L"\\Application Data\\081116042905.txt"));
    EXPECT_TRUE(HeadlessFileExists(L"\\Application Data\\081116042905.txt"));
}

TEST_F(KeypadLog, OnlySirfAloneIsNamedSo)
{
    const std::wstring name = L"\\Application Data\\081116042905";
    SirfRecognised.store(1);
    EXPECT_TRUE(LogOpen());
    EXPECT_TRUE(LogClose());
    EXPECT_TRUE(HeadlessFileExists(name + L".srf"));
    EXPECT_FALSE(HeadlessFileExists(name + L".txt"));
    NmeaRecognised.store(1); // both
    EXPECT_TRUE(LogOpen());
    EXPECT_TRUE(HeadlessFileExists(name + L".txt"));
}

TEST_F(KeypadLog, SecondLogOfASecondWritesOverTheFirst)
{
    LogOpen();
    Feed("0123456789");
    LogClose();
    LogOpen();
    Feed("abc");
    LogClose();
    EXPECT_EQ(HeadlessFileContent(L"\\Application Data\\081116042905.txt"), "abc3456789");
}

TEST_F(KeypadLog, FailureShowsNoName)
{
    HeadlessFailCall("CreateFileW", 1, ERROR_DISK_FULL);
    EXPECT_FALSE(LogOpen());
    ASSERT_EQ(HeadlessBoxes().size(), 1u);
    EXPECT_EQ(HeadlessBoxes()[0].caption, L"CreateFile File");
}

} // namespace
