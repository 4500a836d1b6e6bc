// SPDX-License-Identifier: MIT
#include "link/communication_dialog.h"

#include "link/receiver_log.h"
#include "link/serial_port.h"
#include "platform/start.h"
#include "resources/resource_ids.h"
#include "tests/unit/link/communication_test.h"
#include "ui/dialog_support.h"

namespace
{

constexpr uint32_t ByteMicroseconds = 2083; // at 4800 baud
constexpr int NothingStored = -12345;

struct Enabled {
    bool selection, close, logOpen, logClose;
    bool operator==(const Enabled&) const = default;
};

class CommunicationDialog : public CommunicationTest
{
protected:
    // The usable controls; those that choose and open a port are always usable together.
    static Enabled EnabledControls(HWND dialog)
    {
        const bool selection = HeadlessEnabled(dialog, CONTROL_COM_OPEN);
        for (const int control :
             {CONTROL_COM_PORT, CONTROL_COM_BAUDRATE, CONTROL_COM_FIND_PORT, CONTROL_COM_FIND_BAUD})
            EXPECT_EQ(HeadlessEnabled(dialog, control), selection) << control;
        return {selection, HeadlessEnabled(dialog, CONTROL_COM_CLOSE),
                HeadlessEnabled(dialog, CONTROL_COM_LOG_OPEN),
                HeadlessEnabled(dialog, CONTROL_COM_LOG_CLOSE)};
    }

    static void OpenCom3(HWND dialog, int rate = 2)
    {
        Select(dialog, 3, rate);
        HeadlessClick(dialog, CONTROL_COM_OPEN);
    }

