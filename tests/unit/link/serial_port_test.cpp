// SPDX-License-Identifier: MIT
#include "link/serial_port.h"

#include "link/link_state.h"
#include "link/write_queue.h"
#include "tests/unit/support/product_test.h"

namespace
{

class SerialPort : public ProductTest
{
protected:
    static std::vector<std::wstring> Captions()
    {
        std::vector<std::wstring> captions;
        for (const HeadlessBox& box : HeadlessBoxes()) captions.push_back(box.caption);
        return captions;
    }
};

using Texts = std::vector<std::wstring>;

TEST_F(SerialPort, OpensAndClosesASimplePort)
{
    HeadlessPort& port = HeadlessAddPort(3);
    EXPECT_TRUE(PortOpen(L"COM3:", 38400));
    EXPECT_EQ(HeadlessElapsed(), 2000u); // waiting time of a driver before the next call
    EXPECT_TRUE(port.isOpen);
    EXPECT_EQ(BaudrateIdx.load(), 5);
    EXPECT_EQ(HeadlessLiveThreads(), 1u);
    PortClose();
    EXPECT_FALSE(port.isOpen);
    EXPECT_EQ(HeadlessLiveThreads(), 0u);
    EXPECT_EQ(PortHandle.load(), INVALID_HANDLE_VALUE);
    EXPECT_EQ(port.escapes, std::vector<DWORD>{CLRIR}); // every port leaves infrared mode
    EXPECT_TRUE(HeadlessBoxes().empty());
}

TEST_F(SerialPort, SetsTheLine)
{
    HeadlessPort& port = HeadlessAddPort(3);
    port.dcb = {};
    port.dcb.DCBlength = sizeof port.dcb;
    port.dcb.BaudRate = 300;
    port.dcb.fBinary = 0;
    port.dcb.fParity = 1;
    port.dcb.fOutxCtsFlow = 1;
    port.dcb.fOutxDsrFlow = 1;
    port.dcb.fDtrControl = 2;
    port.dcb.fDsrSensitivity = 1;
    port.dcb.fTXContinueOnXoff = 0;
    port.dcb.fOutX = 1;
    port.dcb.fInX = 1;
    port.dcb.fErrorChar = 1;
    port.dcb.fNull = 1;
    port.dcb.fRtsControl = 2;
    port.dcb.fAbortOnError = 1;
    port.dcb.fDummy2 = 0x1FFFF;
    port.dcb.wReserved = 7;
    port.dcb.XonLim = 11;
    port.dcb.ByteSize = 7;
    port.dcb.Parity = 2;
    port.dcb.StopBits = 2;
    ASSERT_TRUE(PortOpen(L"COM3:", 57600));

    EXPECT_EQ(port.dcb.BaudRate, 57600u);
    EXPECT_EQ(port.dcb.fBinary, 1u);
    EXPECT_EQ(port.dcb.fParity, 0u);
    EXPECT_EQ(port.dcb.fOutxCtsFlow, 0u);
    EXPECT_EQ(port.dcb.fOutxDsrFlow, 0u);
    EXPECT_EQ(port.dcb.fDtrControl, 2u); // as the driver has it
    EXPECT_EQ(port.dcb.fDsrSensitivity, 0u);
    EXPECT_EQ(port.dcb.fTXContinueOnXoff, 1u);
    EXPECT_EQ(port.dcb.fOutX, 0u);
    EXPECT_EQ(port.dcb.fInX, 0u);
    EXPECT_EQ(port.dcb.fErrorChar, 0u);
    EXPECT_EQ(port.dcb.fNull, 0u);
    EXPECT_EQ(port.dcb.fRtsControl, 1u);
    EXPECT_EQ(port.dcb.fAbortOnError, 0u);
    EXPECT_EQ(port.dcb.fDummy2, 0x1FFFFu);
    EXPECT_EQ(port.dcb.wReserved, 0);
    EXPECT_EQ(port.dcb.XonLim, 11);
    EXPECT_EQ(port.dcb.ByteSize, 8);
    EXPECT_EQ(port.dcb.Parity, 0);
    EXPECT_EQ(port.dcb.StopBits, 0);
}

TEST_F(SerialPort, TimeoutsMakeReadsReturnAtOnceAndWritesWaitLongerAtHigherRates)
{
    struct Row {
        uint32_t baud, multiplier;
    };
    HeadlessPort& port = HeadlessAddPort(3);
    port.timeouts = {1, 2, 3, 4, 5}; // a driver's own
    for (const Row row : {Row{1200, 1}, Row{19200, 1}, Row{38400, 2}, Row{57600, 3}, Row{115200, 6}}) {
        ASSERT_TRUE(PortOpen(L"COM3:", row.baud));
        EXPECT_EQ(port.timeouts.ReadIntervalTimeout, 0xFFFFFFFFu);
        EXPECT_EQ(port.timeouts.ReadTotalTimeoutMultiplier, 0u);
        EXPECT_EQ(port.timeouts.ReadTotalTimeoutConstant, 0u);
        EXPECT_EQ(port.timeouts.WriteTotalTimeoutMultiplier, row.multiplier) << row.baud;
        EXPECT_EQ(port.timeouts.WriteTotalTimeoutConstant, 0u);
        PortClose();
    }
}

constexpr wchar_t NoDevice[] = L"There is no device at this port. Is the receiver plugged in?";

TEST_F(SerialPort, MissingPortIsNamed)
{
    EXPECT_FALSE(PortOpen(L"COM5:", 4800));
    ASSERT_EQ(HeadlessBoxes().size(), 1u);
    EXPECT_TRUE(IsBox(HeadlessBoxes()[0], L"Cannot open COM5:", NoDevice));
    EXPECT_EQ(HeadlessElapsed(), 0u);
}

TEST_F(SerialPort, PortThatCannotBeOpenedIsExplained)
{
    const struct {
        DWORD error;
        const wchar_t* text;
    } rows[] = {
        {2, NoDevice},
        {3, NoDevice},
        {20, NoDevice},
        {55, NoDevice},
        {433, NoDevice},
        {5, L"Another program uses this port, or you have no permission to use it."},
        {32, L"Another program uses this port. End it first."},
        {170, L"Another program uses this port. End it first."},
        {2404, L"Another program uses this port. End it first."},
        {21, L"The device no longer answers. Is the receiver still plugged in?"},
        {22, L"The device no longer answers. Is the receiver still plugged in?"},
        {1167, L"The device no longer answers. Is the receiver still plugged in?"},
    };
    HeadlessAddPort(3);
    for (const auto& row : rows) {
        HeadlessClearBoxes();
        HeadlessFailCall("CreateFileW", 1, row.error);
        EXPECT_FALSE(PortOpen(L"COM3:", 4800));
        ASSERT_EQ(HeadlessBoxes().size(), 1u);
        EXPECT_TRUE(IsBox(HeadlessBoxes()[0], L"Cannot open COM3:", row.text)) << row.error;
    }
}

// An error without its own sentence is shown with the system's text for the error of opening, also after
// other calls.
TEST_F(SerialPort, PortThatCannotBeOpenedForAnotherReasonShowsTheSystemsText)
{
    HeadlessAddPort(3);
    for (const DWORD error : {1u, 6u, 31u, 50u, 112u}) {
        SetLastError(error);
        ShowLastError(L"same error");
        HeadlessFailCall("CreateFileW", 1, error);
        EXPECT_FALSE(PortOpen(L"COM3:", 4800));
        ASSERT_EQ(HeadlessBoxes().size(), 2u);
        EXPECT_EQ(HeadlessBoxes()[1].text, HeadlessBoxes()[0].text);
        HeadlessClearBoxes();
    }
}

TEST_F(SerialPort, DeviceThatIsNoSerialPortIsExplained)
{
    HeadlessAddPort(3);
    for (const DWORD error : {1u, 6u, 50u}) {
        HeadlessClearBoxes();
        HeadlessFailCall("GetCommState", 1, error);
        EXPECT_TRUE(PortOpen(L"COM3:", 4800));
        ASSERT_EQ(HeadlessBoxes().size(), 1u);
        EXPECT_TRUE(
            IsBox(HeadlessBoxes()[0], L"GetCommState", L"The device at this port is not a serial port."));
        HeadlessClearFaults();
        PortClose();
    }
}

TEST_F(SerialPort, DeviceThatIsGoneIsExplained)
{
    HeadlessAddPort(3);
    ASSERT_TRUE(PortOpen(L"COM3:", 4800));
    HeadlessFailCall("WriteFile", 1, 21);
    PortWrite('a');
    PortWriteBuffer();
    HeadlessFailCall("SetCommState", 1, 21);
    PortSetBaud(9600);
    ASSERT_EQ(HeadlessBoxes().size(), 2u);
    constexpr wchar_t Gone[] = L"The device no longer answers. Is the receiver still plugged in?";
    EXPECT_TRUE(IsBox(HeadlessBoxes()[0], L"WriteFile 2", Gone));
    EXPECT_TRUE(IsBox(HeadlessBoxes()[1], L"SetCommState", Gone));
}

// The next start must find the receiver, which still has its old rate.
TEST_F(SerialPort, RefusedRateIsNotRecorded)
{
    HeadlessPort& port = HeadlessAddPort(3);
    ASSERT_TRUE(PortOpen(L"COM3:", 4800));
    HeadlessFailCall("SetCommState", 1, ERROR_INVALID_PARAMETER);
    PortSetBaud(115200);
    EXPECT_EQ(Captions(), Texts{L"SetCommState"});
    EXPECT_EQ(BaudrateIdx.load(), 2);
    EXPECT_EQ(PortDcb.BaudRate, 4800u);
    EXPECT_EQ(port.dcb.BaudRate, 4800u);
}

TEST_F(SerialPort, RateThatIsRefusedAtTheOpeningLeavesTheDrivers)
{
    HeadlessAddPort(3).dcb.BaudRate = 9600;
    BaudrateIdx.store(7);
    HeadlessFailCall("SetCommState", 1, ERROR_INVALID_PARAMETER);
    ASSERT_TRUE(PortOpen(L"COM3:", 115200));
    EXPECT_EQ(BaudrateIdx.load(), 3);
    EXPECT_EQ(PortDcb.BaudRate, 9600u);
    EXPECT_EQ(PortDcb.fRtsControl, HeadlessGetPort(3).dcb.fRtsControl); // nothing was set
    PortSetBaud(4800);
    EXPECT_EQ(HeadlessGetPort(3).dcb.fRtsControl, 1u); // with the rest of the line's settings
}

// A driver may have a call that waits for events; this call ends before the handle is closed.
TEST_F(SerialPort, WaitForEventsIsReleasedBeforeTheHandleIsClosed)
{
    HeadlessAddPort(3);
    ASSERT_TRUE(PortOpen(L"COM3:", 4800));
    HeadlessFailCall("CloseHandle", 1, ERROR_GEN_FAILURE);
    HeadlessFailCall("SetCommMask", 1, ERROR_GEN_FAILURE);
    PortClose();
    EXPECT_EQ(HeadlessFailedCall(), "SetCommMask");
    EXPECT_EQ(Captions(), Texts{L"CloseHandle"});
}

DWORD WINAPI OpenAgain(void* window)
{
    Sleep(1000);
    SendMessageW(static_cast<HWND>(window), WM_USER, 0, 0);
    return 0;
}
bool OpenedAgain = true;
LRESULT CALLBACK OpeningProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_USER) {
        EXPECT_TRUE(IsPortBusy());
        OpenedAgain = PortOpen(L"COM4:", 9600);
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

TEST_F(SerialPort, OpeningThatComesDuringAnotherIsRefused)
{
    WNDCLASSW opening = {};
    opening.lpszClassName = L"Opening";
    opening.lpfnWndProc = OpeningProcedure;
    RegisterClassW(&opening);
    const HWND window =
        CreateWindowExW(0, L"Opening", L"", 0, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
    HeadlessAddPort(3);
    HeadlessAddPort(4);
    CloseHandle(CreateThread(nullptr, 0, OpenAgain, window, 0, nullptr));
    EXPECT_TRUE(PortOpen(L"COM3:", 4800));
    EXPECT_FALSE(OpenedAgain);
    EXPECT_EQ(HeadlessGetPort(3).opens, 1u);
    EXPECT_EQ(HeadlessGetPort(4).opens, 0u);
    EXPECT_TRUE(IsPortBusy());
    EXPECT_EQ(HeadlessLiveThreads(), 1u);
    PortClose();
    EXPECT_FALSE(IsPortBusy());
    DestroyWindow(window);
}

TEST_F(SerialPort, MissingPortIsSilentDuringASearch)
{
    SearchInProgress.store(1);
    EXPECT_FALSE(PortOpen(L"COM5:", 0));
    EXPECT_TRUE(HeadlessBoxes().empty());
    EXPECT_FALSE(IsPortOpen());
}

struct FailureRow {
    const char* call;
    uint32_t n;
    FailMode mode;
    Texts captions;
    bool opened;
};

TEST_F(SerialPort, FailuresAreNamedAndPassedOver)
{
    const FailureRow rows[] = {
        {"GetCommProperties", 1, FailMode::Once, {}, true}, // tried again
        {"GetCommProperties",
         1,
         FailMode::FromHereOn,
         {L"GetCommProperties 1", L"GetCommProperties 2"},
         true},
        {"GetCommState", 1, FailMode::Once, {L"GetCommState"}, true},
        {"GetCommTimeouts", 1, FailMode::Once, {L"GetCommTimeouts"}, true},
        {"ClearCommError", 1, FailMode::Once, {L"ClearCommError"}, true},
        {"SetCommState", 1, FailMode::Once, {L"SetCommState"}, true},
        {"SetCommTimeouts", 1, FailMode::Once, {L"SetCommTimeouts"}, true},
        {"EscapeCommFunction", 1, FailMode::Once, {L"EscapeCommFunction SETIR"}, true},
        {"CreateThread", 1, FailMode::Once, {L"CreateThread"}, false},
    };
    HeadlessPort& port = HeadlessAddPort(3);
    IrPortNumber.store(3);
    for (const FailureRow& row : rows) {
        HeadlessClearBoxes();
        HeadlessFailCall(row.call, row.n, ERROR_GEN_FAILURE, row.mode);
        EXPECT_EQ(PortOpen(L"COM3:", 4800), row.opened) << row.call;
        EXPECT_EQ(Captions(), row.captions) << row.call;
        EXPECT_EQ(port.isOpen, row.opened) << row.call;
        HeadlessClearFaults();
        PortClose();
    }
}

TEST_F(SerialPort, SecondTryOfThePropertiesWaitsASecond)
{
    HeadlessAddPort(3);
    HeadlessFailCall("GetCommProperties", 1, ERROR_GEN_FAILURE);
    ASSERT_TRUE(PortOpen(L"COM3:", 4800));
    EXPECT_EQ(HeadlessElapsed(), 3000u);
}

TEST_F(SerialPort, FailingCloseMarksThePortClosedAnyway)
{
    HeadlessAddPort(3);
    ASSERT_TRUE(PortOpen(L"COM3:", 4800));
    HeadlessFailCall("CloseHandle", 1, ERROR_GEN_FAILURE);
    PortClose();
    EXPECT_EQ(Captions(), Texts{L"CloseHandle"});
    EXPECT_FALSE(IsPortOpen());
    EXPECT_EQ(HeadlessLiveThreads(), 0u);
}

TEST_F(SerialPort, FailedExitCodeQueryCountsAsEnded)
{
    HeadlessAddPort(3);
    ASSERT_TRUE(PortOpen(L"COM3:", 4800));
    HeadlessFailCall("GetExitCodeThread", 1, ERROR_INVALID_HANDLE, FailMode::FromHereOn);
    PortClose();
    EXPECT_FALSE(IsPortOpen());
    EXPECT_EQ(ReaderThreadHandle, nullptr);
    Sleep(100); // the reader sees it in its next pass
    EXPECT_EQ(HeadlessLiveThreads(), 0u);
}

TEST_F(SerialPort, RateZeroKeepsTheDriversRate)
{
    HeadlessPort& port = HeadlessAddPort(3);
    port.dcb.BaudRate = 19200;
    ASSERT_TRUE(PortOpen(L"COM3:", 0));
    EXPECT_EQ(port.rates, std::vector<DWORD>{19200});
    EXPECT_EQ(BaudrateIdx.load(), 4);
}

TEST_F(SerialPort, RateZeroOnADriverThatReportsZeroLeavesThePortOpenWithoutAReader)
{
    HeadlessPort& port = HeadlessAddPort(3);
    port.dcb.BaudRate = 0;
    EXPECT_FALSE(PortOpen(L"COM3:", 0));
    EXPECT_TRUE(port.isOpen);
    EXPECT_EQ(HeadlessLiveThreads(), 0u);
    EXPECT_TRUE(port.rates.empty());
    PortClose(); // does not wait for a reader that was never started
    EXPECT_FALSE(port.isOpen);
}

TEST_F(SerialPort, RateOutsideTheTableLeavesTheIndex)
{
    HeadlessPort& port = HeadlessAddPort(3);
    BaudrateIdx.store(2);
    ASSERT_TRUE(PortOpen(L"COM3:", 14400));
    EXPECT_EQ(port.rates, std::vector<DWORD>{14400});
    EXPECT_EQ(BaudrateIdx.load(), 2);
    PortSetBaud(115200);
    EXPECT_EQ(BaudrateIdx.load(), 7);
    EXPECT_EQ(port.rates, (std::vector<DWORD>{14400, 115200}));
}

TEST_F(SerialPort, InfraredModeIsForTheInfraredPortOnly)
{
    HeadlessPort& port = HeadlessAddPort(3);
    for (const int8_t number : {int8_t{-1}, int8_t{2}, int8_t{3}}) {
        port.escapes.clear();
        IrPortNumber.store(number);
        ASSERT_TRUE(PortOpen(L"COM3:", 4800));
        PortClose();
        EXPECT_EQ(port.escapes, number == 3 ? (std::vector<DWORD>{SETIR, CLRIR}) : std::vector<DWORD>{CLRIR});
    }
}

TEST_F(SerialPort, LengthThatTheDriverGivesIsCutToTheRecords)
{
    HeadlessPort& port = HeadlessAddPort(3);
    port.dcb.DCBlength = 64;
    EXPECT_TRUE(PortOpen(L"COM3:", 4800));
    EXPECT_TRUE(HeadlessBoxes().empty());
    EXPECT_EQ(port.rates, std::vector<DWORD>{4800});
}

DWORD WINAPI SleepASecond(void*)
{
    Sleep(1000);
    return 0;
}

TEST_F(SerialPort, CloseWithoutAPortReturnsAtOnce)
{
    PortWrite('a');
    ReaderThreadHandle = CreateThread(nullptr, 0, SleepASecond, nullptr, 0, nullptr);
    PortClose();
    EXPECT_EQ(WriteQueueSpace(), 255);
    EXPECT_EQ(HeadlessElapsed(), 0u);
    EXPECT_TRUE(HeadlessBoxes().empty());
    CloseHandle(ReaderThreadHandle);
    ReaderThreadHandle = nullptr;
    Sleep(2000); // the thread ends
}

TEST_F(SerialPort, ClosingThatIsRefusedInfraredModeIsSilent)
{
    HeadlessAddPort(3);
    ASSERT_TRUE(PortOpen(L"COM3:", 4800));
    HeadlessFailCall("EscapeCommFunction", 1, ERROR_INVALID_PARAMETER);
    PortClose();
    EXPECT_TRUE(HeadlessBoxes().empty());
}

// Bytes stream without a pause; the reader is busy whenever the port is closed.
TEST_F(SerialPort, OpenAndCloseWhileTheReceiverStreams)
{
    HeadlessPort& port = HeadlessAddPort(3);
    for (uint32_t round = 1; round <= 30; ++round) {
        HeadlessInterleave(round);
        ASSERT_TRUE(PortOpen(L"COM3:", 115200));
        HeadlessStream(port, Sentence("GPGSA,A,3,01,02,03,04,05,06,07,08,09,10,11,12,2.5,1.5,2.0"), 87);
        Sleep(round * 7 % 100);
        PortClose();
        HeadlessStream(port, "", 0);
        ASSERT_FALSE(port.isOpen);
        ASSERT_EQ(HeadlessLiveThreads(), 0u);
        ResetProtocolMode();
    }
    EXPECT_GT(NmeaMessageCount.load(), 30u);
    EXPECT_TRUE(HeadlessBoxes().empty());
}

// When the port is closed, the reader is still reading a full queue: it recognises no further message.
TEST_F(SerialPort, NothingIsDecodedWhileThePortCloses)
{
    HeadlessPort& port = HeadlessAddPort(3);
    std::string messages;
    for (int i = 0; i < 20000; ++i) messages += "$A\r\n";
    uint32_t reading = 0;
    for (uint32_t round = 1; round <= 100; ++round) {
        HeadlessInterleave(round);
        ASSERT_TRUE(PortOpen(L"COM3:", 115200));
        HeadlessReceive(port, messages);
        Sleep(40 + round % 20);
        reading += NmeaMessageCount.load() % 20000 != 0;
        ResetProtocolMode();
        PortClose();
        ASSERT_EQ(ProtocolMode(), ProtocolNone) << round;
        NmeaMessageCount.store(0);
    }
    EXPECT_GT(reading, 5u); // otherwise this test has missed its moment
}

} // namespace
