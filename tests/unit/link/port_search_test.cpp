// SPDX-License-Identifier: MIT
#include "link/port_search.h"

#include "graph/recorder.h"
#include "link/protocol_recognition.h"
#include "link/serial_port.h"
#include "tests/unit/link/communication_test.h"

namespace
{

constexpr uint32_t OpenMs = 2000, RateMs = 1500;
constexpr uint32_t GivenUp = OpenMs + 50 + 8 * RateMs; // after the opening of a silent port
constexpr int NothingStored = -12345;

const std::vector<DWORD> AllRates = {1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200};

class PortSearch : public CommunicationTest
{
protected:
    // A receiver that sends these bytes again and again at this rate.
    static HeadlessPort& AddReceiver(uint32_t number, uint32_t rate, const std::string& bytes)
    {
        HeadlessPort& port = HeadlessAddPort(number);
        port.deviceRate = rate;
        HeadlessStream(port, bytes, 10'000'000 / rate);
        return port;
    }

    static void ExpectFound(HWND dialog, int port, int rate, const wchar_t* protocol)
    {
        EXPECT_EQ(HeadlessText(dialog, CONTROL_COM_PROTOCOL), protocol);
        EXPECT_EQ(HeadlessSelection(dialog, CONTROL_COM_PORT), port);
        EXPECT_EQ(HeadlessSelection(dialog, CONTROL_COM_BAUDRATE), rate);
        for (const int control : {CONTROL_COM_PORT, CONTROL_COM_BAUDRATE, CONTROL_COM_OPEN,
                                  CONTROL_COM_FIND_PORT, CONTROL_COM_FIND_BAUD})
            EXPECT_FALSE(HeadlessEnabled(dialog, control)) << control;
        EXPECT_TRUE(HeadlessEnabled(dialog, CONTROL_COM_CLOSE));
        EXPECT_EQ(HeadlessFocus(dialog), CONTROL_COM_CLOSE);
        EXPECT_TRUE(IsPortOpen());
        EXPECT_EQ(CommPortIdx.load(), port);
        EXPECT_EQ(BaudrateIdx.load(), rate);
        EXPECT_EQ(Setting(L"CommPortIdx"), port);
        EXPECT_EQ(Setting(L"BaudrateIdx"), rate);
        EXPECT_EQ(SearchInProgress.load(), 0);
    }