    static std::wstring Protocol(HWND dialog) { return HeadlessText(dialog, CONTROL_COM_PROTOCOL); }
    static std::wstring Status(HWND dialog) { return HeadlessText(dialog, CONTROL_COM_STATUS); }
};

constexpr Enabled PortClosed = {true, false, true, false}, PortOpened = {false, true, true, false};

// ---- Opening the dialog -------------------------------------------------------------------------------

TEST_F(CommunicationDialog, StartsWithNothingChosen)
{
    InDialog([](HWND dialog) {
        EXPECT_EQ(HeadlessTitle(dialog), L"Communication");
        EXPECT_EQ(HeadlessItems(dialog, CONTROL_COM_PORT).size(), 10u);
        const std::vector<std::wstring> rates = {L"1200",  L"2400",  L"4800",  L"9600",
                                                 L"19200", L"38400", L"57600", L"115200"};
        EXPECT_EQ(HeadlessItems(dialog, CONTROL_COM_BAUDRATE), rates);
        EXPECT_EQ(HeadlessSelection(dialog, CONTROL_COM_PORT), -1);
        EXPECT_EQ(HeadlessSelection(dialog, CONTROL_COM_BAUDRATE), -1);
        EXPECT_EQ(Protocol(dialog), L"-");
        EXPECT_EQ(EnabledControls(dialog), PortClosed);
        EXPECT_EQ(ActiveDialogKind.load(), DialogKind::Communication);
        EXPECT_EQ(ActiveDialogWindow.load(), dialog);
    });
    EXPECT_EQ(ActiveDialogKind.load(), DialogKind::None);
    EXPECT_EQ(ActiveDialogWindow.load(), nullptr);
    EXPECT_TRUE(HeadlessBoxes().empty());
}

TEST_F(CommunicationDialog, ShowsWhatIsOpen)
{
    OpenPort();
    LogFileHandle.store(CreateFileW(L"\\log", GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS, 0, nullptr));
    CommPortIdx.store(3);
    BaudrateIdx.store(7);
    SirfRecognised.store(1);
    InDialog([](HWND dialog) {
        EXPECT_EQ(HeadlessSelection(dialog, CONTROL_COM_PORT), 3);
        EXPECT_EQ(HeadlessSelection(dialog, CONTROL_COM_BAUDRATE), 7);
        EXPECT_EQ(Protocol(dialog), L"SiRF");
        EXPECT_EQ(EnabledControls(dialog), (Enabled{false, true, false, true}));
        EXPECT_EQ(HeadlessFocus(dialog), CONTROL_COM_CLOSE);
    });
    EXPECT_TRUE(IsPortOpen()); // closing the dialog closes neither
    EXPECT_NE(LogFileHandle.load(), INVALID_HANDLE_VALUE);
}

TEST_F(CommunicationDialog, ControlsSayWhatTheyDo)
{
    const std::pair<int, const wchar_t*> texts[] = {{CONTROL_COM_FIND_PORT, L"Find Port && Baud"},
                                                    {CONTROL_COM_FIND_BAUD, L"Find Baud"},
                                                    {CONTROL_COM_OPEN, L"Open"},
                                                    {CONTROL_COM_CLOSE, L"Close"},
                                                    {CONTROL_COM_LOG_OPEN, L"Open"},
                                                    {CONTROL_COM_LOG_CLOSE, L"Close"}};
    for (const uint32_t layout : {2002u, 2102u}) {
        HeadlessTemplate found;
        ASSERT_TRUE(HeadlessFindTemplate(layout, found));
        std::vector<std::wstring> labels;
        for (const HeadlessTemplateControl& control : found.controls) {
            for (const auto& [id, text] : texts)
                if (control.id == id) {
                    EXPECT_EQ(control.text, text) << id;
                }
            if (control.className == L"STATIC" && !control.text.empty()) labels.push_back(control.text);
        }
        EXPECT_EQ(labels,
                  (std::vector<std::wstring>{L"Comm Port", L"Baudrate", L"Protocol", L"-", L"Log File"}))
            << layout;
    }
}

TEST_F(CommunicationDialog, RatesCanBeLeafedThroughOnKeypads)
{
    constexpr UINT SetListMode = 0x1C1;
    InDialog(
        [](HWND dialog) { EXPECT_EQ(HeadlessIgnoredMessage(dialog, CONTROL_COM_BAUDRATE, SetListMode), 0); });
    HeadlessSetPlatformType(L"SmartPhone");
    ChooseLayout();
    InDialog([](HWND dialog) {
        EXPECT_EQ(HeadlessIgnoredMessage(dialog, CONTROL_COM_BAUDRATE, SetListMode), 2);
        EXPECT_EQ(HeadlessIgnoredMessage(dialog, CONTROL_COM_PORT, SetListMode), 0);
    });
}

TEST_F(CommunicationDialog, StoredIndexesOutsideTheListsSelectNothing)
{
    CommPortIdx.store(10);
    BaudrateIdx.store(-7);
    InDialog([](HWND dialog) {
        EXPECT_EQ(HeadlessSelection(dialog, CONTROL_COM_PORT), -1);
        EXPECT_EQ(HeadlessSelection(dialog, CONTROL_COM_BAUDRATE), -1);
    });
}

TEST_F(CommunicationDialog, BothLayoutsHaveTheSameControlsAndFitTheirScreens)
{
    HeadlessTemplate drop, keypad;
    ASSERT_TRUE(HeadlessFindTemplate(DIALOG_COMMUNICATION, drop));
    ASSERT_TRUE(HeadlessFindTemplate(2102, keypad));
    EXPECT_LE(drop.width, 160);
    EXPECT_LE(drop.height, 190);
    EXPECT_LE(keypad.width, 110);
    for (int control = CONTROL_COM_PORT; control <= CONTROL_COM_LOG_OPEN; ++control)
        for (const HeadlessTemplate* layout : {&drop, &keypad})
            EXPECT_TRUE(std::any_of(layout->controls.begin(), layout->controls.end(),
                                    [&](const HeadlessTemplateControl& c) { return c.id == control; }))
                << control;
    for (const HeadlessTemplate* layout : {&drop, &keypad})
        for (const HeadlessTemplateControl& control : layout->controls)
            EXPECT_LE(control.x + control.width, layout->width) << control.id;
}

TEST_F(CommunicationDialog, WorksOnAKeypadDevice)
{
    HeadlessSetPlatformType(L"SmartPhone");
    ChooseLayout();
    HeadlessStream(HeadlessAddPort(3), Nmea, ByteMicroseconds);
    InDialog([](HWND dialog) {
        EXPECT_TRUE(HeadlessHasControl(dialog, 300));
        EXPECT_TRUE(HeadlessHasControl(dialog, 301));
        OpenCom3(dialog);
        EXPECT_EQ(Protocol(dialog), L"NMEA");
        HeadlessClick(dialog, CONTROL_COM_CLOSE);
        EXPECT_EQ(EnabledControls(dialog), PortClosed);
    });
}

TEST_F(CommunicationDialog, TimerFailuresAreNamed)
{
    HeadlessFailCall("SetTimer", 1, ERROR_NOT_ENOUGH_MEMORY);
    InDialog([](HWND) {});
    ASSERT_EQ(HeadlessBoxes().size(), 2u); // what was not set cannot be stopped
    EXPECT_EQ(HeadlessBoxes()[0].caption, L"SetTimer");
    EXPECT_EQ(HeadlessBoxes()[1].caption, L"KillTimer");
}

// ---- Open ---------------------------------------------------------------------------------------------

TEST_F(CommunicationDialog, OpenFindsTheReceiver)
{
    HeadlessPort& port = HeadlessAddPort(3);
    HeadlessStream(port, Nmea, ByteMicroseconds);
    InDialog([&](HWND dialog) {
        const uint64_t start = HeadlessElapsed();
        OpenCom3(dialog);
        EXPECT_LT(HeadlessElapsed() - start, 2400u); // two seconds of waiting, and a sentence's time
        EXPECT_EQ(port.rates, std::vector<DWORD>{4800});
        EXPECT_EQ(Protocol(dialog), L"NMEA");
        EXPECT_EQ(Status(dialog), L"");
        EXPECT_EQ(EnabledControls(dialog), PortOpened);
        EXPECT_EQ(HeadlessFocus(dialog), CONTROL_COM_CLOSE);
    });
    EXPECT_EQ(CommPortIdx.load(), 3);
    EXPECT_EQ(BaudrateIdx.load(), 2);
    EXPECT_EQ(Setting(L"CommPortIdx"), 3);
    EXPECT_EQ(Setting(L"BaudrateIdx"), 2);
    EXPECT_TRUE(HeadlessBoxes().empty());
}

TEST_F(CommunicationDialog, OpenShowsSirf)
{
    HeadlessStream(HeadlessAddPort(3), Sirf, 174);
    InDialog([](HWND dialog) {
        OpenCom3(dialog, 6);
        EXPECT_EQ(Protocol(dialog), L"SiRF");
        EXPECT_EQ(ProtocolMode(), ProtocolSirf);
    });
    EXPECT_EQ(Setting(L"BaudrateIdx"), 6);
}

TEST_F(CommunicationDialog, NoiseIsCountedForFiveSeconds)
{
    HeadlessPort& port = HeadlessAddPort(3);
    port.deviceRate = 4800;
    HeadlessStream(port, Nmea, ByteMicroseconds);
    InDialog([&](HWND dialog) {
        const uint64_t start = HeadlessElapsed();
        OpenCom3(dialog, 3);
        EXPECT_EQ(HeadlessElapsed() - start, 7000u);
        EXPECT_GT(BytesReceived.load(), 2300u);
        EXPECT_EQ(Status(dialog), L"Bytes Received " + std::to_wstring(BytesReceived.load()));
        EXPECT_EQ(Protocol(dialog), L"-");
        EXPECT_EQ(EnabledControls(dialog), PortOpened);
        EXPECT_TRUE(IsPortOpen());
        HeadlessPass(999);
        EXPECT_EQ(Status(dialog).rfind(L"Bytes Received ", 0), 0u); // for a second
        HeadlessPass(1);
        EXPECT_EQ(Status(dialog).rfind(L"Messages NMEA 0 SiRF 0\r\n", 0), 0u);
    });
    EXPECT_EQ(Setting(L"CommPortIdx"), NothingStored);
}

TEST_F(CommunicationDialog, SilentPortStaysOpen)
{
    HeadlessAddPort(3);
    InDialog([](HWND dialog) {
        OpenCom3(dialog);
        EXPECT_EQ(Status(dialog), L"Bytes Received 0");
        EXPECT_EQ(EnabledControls(dialog), PortOpened);
    });
}

TEST_F(CommunicationDialog, BothProtocolsShowADash)
{
    HeadlessReceiveAfter(HeadlessAddPort(3), 2100, Nmea + Sirf);
    InDialog([](HWND dialog) {
        OpenCom3(dialog);
        HeadlessPass(100);
        EXPECT_EQ(ProtocolMode(), ProtocolNmea | ProtocolSirf);
        EXPECT_EQ(Protocol(dialog), L"-");
    });
}

TEST_F(CommunicationDialog, OpenWithoutAPort)
{
    CommPortIdx.store(10);
    SirfRecognised.store(1);
    InDialog([](HWND dialog) {
        HeadlessChoose(dialog, CONTROL_COM_BAUDRATE, 2);
        HeadlessClick(dialog, CONTROL_COM_OPEN);
        ASSERT_EQ(HeadlessBoxes().size(), 1u);
        EXPECT_TRUE(IsBox(HeadlessBoxes()[0], L"Comm Port", L"Bad selection"));
        EXPECT_EQ(EnabledControls(dialog), PortClosed);
        EXPECT_EQ(Protocol(dialog), L"-");
    });
    EXPECT_EQ(CommPortIdx.load(), -1);
    EXPECT_EQ(ProtocolMode(), ProtocolNone);
}

TEST_F(CommunicationDialog, OpenWithoutARate)
{
    InDialog([](HWND dialog) {
        HeadlessChoose(dialog, CONTROL_COM_PORT, 4);
        HeadlessClick(dialog, CONTROL_COM_OPEN);
        ASSERT_EQ(HeadlessBoxes().size(), 1u);
        EXPECT_TRUE(IsBox(HeadlessBoxes()[0], L"Baudrate", L"Bad selection"));
    });
    EXPECT_EQ(CommPortIdx.load(), 4); // stored at once, before the rate is checked
}

TEST_F(CommunicationDialog, OpenOfAMissingPortLeavesTheControls)
{
    InDialog([](HWND dialog) {
        OpenCom3(dialog);
        ASSERT_EQ(HeadlessBoxes().size(), 1u);
        EXPECT_EQ(HeadlessBoxes()[0].caption, L"Cannot open COM3:");
        EXPECT_EQ(HeadlessBoxes()[0].owner, dialog);
        EXPECT_EQ(EnabledControls(dialog), PortClosed);
        EXPECT_EQ(Status(dialog), L"");
    });
}

TEST_F(CommunicationDialog, BoxesBelongToTheDialogWhenAnotherProgramIsInFront)
{
    InDialog([](HWND dialog) {
        HeadlessOtherProgramInFront(true);
        HeadlessClick(dialog, CONTROL_COM_OPEN);
        ASSERT_EQ(HeadlessBoxes().size(), 1u);
        EXPECT_EQ(HeadlessBoxes()[0].owner, dialog);
        HeadlessOtherProgramInFront(false);
    });
}

// ---- Presses that come too late or too early ----------------------------------------------------------

// An automation tool sends presses to a button, also to a disabled one.
void Press(HWND dialog, int control)
{
    SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(static_cast<WORD>(control), BN_CLICKED), 0);
}