    static void ExpectNotFound(HWND dialog, int focus)
    {
        for (const int control : {CONTROL_COM_PORT, CONTROL_COM_BAUDRATE, CONTROL_COM_OPEN,
                                  CONTROL_COM_FIND_PORT, CONTROL_COM_FIND_BAUD})
            EXPECT_TRUE(HeadlessEnabled(dialog, control)) << control;
        EXPECT_FALSE(HeadlessEnabled(dialog, CONTROL_COM_CLOSE));
        EXPECT_EQ(HeadlessFocus(dialog), focus);
        EXPECT_EQ(HeadlessText(dialog, CONTROL_COM_PROTOCOL), L"-");
        EXPECT_EQ(ProtocolMode(), ProtocolNone);
        EXPECT_EQ(SearchInProgress.load(), 0);
        EXPECT_EQ(HeadlessLiveThreads(), 0u);
    }
};

TEST_F(PortSearch, FindBaudFindsNmeaAt4800)
{
    HeadlessPort& port = AddReceiver(3, 4800, Nmea);
    InDialog([&](HWND dialog) {
        HeadlessChoose(dialog, CONTROL_COM_PORT, 3);
        HeadlessClick(dialog, CONTROL_COM_FIND_BAUD);
        ExpectFound(dialog, 3, 2, L"NMEA");
        EXPECT_GE(HeadlessElapsed(), OpenMs + 2 * RateMs);
        EXPECT_LT(HeadlessElapsed(), OpenMs + 3 * RateMs);
        // The driver's own rate first, as the port is opened.
        EXPECT_EQ(port.rates, (std::vector<DWORD>{9600, 1200, 2400, 4800}));
    });
    EXPECT_TRUE(HeadlessBoxes().empty());
}

TEST_F(PortSearch, FindBaudFindsSirfAt57600)
{
    AddReceiver(7, 57600, Sirf);
    InDialog([](HWND dialog) {
        HeadlessChoose(dialog, CONTROL_COM_PORT, 7);
        HeadlessClick(dialog, CONTROL_COM_FIND_BAUD);
        ExpectFound(dialog, 7, 6, L"SiRF");
    });
}

TEST_F(PortSearch, FindBaudNeedsAPort)
{
    InDialog([](HWND dialog) {
        HeadlessClick(dialog, CONTROL_COM_FIND_BAUD);
        ASSERT_EQ(HeadlessBoxes().size(), 1u);
        EXPECT_TRUE(IsBox(HeadlessBoxes()[0], L"Comm Port", L"Bad selection"));
        EXPECT_TRUE(HeadlessEnabled(dialog, CONTROL_COM_OPEN));
    });
    EXPECT_EQ(CommPortIdx.load(), -1);
}

TEST_F(PortSearch, FindBaudInVain)
{
    HeadlessPort& port = HeadlessAddPort(3);
    InDialog([&](HWND dialog) {
        HeadlessChoose(dialog, CONTROL_COM_PORT, 3);
        HeadlessClick(dialog, CONTROL_COM_FIND_BAUD);
        ExpectNotFound(dialog, CONTROL_COM_FIND_BAUD);
        EXPECT_GE(HeadlessElapsed(), GivenUp);
        EXPECT_LE(HeadlessElapsed(), GivenUp + 100);
        EXPECT_EQ(std::vector<DWORD>(port.rates.begin() + 1, port.rates.end()), AllRates);
    });
    EXPECT_EQ(CommPortIdx.load(), 3);
    EXPECT_EQ(BaudrateIdx.load(), 7); // in memory
    EXPECT_EQ(Setting(L"CommPortIdx"), NothingStored);
    EXPECT_FALSE(port.isOpen);
}

TEST_F(PortSearch, FindPortPassesOverMissingAndSilentPorts)
{
    HeadlessAddPort(1);
    AddReceiver(4, 38400, Nmea);
    AddReceiver(6, 9600, Nmea); // not reached
    InDialog([](HWND dialog) {
        HeadlessClick(dialog, CONTROL_COM_FIND_PORT);
        ExpectFound(dialog, 4, 5, L"NMEA");
    });
    EXPECT_TRUE(HeadlessBoxes().empty());
    EXPECT_EQ(HeadlessGetPort(6).opens, 0u);
    EXPECT_TRUE(HeadlessFileExists(L"\\My Documents\\COM1;.txt")); // each opened port leaves its report
    EXPECT_TRUE(HeadlessFileExists(L"\\My Documents\\COM4;.txt"));
    EXPECT_FALSE(HeadlessFileExists(L"\\My Documents\\COM0;.txt"));
}

TEST_F(PortSearch, TenSilentPortsTakeTheirTime)
{
    for (uint32_t i = 0; i < 10; ++i) HeadlessAddPort(i);
    InDialog([](HWND dialog) {
        HeadlessClick(dialog, CONTROL_COM_FIND_PORT);
        ExpectNotFound(dialog, CONTROL_COM_FIND_PORT);
        EXPECT_GE(HeadlessElapsed(), 10 * GivenUp);
        EXPECT_LE(HeadlessElapsed(), 10 * (GivenUp + 100));
    });
    EXPECT_EQ(HeadlessOpenHandles(), 0u);
}

TEST_F(PortSearch, NoPortsAreSearchedAtOnce)
{
    InDialog([](HWND dialog) {
        HeadlessClick(dialog, CONTROL_COM_FIND_PORT);
        ExpectNotFound(dialog, CONTROL_COM_FIND_PORT);
    });
    EXPECT_LT(HeadlessElapsed(), 100u);
    EXPECT_TRUE(HeadlessBoxes().empty());
}

TEST_F(PortSearch, BothProtocolsAreASuccessWithoutAName)
{
    AddReceiver(3, 19200, Nmea + Sirf);
    InDialog([](HWND dialog) {
        HeadlessChoose(dialog, CONTROL_COM_PORT, 3);
        HeadlessClick(dialog, CONTROL_COM_FIND_BAUD);
        HeadlessPass(500);
        ExpectFound(dialog, 3, 4, L"-");
        EXPECT_EQ(ProtocolMode(), ProtocolNmea | ProtocolSirf);
    });
}

TEST_F(PortSearch, NothingIsShownOrDecodedDuringTheSearch)
{
    AddReceiver(3, 4800, Nmea);
    RecogniseNmea();
    const std::wstring course = Line(14);
    InDialog([](HWND dialog) {
        HeadlessPass(1000);
        EXPECT_NE(HeadlessText(dialog, CONTROL_COM_STATUS), L"");
        HeadlessChoose(dialog, CONTROL_COM_PORT, 3);
        HeadlessClick(dialog, CONTROL_COM_FIND_BAUD);
        EXPECT_EQ(HeadlessText(dialog, CONTROL_COM_STATUS), L"");
    });
    EXPECT_EQ(Line(14), course);
    EXPECT_EQ(GraphSampleCount.load(), 0u);
}

TEST_F(PortSearch, FoundPortCanBeClosedAndSearchedAgain)
{
    AddReceiver(3, 2400, Nmea);
    InDialog([](HWND dialog) {
        for (int round = 0; round < 2; ++round) {
            HeadlessClick(dialog, CONTROL_COM_FIND_PORT);
            ExpectFound(dialog, 3, 1, L"NMEA");
            HeadlessClick(dialog, CONTROL_COM_CLOSE);
            ExpectNotFound(dialog, CONTROL_COM_OPEN);
        }
    });
}

TEST_F(PortSearch, PortWithoutARateIsPassedOver)
{
    HeadlessAddPort(2).dcb.BaudRate = 0;
    AddReceiver(3, 9600, Nmea);
    InDialog([](HWND dialog) {
        HeadlessClick(dialog, CONTROL_COM_FIND_PORT);
        ExpectFound(dialog, 3, 3, L"NMEA");
    });
    EXPECT_TRUE(HeadlessGetPort(2).isOpen); // until the program ends
}

TEST_F(PortSearch, LastPortWithoutARateCanBeClosedInANewDialog)
{
    HeadlessPort& port = HeadlessAddPort(9);
    port.dcb.BaudRate = 0;
    InDialog([](HWND dialog) {
        HeadlessClick(dialog, CONTROL_COM_FIND_PORT);
        ExpectNotFound(dialog, CONTROL_COM_FIND_PORT);
    });
    EXPECT_TRUE(port.isOpen);
    InDialog([](HWND dialog) {
        EXPECT_TRUE(HeadlessEnabled(dialog, CONTROL_COM_CLOSE));
        HeadlessClick(dialog, CONTROL_COM_CLOSE);
        EXPECT_TRUE(HeadlessEnabled(dialog, CONTROL_COM_OPEN));
    });
    EXPECT_FALSE(port.isOpen);
}

// The driver has received sentences in the pause after its opening, before the first rate is tried.
TEST_F(PortSearch, ReceiverAtTheDriversRateIsFoundAtThatRate)
{
    HeadlessPort& port = AddReceiver(3, 38400, Nmea);
    port.dcb.BaudRate = 38400;
    InDialog([&](HWND dialog) {
        HeadlessClick(dialog, CONTROL_COM_FIND_PORT);
        ExpectFound(dialog, 3, 5, L"NMEA");
        EXPECT_EQ(port.rates, std::vector<DWORD>{38400});
    });
}

TEST_F(PortSearch, UnpluggedReceiverEndsInVain)
{
    HeadlessPort& port = AddReceiver(3, 115200, Nmea);
    HeadlessFailCall("ReadFile", 100, ERROR_GEN_FAILURE, FailMode::FromHereOn);
    HeadlessFailCall("ClearCommError", 1, ERROR_GEN_FAILURE, FailMode::Once);
    InDialog([](HWND dialog) {
        HeadlessChoose(dialog, CONTROL_COM_PORT, 3);
        HeadlessClick(dialog, CONTROL_COM_FIND_BAUD);
        ExpectNotFound(dialog, CONTROL_COM_FIND_BAUD);
    });
    EXPECT_FALSE(port.isOpen);
}

// ---- A message that is recognised after the search has looked for the last time -----------------------

// Acts as the reader, at a moment when the search has given up the port and is closing it.
DWORD WINAPI RecogniseWhileThePortIsBeingClosed(void*)
{
    Sleep(GivenUp + 5);
    NmeaRecognised.store(1);
    StoreWorkingPort();
    return 0;
}

DWORD WINAPI ReplaceTheReport(void*)
{
    Sleep(GivenUp - 1000);
    HeadlessWriteFile(L"\\My Documents\\COM3;.txt", "as it was");
    return 0;
}

TEST_F(PortSearch, MessageAtTheLastMomentBelongsToItsPort)
{
    constexpr const wchar_t* Report = L"\\My Documents\\COM3;.txt";
    HeadlessPort& port = HeadlessAddPort(3);
    HeadlessAddPort(4);
    const HANDLE marker = CreateThread(nullptr, 0, ReplaceTheReport, nullptr, 0, nullptr);
    const HANDLE reader = CreateThread(nullptr, 0, RecogniseWhileThePortIsBeingClosed, nullptr, 0, nullptr);
    InDialog([&](HWND dialog) {
        HeadlessClick(dialog, CONTROL_COM_FIND_PORT);
        ExpectFound(dialog, 3, 7, L"NMEA");
        EXPECT_EQ(port.opens, 2u);
        // The first report stays: it describes the port's state before it was opened.
        EXPECT_EQ(HeadlessFileContent(Report), "as it was");
        EXPECT_EQ(port.dcb.BaudRate, 115200u);
        EXPECT_EQ(HeadlessGetPort(4).opens, 0u);
    });
    CloseHandle(reader);
    CloseHandle(marker);
}

TEST_F(PortSearch, ReceiverThatCannotBeOpenedAgainIsNotFound)
{
    HeadlessPort& port = HeadlessAddPort(3);
    const HANDLE reader = CreateThread(nullptr, 0, RecogniseWhileThePortIsBeingClosed, nullptr, 0, nullptr);
    InDialog([&](HWND dialog) {
        HeadlessFailCall("CreateFileW", 3, ERROR_ACCESS_DENIED); // after the port and its report
        HeadlessChoose(dialog, CONTROL_COM_PORT, 3);
        HeadlessClick(dialog, CONTROL_COM_FIND_BAUD);
        EXPECT_EQ(HeadlessFailedCall(), "CreateFileW");
        ExpectNotFound(dialog, CONTROL_COM_FIND_BAUD);
    });
    EXPECT_FALSE(port.isOpen);
    EXPECT_TRUE(HeadlessBoxes().empty());
    CloseHandle(reader);
}

// ... and its message does not belong to the next port.
TEST_F(PortSearch, WhatAnotherPortSentIsNotTheNextPorts)
{
    HeadlessAddPort(3);
    HeadlessPort& next = HeadlessAddPort(4);
    const HANDLE reader = CreateThread(nullptr, 0, RecogniseWhileThePortIsBeingClosed, nullptr, 0, nullptr);
    InDialog([&](HWND dialog) {
        HeadlessFailCall("CreateFileW", 6, ERROR_ACCESS_DENIED); // COM0: to COM3:, the report, COM3: again
        HeadlessClick(dialog, CONTROL_COM_FIND_PORT);
        EXPECT_EQ(HeadlessFailedCall(), "CreateFileW");
        ExpectNotFound(dialog, CONTROL_COM_FIND_PORT);
    });
    EXPECT_EQ(next.opens, 1u);
    EXPECT_EQ(next.rates.size(), 9u);
    CloseHandle(reader);
}

} // namespace