TEST_F(CommunicationDialog, OpenAndFindLeaveAnOpenPortAlone)
{
    HeadlessPort& port = HeadlessAddPort(3);
    HeadlessStream(port, Nmea, ByteMicroseconds);
    InDialog([&](HWND dialog) {
        OpenCom3(dialog);
        for (const int control : {CONTROL_COM_OPEN, CONTROL_COM_FIND_BAUD, CONTROL_COM_FIND_PORT}) {
            Press(dialog, control);
            EXPECT_EQ(port.opens, 1u) << control;
            EXPECT_EQ(HeadlessLiveThreads(), 1u) << control;
            EXPECT_EQ(Protocol(dialog), L"NMEA") << control;
            EXPECT_EQ(EnabledControls(dialog), PortOpened) << control;
        }
    });
    EXPECT_EQ(port.rates, std::vector<DWORD>{4800});
}

struct PressRow {
    const char* name;
    int first, second;
    uint32_t after; // milliseconds
};

class PressDuringAWait : public CommunicationDialog, public testing::WithParamInterface<PressRow>
{
protected:
    static DWORD WINAPI PressLater(void* dialog)
    {
        Sleep(GetParam().after);
        Press(static_cast<HWND>(dialog), GetParam().second);
        return 0;
    }
};

constexpr PressRow Presses[] = {
    {"OpenWhileThePortIsBeingOpened", CONTROL_COM_OPEN, CONTROL_COM_OPEN, 1000},
    {"OpenWhileTheReceiverIsAwaited", CONTROL_COM_OPEN, CONTROL_COM_OPEN, 3000},
    {"CloseWhileThePortIsBeingOpened", CONTROL_COM_OPEN, CONTROL_COM_CLOSE, 1000},
    {"CloseWhileTheReceiverIsAwaited", CONTROL_COM_OPEN, CONTROL_COM_CLOSE, 3000},
    {"FindWhileThePortIsBeingOpened", CONTROL_COM_OPEN, CONTROL_COM_FIND_BAUD, 1000},
    {"OpenDuringASearch", CONTROL_COM_FIND_BAUD, CONTROL_COM_OPEN, 3000},
    {"FindDuringASearch", CONTROL_COM_FIND_BAUD, CONTROL_COM_FIND_PORT, 3000},
};
INSTANTIATE_TEST_SUITE_P(All, PressDuringAWait, testing::ValuesIn(Presses),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_P(PressDuringAWait, ChangesNothing)
{
    HeadlessPort& port = HeadlessAddPort(3);
    const bool searches = GetParam().first == CONTROL_COM_FIND_BAUD;
    InDialog([&](HWND dialog) {
        Select(dialog, 3, 2);
        CloseHandle(CreateThread(nullptr, 0, PressLater, dialog, 0, nullptr));
        HeadlessClick(dialog, GetParam().first);
        EXPECT_EQ(port.opens, 1u);
        EXPECT_EQ(port.closes, searches ? 1u : 0u);
        EXPECT_EQ(HeadlessLiveThreads(), searches ? 0u : 1u);
        EXPECT_EQ(EnabledControls(dialog), searches ? PortClosed : PortOpened);
    });
    EXPECT_TRUE(HeadlessBoxes().empty());
}

// Some drivers need the pause after a close.
TEST_F(CommunicationDialog, OpenWhileThePortIsBeingClosedChangesNothing)
{
    static HWND window;
    const auto openLater = [](void*) -> DWORD {
        Sleep(300);
        Press(window, CONTROL_COM_OPEN);
        return 0;
    };
    HeadlessPort& port = HeadlessAddPort(3);
    HeadlessStream(port, Nmea, ByteMicroseconds);
    InDialog([&](HWND dialog) {
        OpenCom3(dialog);
        window = dialog;
        CloseHandle(CreateThread(nullptr, 0, openLater, nullptr, 0, nullptr));
        HeadlessClick(dialog, CONTROL_COM_CLOSE);
        EXPECT_EQ(port.opens, 1u);
        EXPECT_EQ(EnabledControls(dialog), PortClosed);
    });
}

TEST_F(CommunicationDialog, CancelTwiceInAWaitEndsOnce)
{
    static HWND window;
    const auto cancelTwice = [](void*) -> DWORD {
        Sleep(1000);
        Press(window, IDCANCEL);
        Press(window, IDCANCEL);
        return 0;
    };
    HeadlessAddPort(3);
    InDialog([&](HWND dialog) {
        window = dialog;
        CloseHandle(CreateThread(nullptr, 0, cancelTwice, nullptr, 0, nullptr));
        OpenCom3(dialog);
    });
    EXPECT_TRUE(HeadlessBoxes().empty());
    EXPECT_EQ(ActiveDialogKind.load(), DialogKind::None);
}

// A search may leave a port open whose driver has no rate; the port has no reader, and "Open" can be pressed.
TEST_F(CommunicationDialog, OpenClosesWhatASearchHasLeftOpen)
{
    HeadlessAddPort(9).dcb.BaudRate = 0;
    HeadlessStream(HeadlessAddPort(3), Nmea, ByteMicroseconds);
    HeadlessGetPort(3).deviceRate = 4800;
    InDialog([](HWND dialog) {
        HeadlessChoose(dialog, CONTROL_COM_PORT, 9);
        HeadlessClick(dialog, CONTROL_COM_FIND_BAUD);
        EXPECT_TRUE(HeadlessGetPort(9).isOpen);
        OpenCom3(dialog);
        EXPECT_FALSE(HeadlessGetPort(9).isOpen);
        EXPECT_TRUE(HeadlessGetPort(3).isOpen);
        EXPECT_EQ(Protocol(dialog), L"NMEA");
    });
}

// The rate that is recorded is the line's, not the list's.
TEST_F(CommunicationDialog, RefusedRateIsNotStored)
{
    HeadlessPort& port = HeadlessAddPort(3);
    port.dcb.BaudRate = 9600;
    port.deviceRate = 9600;
    HeadlessStream(port, Nmea, 1042);
    HeadlessFailCall("SetCommState", 1, ERROR_INVALID_PARAMETER);
    InDialog([](HWND dialog) {
        OpenCom3(dialog, 7);
        EXPECT_EQ(Protocol(dialog), L"NMEA");
    });
    EXPECT_EQ(BaudrateIdx.load(), 3);
    EXPECT_EQ(Setting(L"BaudrateIdx"), 3);
}

// ---- The program ends meanwhile -----------------------------------------------------------------------

class EndOfTheProgram : public CommunicationDialog
{
protected:
    EndOfTheProgram() : Port(HeadlessAddPort(3))
    {
        StoreSetting(L"CommPortIdx", 3); // no About box
    }
    ~EndOfTheProgram() override
    {
        EXPECT_FALSE(Port.isOpen);
        EXPECT_EQ(HeadlessLiveThreads(), 0u);
        EXPECT_EQ(HeadlessOpenHandles(), 0u);
    }

    // The whole program; the user acts in its Communication dialog.
    static void Run(const std::function<void(HWND)>& act)
    {
        HeadlessUser([] { HeadlessCommand(HeadlessMainWindow(), COMMAND_COMMUNICATION); });
        HeadlessUser([act] { act(HeadlessTopDialog()); });
        EXPECT_EQ(RunProgram(nullptr, L"", SW_SHOWNORMAL), 0);
        Sleep(1); // the other program continues
    }

    // Another program minimises the window, which ends this one.
    static void MinimiseAfter(uint32_t milliseconds)
    {
        void* const after = reinterpret_cast<void*>(uintptr_t{milliseconds});
        CloseHandle(CreateThread(nullptr, 0, Minimise, after, 0, nullptr));
    }
    static DWORD WINAPI Minimise(void* after)
    {
        Sleep(static_cast<DWORD>(reinterpret_cast<uintptr_t>(after)));
        SendMessageW(HeadlessMainWindow(), WM_SIZE, SIZE_MINIMIZED, 0);
        ThreadsAfterTheEnd = HeadlessLiveThreads();
        return 0;
    }

    HeadlessPort& Port;
    static inline uint32_t ThreadsAfterTheEnd = 0;
};

class EndInABox : public EndOfTheProgram, public testing::WithParamInterface<const char*>
{
};

TEST_P(EndInABox, OfTheOpeningIsFollowedByNoOtherBox)
{
    HeadlessFailCall(GetParam(), 1, ERROR_GEN_FAILURE, FailMode::FromHereOn);
    Run([](HWND dialog) {
        IrPortNumber.store(3); // the port is set to infrared
        HeadlessDuringBox([] { DestroyWindow(HeadlessMainWindow()); });
        OpenCom3(dialog);
    });
    EXPECT_EQ(HeadlessBoxes().size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(Communication, EndInABox,
                         testing::Values("GetCommProperties", "GetCommState", "GetCommTimeouts",
                                         "ClearCommError", "SetCommState", "SetCommTimeouts",
                                         "EscapeCommFunction", "CreateThread"));

class EndInAWait : public EndOfTheProgram, public testing::WithParamInterface<uint32_t>
{
};

// Waiting for the driver, trying again, and listening to the receiver: two, one and five seconds.
TEST_P(EndInAWait, OfTheOpeningEndsTheOpening)
{
    HeadlessFailCall("GetCommProperties", 1, ERROR_GEN_FAILURE);
    Run([](HWND dialog) {
        const uint64_t start = HeadlessElapsed();
        MinimiseAfter(GetParam());
        OpenCom3(dialog);
        EXPECT_GE(HeadlessElapsed() - start, GetParam());
        EXPECT_LE(HeadlessElapsed() - start, GetParam() + 1000);
    });
    EXPECT_TRUE(HeadlessBoxes().empty());
}

INSTANTIATE_TEST_SUITE_P(Communication, EndInAWait, testing::Values(1000, 2500, 4000, 7900));

// The chart's pixels are freed in the end: the reader must be gone by then.
TEST_F(EndOfTheProgram, DuringTheCloseWaitsForTheReaderToo)
{
    Run([](HWND dialog) {
        OpenCom3(dialog);
        HeadlessPass(10); // the reader has just checked if the port is still open, as it does every 50 ms
        MinimiseAfter(3);
        HeadlessClick(dialog, CONTROL_COM_CLOSE);
        EXPECT_FALSE(IsWindow(dialog));
    });
    EXPECT_EQ(ThreadsAfterTheEnd, 1u); // the one that has minimised
    EXPECT_EQ(LinkClosing.load(), 0);
    EXPECT_TRUE(HeadlessBoxes().empty());
}

// ---- Statistics ---------------------------------------------------------------------------------------

TEST_F(CommunicationDialog, StatisticsEachSecond)
{
    NmeaMessageCount.store(12);
    SirfMessageCount.store(4000000000u);
    NmeaReportedBaud.store(9600);
    EffectiveBaud.store(4788.5f);
    BytesReceived.store(77);
    InDialog([](HWND dialog) {
        EXPECT_EQ(Status(dialog), L"");
        HeadlessPass(999);
        EXPECT_EQ(Status(dialog), L"");
        HeadlessPass(1);
        EXPECT_EQ(Status(dialog), L"Messages NMEA 12 SiRF 4000000000\r\nBaudrate NMEA 9600 Effective 4788\r\n"
                                  L"Bytes 77");
        BytesReceived.store(78);
        HeadlessPass(1000);
        EXPECT_NE(Status(dialog).find(L"Bytes 78"), std::wstring::npos);
        SearchInProgress.store(1);
        BytesReceived.store(79);
        HeadlessPass(2000);
        EXPECT_NE(Status(dialog).find(L"Bytes 78"), std::wstring::npos);
        SearchInProgress.store(0);
    });
}

TEST_F(CommunicationDialog, BytesInNoTimeAreAnInfiniteRate)
{
    EffectiveBaud.store(1.0f / 0.0f);
    InDialog([](HWND dialog) {
        HeadlessPass(1000);
        EXPECT_NE(Status(dialog).find(L"Effective inf\r\n"), std::wstring::npos);
    });
}

TEST_F(CommunicationDialog, OpenCountsBytesFromZero)
{
    BytesReceived.store(100000);
    HeadlessReceiveAfter(HeadlessAddPort(3), 3000, "abc");
    InDialog([](HWND dialog) {
        OpenCom3(dialog);
        EXPECT_EQ(Status(dialog), L"Bytes Received 3");
    });
}

// ---- Log ----------------------------------------------------------------------------------------------

TEST_F(CommunicationDialog, ButtonsFollowALogThatEndsByItself)
{
    HeadlessStream(HeadlessAddPort(3), Nmea, ByteMicroseconds);
    HeadlessAnswerSaveDialog(L"\\a.txt", 1);
    InDialog([](HWND dialog) {
        OpenCom3(dialog);
        HeadlessClick(dialog, CONTROL_COM_LOG_OPEN);
        EXPECT_EQ(HeadlessFocus(dialog), CONTROL_COM_LOG_CLOSE);
        HeadlessFailCall("WriteFile", 1, ERROR_DISK_FULL, FailMode::FromHereOn);
        HeadlessPass(2000);
        HeadlessClearFaults();
        EXPECT_EQ(EnabledControls(dialog), PortOpened);
        EXPECT_EQ(HeadlessFocus(dialog), CONTROL_COM_LOG_OPEN); // the keyboard is not lost with the button
    });
}

TEST_F(CommunicationDialog, LogThatEndsByItselfLeavesTheFocusElsewhere)
{
    HeadlessAnswerSaveDialog(L"\\a.txt", 1);
    InDialog([](HWND dialog) {
        HeadlessClick(dialog, CONTROL_COM_LOG_OPEN);
        HeadlessChoose(dialog, CONTROL_COM_PORT, 4);
        LogClose(); // not by the button
        HeadlessPass(1000);
        EXPECT_EQ(EnabledControls(dialog), PortClosed);
        EXPECT_EQ(HeadlessFocus(dialog), CONTROL_COM_PORT);
    });
}

// ---- Close --------------------------------------------------------------------------------------------

TEST_F(CommunicationDialog, CloseAndOpenAgain)
{
    HeadlessPort& port = HeadlessAddPort(3);
    HeadlessStream(port, Nmea, ByteMicroseconds);
    InDialog([&](HWND dialog) {
        for (uint32_t round = 1; round <= 2; ++round) {
            OpenCom3(dialog);
            EXPECT_EQ(Protocol(dialog), L"NMEA");
            const uint64_t start = HeadlessElapsed();
            HeadlessClick(dialog, CONTROL_COM_CLOSE);
            EXPECT_GE(HeadlessElapsed() - start, 500u);
            EXPECT_LE(HeadlessElapsed() - start, 600u);
            EXPECT_EQ(Protocol(dialog), L"-");
            EXPECT_EQ(ProtocolMode(), ProtocolNone);
            EXPECT_EQ(EnabledControls(dialog), PortClosed);
            EXPECT_EQ(HeadlessFocus(dialog), CONTROL_COM_OPEN);
            EXPECT_EQ(port.closes, round);
        }
    });
    EXPECT_EQ(HeadlessLiveThreads(), 0u);
}

TEST_F(CommunicationDialog, CloseOfAPortThatHasGone)
{
    OpenPort();
    SirfRecognised.store(1);
    InDialog([](HWND dialog) {
        CloseHandle(ExchangeHandle(PortHandle, INVALID_HANDLE_VALUE));
        HeadlessClick(dialog, CONTROL_COM_CLOSE);
        EXPECT_EQ(Protocol(dialog), L"-");
    });
    EXPECT_EQ(ProtocolMode(), ProtocolNone);
    EXPECT_LT(HeadlessElapsed(), 100u);
}

TEST_F(CommunicationDialog, ReceiverThatIsUnpluggedCanBeClosedAndOpenedAgain)
{
    HeadlessPort& port = HeadlessAddPort(3);
    HeadlessStream(port, Nmea, ByteMicroseconds);
    InDialog([&](HWND dialog) {
        OpenCom3(dialog);
        HeadlessFailCall("ReadFile", 1, ERROR_GEN_FAILURE, FailMode::FromHereOn);
        HeadlessPass(3000);
        HeadlessClick(dialog, CONTROL_COM_CLOSE);
        EXPECT_EQ(EnabledControls(dialog), PortClosed);
        HeadlessClearFaults();
        OpenCom3(dialog);
        EXPECT_EQ(Protocol(dialog), L"NMEA");
    });
    EXPECT_TRUE(HeadlessBoxes().empty());
}

// Each platform call of a whole visit fails once: there are at most boxes, and all resources are released.
TEST_F(CommunicationDialog, AnyCallMayFail)
{
    uint32_t failed = 0;
    for (bool hit = true; hit; ++failed) {
        HeadlessReset();
        ResetLinkState();
        UserInterfaceThread.store(GetCurrentThreadId());
        AddDriver(BuiltInDrivers, L"A", 3, L"Serial Cable");
        HeadlessStream(HeadlessAddPort(3), Nmea, ByteMicroseconds);
        HeadlessAnswerSaveDialog(L"\\a.txt", 1);
        HeadlessFailAnyCall(failed + 1, ERROR_GEN_FAILURE);
        CommPortIdx.store(3);
        BaudrateIdx.store(2);
        HeadlessUser([] {
            for (const int button : {CONTROL_COM_LOG_OPEN, CONTROL_COM_OPEN, CONTROL_COM_CLOSE,
                                     CONTROL_COM_FIND_PORT, CONTROL_COM_CLOSE, CONTROL_COM_LOG_CLOSE})
                HeadlessClick(HeadlessTopDialog(), button);
        });
        HeadlessUser([] {
            const HWND dialog = HeadlessTopDialog();
            HeadlessCommand(dialog, IDCANCEL);
            if (HeadlessTopDialog() == dialog) HeadlessCommand(dialog, IDCANCEL); // the first may fail
        });
        OpenDialog(::CommunicationDialog);
        const std::string call = HeadlessFailedCall();
        hit = !call.empty();
        HeadlessClearFaults();
        PortClose();
        LogClose();
        ASSERT_EQ(HeadlessLiveThreads(), 0u) << call;
        ASSERT_EQ(HeadlessOpenKeys(), call == "RegCloseKey") << call;
        ASSERT_EQ(SearchInProgress.load(), 0) << call;
        ASSERT_EQ(ActiveDialogKind.load(), DialogKind::None) << call;
    }
    EXPECT_GT(failed, 100u);
}

// Opening, closing and messages of one protocol or the other, in any order of the two threads.
TEST_F(CommunicationDialog, OpenAndCloseWhileTheReceiverStreams)
{
    constexpr uint32_t Rounds = 250;
    HeadlessStream(HeadlessAddPort(3), Nmea, 400);
    HeadlessStream(HeadlessAddPort(4), Sirf, 400);
    InDialog([&](HWND dialog) {
        for (uint32_t round = 1; round <= Rounds; ++round) {
            HeadlessInterleave(round);
            Select(dialog, round % 2 ? 3 : 4, 7);
            HeadlessClick(dialog, CONTROL_COM_OPEN);
            ASSERT_EQ(Protocol(dialog), round % 2 ? L"NMEA" : L"SiRF") << round;
            Sleep(round * 37 % 60);
            HeadlessClick(dialog, CONTROL_COM_CLOSE);
            ASSERT_EQ(Protocol(dialog), L"-") << round;
            ASSERT_EQ(ProtocolMode(), ProtocolNone) << round;
            ASSERT_EQ(HeadlessLiveThreads(), 0u) << round;
        }
        HeadlessInterleave(0);
    });
    EXPECT_EQ(HeadlessGetPort(3).closes + HeadlessGetPort(4).closes, Rounds);
    EXPECT_TRUE(HeadlessBoxes().empty());
}

// The first message is complete just before the close: the reader is writing the protocol into the dialog of
// the thread that then waits for the reader to end.
TEST_F(CommunicationDialog, FirstMessageWhileThePortIsBeingClosed)
{
    constexpr uint32_t Rounds = 250;
    HeadlessPort& port = HeadlessAddPort(3);
    uint32_t writing = 0;
    InDialog([&](HWND dialog) {
        for (uint32_t round = 1; round <= Rounds; ++round) {
            HeadlessInterleave(round);
            OpenCom3(dialog);
            ASSERT_EQ(Protocol(dialog), L"-");
            HeadlessReceiveAfter(port, round % 40, round % 2 ? Nmea : Sirf);
            Sleep(40 + round * 7 % 53); // serves nothing
            writing += ProtocolMode() != ProtocolNone && Protocol(dialog) == L"-";
            HeadlessClick(dialog, CONTROL_COM_CLOSE);
            ASSERT_EQ(Protocol(dialog), L"-") << round;
            ASSERT_EQ(ProtocolMode(), ProtocolNone) << round;
            ASSERT_EQ(HeadlessLiveThreads(), 0u) << round;
        }
        HeadlessInterleave(0);
    });
    EXPECT_GE(writing, Rounds / 4); // otherwise this test has missed its moment
    RecordProperty("Writing", static_cast<int>(writing));
}

// ---- Log ----------------------------------------------------------------------------------------------

TEST_F(CommunicationDialog, LogIsOpenedAndClosed)
{
    HeadlessAnswerSaveDialog(L"\\a.txt", 1);
    InDialog([](HWND dialog) {
        HeadlessClick(dialog, CONTROL_COM_LOG_OPEN);
        EXPECT_EQ(EnabledControls(dialog), (Enabled{true, false, false, true}));
        EXPECT_EQ(HeadlessFocus(dialog), CONTROL_COM_LOG_CLOSE);
        Feed("abc");
        HeadlessClick(dialog, CONTROL_COM_LOG_CLOSE);
        EXPECT_EQ(EnabledControls(dialog), (Enabled{true, false, true, false}));
        EXPECT_EQ(HeadlessFocus(dialog), CONTROL_COM_LOG_OPEN);
        Feed("def");
    });
    EXPECT_EQ(HeadlessFileContent(L"\\a.txt"), "abc");
}

TEST_F(CommunicationDialog, CancelledLogLeavesTheButtons)
{
    HeadlessAnswerSaveDialog(L"", 1);
    InDialog([](HWND dialog) {
        HeadlessClick(dialog, CONTROL_COM_LOG_OPEN);
        EXPECT_EQ(EnabledControls(dialog), PortClosed);
    });
    EXPECT_EQ(HeadlessSaveDialogs().size(), 1u);
}

TEST_F(CommunicationDialog, LogHoldsWhatCameWhileItWasOpen)
{
    HeadlessPort& port = HeadlessAddPort(3);
    HeadlessAnswerSaveDialog(L"\\a.txt", 1);
    InDialog([&](HWND dialog) {
        OpenCom3(dialog);
        HeadlessReceive(port, "before");
        HeadlessPass(200);
        HeadlessClick(dialog, CONTROL_COM_LOG_OPEN);
        HeadlessReceive(port, Nmea);
        HeadlessPass(200);
        HeadlessClick(dialog, CONTROL_COM_CLOSE); // the log stays open
        OpenCom3(dialog);
        HeadlessReceive(port, Nmea);
        HeadlessPass(200);
        HeadlessClick(dialog, CONTROL_COM_LOG_CLOSE);
        HeadlessReceive(port, "after");
        HeadlessPass(200);
    });
    EXPECT_EQ(HeadlessFileContent(L"\\a.txt"), Nmea + Nmea);
}

// ---- Life of the log under failure: the whole program, whose main window shows the reader's boxes -----

class FailingLog : public CommunicationDialog
{
protected:
    // The program with the dialog open, the port streaming and a log that takes `bytes` more bytes.
    static void Run(uint64_t bytes, std::function<void(HWND)> act)
    {
        HeadlessPort& port = HeadlessAddPort(3);
        StoreSetting(L"CommPortIdx", 3);
        HeadlessAnswerSaveDialog(L"\\a.txt", 1);
        HeadlessUser([] { HeadlessCommand(HeadlessMainWindow(), COMMAND_COMMUNICATION); });
        HeadlessUser([&port, bytes, act = std::move(act)] {
            const HWND dialog = HeadlessTopDialog();
            OpenCom3(dialog); // writes the report before the disk is full
            HeadlessClick(dialog, CONTROL_COM_LOG_OPEN);
            HeadlessDiskFullAfter(bytes);
            HeadlessStream(port, Nmea, ByteMicroseconds);
            act(dialog);
            HeadlessStream(port, "", 0);
            HeadlessCommand(dialog, IDCANCEL);
        });
        HeadlessUser([] { HeadlessCommand(HeadlessMainWindow(), COMMAND_EXIT); });
        EXPECT_EQ(RunProgram(nullptr, L"", SW_SHOWNORMAL), 0);
        EXPECT_EQ(HeadlessOpenHandles(), 0u);
    }

    static uint32_t FailureBoxes()
    {
        uint32_t count = 0;
        for (const HeadlessBox& box : HeadlessBoxes()) {
            count += box.caption == L"WriteFile File";
            EXPECT_TRUE(box.onUserInterfaceThread);
        }
        return count;
    }
};

TEST_F(FailingLog, FullDiskEndsTheLogWithOneBoxAndReceptionGoesOn)
{
    Run(10, [](HWND) {
        HeadlessPass(500);
        EXPECT_EQ(FailureBoxes(), 1u);
        EXPECT_EQ(LogFileHandle.load(), INVALID_HANDLE_VALUE);
        const uint32_t bytes = BytesReceived.load();
        HeadlessPass(2000);
        EXPECT_GT(BytesReceived.load(), bytes + 500);
        EXPECT_EQ(FailureBoxes(), 1u);
    });
    EXPECT_EQ(HeadlessFileContent(L"\\a.txt"), Nmea.substr(0, 10));
}

TEST_F(FailingLog, LogOpenedWhileTheBoxIsOnItsWayStaysOpen)
{
    Run(10, [](HWND dialog) {
        Sleep(1000); // the log fails; nothing is dispatched, so its box is not yet shown
        EXPECT_EQ(FailureBoxes(), 0u);
        HeadlessDiskFullAfter(UINT64_MAX);
        HeadlessAnswerSaveDialog(L"\\b.txt", 1);
        HeadlessClick(dialog, CONTROL_COM_LOG_CLOSE);
        HeadlessClick(dialog, CONTROL_COM_LOG_OPEN);
        EXPECT_NE(LogFileHandle.load(), INVALID_HANDLE_VALUE);
        HeadlessPass(1000);
        EXPECT_EQ(FailureBoxes(), 1u);
        EXPECT_NE(LogFileHandle.load(), INVALID_HANDLE_VALUE);
    });
    EXPECT_GT(HeadlessFileContent(L"\\b.txt").size(), 300u);
}

TEST_F(FailingLog, LogOpenedWhileTheBoxIsUpStaysOpen)
{
    Run(10, [](HWND dialog) {
        HeadlessDuringBox([dialog] {
            HeadlessDiskFullAfter(UINT64_MAX);
            HeadlessAnswerSaveDialog(L"\\b.txt", 1);
            SendMessageW(dialog, WM_COMMAND, CONTROL_COM_LOG_CLOSE, 0);
            SendMessageW(dialog, WM_COMMAND, CONTROL_COM_LOG_OPEN, 0);
        });
        HeadlessPass(2000);
        EXPECT_EQ(FailureBoxes(), 1u);
        EXPECT_NE(LogFileHandle.load(), INVALID_HANDLE_VALUE);
    });
    EXPECT_GT(HeadlessFileContent(L"\\b.txt").size(), 300u);
}

TEST_F(FailingLog, ClosingAndReopeningAgainstTheReaderShowsNoBoxes)
{
    Run(UINT64_MAX, [](HWND dialog) {
        for (uint32_t round = 1; round <= 100; ++round) {
            HeadlessInterleave(round);
            HeadlessClick(dialog, CONTROL_COM_LOG_CLOSE);
            HeadlessAnswerSaveDialog(L"\\log" + std::to_wstring(round), 1);
            HeadlessClick(dialog, CONTROL_COM_LOG_OPEN);
            HeadlessPass(20);
            ASSERT_NE(LogFileHandle.load(), INVALID_HANDLE_VALUE) << round;
        }
        HeadlessInterleave(0);
        EXPECT_TRUE(HeadlessBoxes().empty());
    });
}

TEST_F(FailingLog, ExitWhileTheBoxIsOnItsWay)
{
    Run(10, [](HWND) { Sleep(1000); });
    EXPECT_LE(FailureBoxes(), 1u);
}

} // namespace
