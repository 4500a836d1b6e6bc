// SPDX-License-Identifier: MIT
#include "app/main_window.h"

#include "app/single_copy.h"
#include "graph/graph_mode.h"
#include "graph/graph_settings.h"
#include "graph/recorder.h"
#include "graph/repaint.h"
#include "graph/surface.h"
#include "link/link_state.h"
#include "link/receiver_log.h"
#include "link/serial_port.h"
#include "link/write_queue.h"
#include "platform/start.h"
#include "resources/resource_ids.h"
#include "tests/support/fresh_program.h"
#include "tests/unit/support/product_test.h"
#include "ui/shell_libraries.h"

namespace
{

constexpr int PageTop = 26, LineHeight = 13; // of the headless command bar and font

INT_PTR UnusedExport()
{
    return 0;
}

class MainWindowTest : public ProductTest
{
protected:
    // The whole program, from its start to its end; a script acts as the user.
    static int Run(const wchar_t* commandLine = L"")
    {
        return RunProgram(nullptr, commandLine, SW_SHOWNORMAL);
    }

    static void StorePortAndRate()
    {
        StoreSetting(L"CommPortIdx", 3);
        StoreSetting(L"BaudrateIdx", 2);
    }

    // A window that a second copy's search for the program finds.
    static HWND MakeWindowOfTheProgram()
    {
        WNDCLASSW standIn = {};
        standIn.lpszClassName = L"Toravane";
        standIn.lpfnWndProc = DefWindowProcW;
        RegisterClassW(&standIn);
        return CreateWindowExW(0, L"Toravane", L"Toravane", 0, 0, 0, 9, 9, nullptr, nullptr, nullptr,
                               nullptr);
    }

    static void UserExits()
    {
        HeadlessUser([] { HeadlessCommand(HeadlessMainWindow(), COMMAND_EXIT); });
    }

    static bool LastInvalidationErases()
    {
        const std::vector<bool> all = HeadlessInvalidations(HeadlessMainWindow());
        return !all.empty() && all.back();
    }
};

// ---- Start --------------------------------------------------------------------------------------------

TEST_F(MainWindowTest, FirstStartGreetsWithTheAboutBox)
{
    std::wstring title;
    DialogKind kindWhileOpen = DialogKind::None;
    HeadlessUser([&] {
        title = HeadlessTitle(HeadlessTopDialog());
        kindWhileOpen = ActiveDialogKind.load();
        HeadlessClick(HeadlessTopDialog(), IDOK);
    });
    UserExits();
    EXPECT_EQ(Run(L"StaticNavigationOn"), 0); // the command line is not read then
    EXPECT_EQ(CommandLinePending.load(),
              0); // so that the first sentence, later, is answered with a hot start
    EXPECT_EQ(title, L"About Toravane");
    EXPECT_EQ(kindWhileOpen, DialogKind::About);
    EXPECT_EQ(ActiveDialogKind.load(), DialogKind::None);
    EXPECT_EQ(ActiveDialogWindow.load(), nullptr);
    EXPECT_TRUE(HeadlessBoxes().empty());
}

TEST_F(MainWindowTest, AboutBoxIsClosedByCancelToo)
{
    HeadlessUser([] { HeadlessCommand(HeadlessTopDialog(), IDCANCEL); });
    UserExits();
    EXPECT_EQ(Run(), 0);
}

TEST_F(MainWindowTest, ReopensTheStoredPortAtTheStoredRate)
{
    HeadlessPort& port = HeadlessAddPort(3);
    StorePortAndRate();
    bool wasOpen = false;
    HeadlessUser([&] { wasOpen = port.isOpen; });
    UserExits();
    EXPECT_EQ(Run(), 0);
    EXPECT_TRUE(wasOpen);
    EXPECT_EQ(port.rates, std::vector<DWORD>{4800});
    EXPECT_FALSE(port.isOpen); // closed with the window
    EXPECT_EQ(HeadlessLiveThreads(), 0u);
}

TEST_F(MainWindowTest, StoredIndexesOutsideTheirTablesAreNotOpened)
{
    for (const auto& [portIndex, rateIndex] : {std::pair{10, 2}, {3, 8}, {-2, 2}, {3, 2147483647}}) {
        HeadlessReset();
        HeadlessAddPort(3);
        StoreSetting(L"CommPortIdx", portIndex);
        StoreSetting(L"BaudrateIdx", rateIndex);
        bool ran = false;
        HeadlessUser([&] { ran = HeadlessMainWindow() && !HeadlessTopDialog(); });
        UserExits();
        EXPECT_EQ(Run(), 0);
        EXPECT_TRUE(ran) << portIndex << ' ' << rateIndex;
        EXPECT_EQ(HeadlessGetPort(3).opens, 0u) << portIndex << ' ' << rateIndex;
    }
}

TEST_F(MainWindowTest, PortThatCannotBeOpenedIsNamed)
{
    StorePortAndRate();
    UserExits();
    Run();
    ASSERT_EQ(HeadlessBoxes().size(), 1u);
    EXPECT_EQ(HeadlessBoxes()[0].caption, L"Cannot open COM3:");
}

TEST_F(MainWindowTest, ClosingTheProgramFromABoxOfItsStartEndsIt)
{
    HeadlessAddPort(3);
    StorePortAndRate();
    HeadlessFailCall("GetCommProperties", 1, ERROR_GEN_FAILURE, FailMode::FromHereOn);
    HeadlessDuringBox([] { DestroyWindow(HeadlessMainWindow()); });
    EXPECT_EQ(Run(L"StaticNavigationOn"), 0);
    EXPECT_FALSE(HeadlessGetPort(3).isOpen);
    EXPECT_EQ(HeadlessLiveThreads(), 0u);
}

TEST_F(MainWindowTest, FirstSentenceShowsOnThePageAndSendsOneHotStart)
{
    HeadlessPort& port = HeadlessAddPort(3);
    StorePortAndRate();
    std::vector<HeadlessTextOut> painted;
    HeadlessUser([&] { HeadlessReceive(port, Sentence("GPVTG,91.5,T,,M,20,N,,K,A") + Sentence("GPXYZ")); });
    HeadlessUser([&] { painted = HeadlessPaintedTexts(HeadlessMainWindow()); }, 200);
    UserExits();
    Run();
    EXPECT_EQ(port.sent, "$PSRF101,0,0,0,0,0,0,12,1*15\r\n");
    ASSERT_EQ(painted.size(), 3u); // empty lines write nothing
    EXPECT_EQ(painted[0].text, L" Speed: 10.30 m/s        ");
    EXPECT_EQ(painted[1].text, L" Course: 91.50 \u00B0        ");
    EXPECT_EQ(painted[2].text, L" Use joystick to toggle graph/text.");
    EXPECT_EQ(painted[0].y, PageTop + 13 * LineHeight);
    EXPECT_EQ(painted[1].y, PageTop + 14 * LineHeight);
    EXPECT_EQ(painted[2].y, PageTop + 18 * LineHeight);
    EXPECT_EQ(painted[0].x, 0);
}

// Repainting does not erase: a line that became shorter or empty must overwrite its old text.
TEST_F(MainWindowTest, EachLineIsPaintedAcrossTheWindow)
{
    StorePortAndRate();
    HeadlessAddPort(3);
    const auto isBlank = [](uint32_t line) {
        const std::vector<uint32_t> pixels = HeadlessPixels(HeadlessMainWindow());
        RECT client;
        GetClientRect(HeadlessMainWindow(), &client);
        const size_t width = static_cast<size_t>(client.right), top = PageTop + LineHeight * line;
        for (size_t i = width * top; i < width * (top + LineHeight); ++i)
            if (pixels[i] != 0xFFFFFF) return false;
        return true;
    };
    std::vector<bool> blank;
    HeadlessUser([&] {
        blank.push_back(isBlank(3));
        SetTextLine(3, L"a line of some length");
        RepaintMainWindow();
    });
    HeadlessUser([&] {
        blank.push_back(isBlank(3));
        SetTextLine(3, L"");
        RepaintMainWindow();
    });
    HeadlessUser([&] { blank.push_back(isBlank(3)); });
    UserExits();
    Run();
    EXPECT_EQ(blank, (std::vector<bool>{true, false, true}));
}

// Lines are painted again only if they have changed, or if the system requests it.
TEST_F(MainWindowTest, OnlyChangedLinesAreRepainted)
{
    StorePortAndRate();
    HeadlessAddPort(3);
    std::vector<size_t> asked;
    std::vector<std::wstring> painted;
    static constexpr wchar_t Three[] = L"line %d";
    const auto repaint = [&] {
        HeadlessClearInvalidations(HeadlessMainWindow());
        HeadlessCountCalls();
        RepaintMainWindow();
        asked.push_back(HeadlessInvalidations(HeadlessMainWindow()).size());
    };
    uint32_t textsOut = 0;
    const auto countTexts = [&textsOut] {
        textsOut = 0;
        for (const HeadlessCallCount& call : HeadlessCountedCalls())
            if (call.call == "ExtTextOutW") textsOut = call.count;
    };
    HeadlessUser([&] { repaint(); }); // left by the start
    HeadlessUser([&] {
        FormatTextLine(3, Three, 3);
        SetTextLine(5, L"five");
        repaint();
    });
    HeadlessUser([&] {
        countTexts();
        EXPECT_EQ(textsOut, 3u); // from the first changed line to the last
        for (const HeadlessTextOut& text : HeadlessPaintedTexts(HeadlessMainWindow()))
            painted.push_back(text.text);
        FormatTextLine(3, Three, 3); // the same again
        repaint();
    });
    HeadlessUser([&] {
        countTexts();
        EXPECT_EQ(textsOut, 0u);
        FormatTextLine(18, L"%u", 18u);
        repaint();
    });
    HeadlessUser([&] {
        countTexts();
        EXPECT_EQ(textsOut, 1u);
        HeadlessFailCall("InvalidateRect", 1, ERROR_GEN_FAILURE);
        SetTextLine(7, L"seven");
        repaint();
        SetTextLine(8, L"eight");
        repaint(); // and what failed
    });
    HeadlessUser([&] {
        countTexts();
        EXPECT_EQ(textsOut, 2u);
        HeadlessCountCalls();
        InvalidateRect(HeadlessMainWindow(), nullptr, TRUE);
    });
    HeadlessUser([&] {
        countTexts();
        EXPECT_EQ(textsOut, TextLineCount);
    });
    UserExits();
    Run();
    EXPECT_EQ(asked, (std::vector<size_t>{1, 1, 0, 1, 0, 1}));
    EXPECT_EQ(painted, (std::vector<std::wstring>{L" Menu Com. Open a port.", L"line 3", L"five"}));
}

// The messages of one run of received bytes together request one paint.
TEST_F(MainWindowTest, ARunOfMessagesIsRepaintedOnce)
{
    StorePortAndRate();
    HeadlessAddPort(3);
    std::vector<size_t> asked;
    const auto feed = [&](const std::string& bytes) {
        HeadlessClearInvalidations(HeadlessMainWindow());
        Feed(bytes);
        asked.push_back(HeadlessInvalidations(HeadlessMainWindow()).size());
    };
    const std::string vtg = Sentence("GPVTG,231.8,T,,M,10.0,N,18.5,K,D"),
                      gsa = Sentence("GPGSA,A,3,04,05,09,12,,,,,,,,,2.3,1.2,1.9"),
                      other = Sentence("GPVTG,90.5,T,,M,20.0,N,37.0,K,D"), unknown = Sentence("GPXYZ,1");
    HeadlessUser([&] {
        feed(vtg + gsa + other);
        feed(other);   // shows nothing new
        feed(unknown); // also shows nothing new
        feed(vtg.substr(0, 9));
        feed(vtg.substr(9));
    });
    UserExits();
    Run();
    EXPECT_EQ(asked, (std::vector<size_t>{1, 0, 0, 0, 1}));
}

// The chart is copied to the window when it has a new sample, not with each message.
TEST_F(MainWindowTest, TheChartIsRepaintedWithASample)
{
    StorePortAndRate();
    HeadlessAddPort(3);
    std::vector<size_t> asked;
    HeadlessUser([&] {
        SendMessageW(HeadlessMainWindow(), WM_KEYDOWN, 0, 0);
        for (const bool sampled : {true, false, true}) {
            HeadlessClearInvalidations(HeadlessMainWindow());
            if (sampled) RecordGraphSample();
            SetTextLine(3, sampled ? L"a" : L"b");
            RepaintMainWindow();
            asked.push_back(HeadlessInvalidations(HeadlessMainWindow()).size());
        }
    });
    UserExits();
    Run();
    EXPECT_EQ(asked, (std::vector<size_t>{1, 0, 1}));
}

// ---- Command line -------------------------------------------------------------------------------------

struct CommandLineRow {
    const char* name;
    int32_t port, rate; // -1: not stored
    const wchar_t *commandLine, *caption, *text;
};

TEST_F(MainWindowTest, CommandLinesThatCannotBeCarriedOutEndTheProgramWithABox)
{
    constexpr CommandLineRow Rows[] = {
        {"no port", -1, 2, L"StaticNavigationOn", L"CmdLine", L"Unknown Comm Port for GPS"},
        {"port outside the table", 10, 2, L"StaticNavigationOn", L"CmdLine", L"Unknown Comm Port for GPS"},
        {"no rate", 3, -1, L"StaticNavigationOff", L"CmdLine", L"Unknown Baudrate for Comm Port"},
        {"unknown", 3, 2, L"Something", L"Un-supported CmdLine", L"Something"},
        {"other letter case", 3, 2, L"staticnavigationon", L"Un-supported CmdLine", L"staticnavigationon"},
        {"something behind it", 3, 2, L"StaticNavigationOn ", L"Un-supported CmdLine",
         L"StaticNavigationOn "},
        {"no rate of SiRF binary", 3, 2, L"StaticNavigationOn", L"CmdLine",
         L"Unknown baudrate for switching to SiRF"},
    };
    for (const CommandLineRow& row : Rows) {
        HeadlessReset();
        UserInterfaceThread.store(GetCurrentThreadId());
        HeadlessAddPort(3);
        if (row.port != -1) StoreSetting(L"CommPortIdx", row.port);
        if (row.rate != -1) StoreSetting(L"BaudrateIdx", row.rate);
        EXPECT_EQ(Run(row.commandLine), 0) << row.name;
        ASSERT_EQ(HeadlessBoxes().size(), 1u) << row.name;
        EXPECT_TRUE(IsBox(HeadlessBoxes()[0], row.caption, row.text)) << row.name;
        EXPECT_EQ(HeadlessMainWindow(), nullptr) << row.name;
    }
}

TEST_F(MainWindowTest, CommandLineIsCutAt255Characters)
{
    HeadlessAddPort(3);
    StorePortAndRate();
    Run(std::wstring(400, L'x').c_str());
    ASSERT_EQ(HeadlessBoxes().size(), 1u);
    EXPECT_EQ(HeadlessBoxes()[0].text, std::wstring(255, L'x'));
}

TEST_F(MainWindowTest, StaticNavigationSwitchRunsToItsEndWithoutAUser)
{
    HeadlessPort& port = HeadlessAddPort(3);
    StorePortAndRate();
    StoreSetting(L"SirfBaudrateIdx", 6);
    StoreSetting(L"NmeaBaudrateIdx", 2);
    HeadlessReceiveAfter(port, 1000, Sentence("GPXYZ")); // buffered by the driver when the reader starts
    EXPECT_EQ(Run(L"StaticNavigationOff"), 0);
    ASSERT_EQ(port.writes.size(), 3u); // no hot start among them
    EXPECT_EQ(port.writes[0], "$PSRF100,0,57600,8,1,0*37\r\n");
    EXPECT_EQ(port.rates, (std::vector<DWORD>{4800, 57600, 4800}));
    EXPECT_TRUE(HeadlessBoxes().empty());
    EXPECT_EQ(HeadlessMainWindow(), nullptr);
}

// ---- Window -------------------------------------------------------------------------------------------

TEST_F(MainWindowTest, SecondStartActivatesTheFirstAndStartsNothingElse)
{
    StorePortAndRate();
    HeadlessAddPort(3);
    int second = -1;
    HeadlessUser([&] {
        const HINSTANCE own = nullptr;
        second = RunProgram(own, L"StaticNavigationOn", SW_SHOWNORMAL);
    });
    UserExits();
    Run();
    EXPECT_EQ(second, 0);
    EXPECT_EQ(HeadlessGetPort(3).opens, 1u);
    EXPECT_NE(HeadlessBroughtToFront(), nullptr);
}

int ProgramsStarted = 0;
DWORD WINAPI StartAnother(void*)
{
    ++ProgramsStarted;
    EXPECT_FALSE(BecomeOnlyCopy(L"Toravane"));
    return 0;
}

// The other copy has not created its window yet.
TEST_F(MainWindowTest, TwoStartsAtOnceGiveOneWindow)
{
    const HANDLE starting = CreateMutexW(nullptr, FALSE, L"Toravane");
    CloseHandle(CreateThread(nullptr, 0, StartAnother, nullptr, 0, nullptr));
    Sleep(300);
    EXPECT_EQ(HeadlessLiveThreads(), 1u); // it waits
    StorePortAndRate();
    HeadlessAddPort(3);
    const HWND window = MakeWindowOfTheProgram();
    Sleep(300);
    EXPECT_EQ(HeadlessLiveThreads(), 0u);
    EXPECT_EQ(HeadlessBroughtToFront(), window);
    EXPECT_EQ(ProgramsStarted, 1);
    DestroyWindow(window);
    CloseHandle(starting);
    EXPECT_EQ(HeadlessOpenHandles(), 0u);
}

// The other copy no longer has a window: the program waits for it, but not for ever.
TEST_F(MainWindowTest, StartWaitsForACopyThatEnds)
{
    const HANDLE ending = CreateMutexW(nullptr, FALSE, L"Toravane");
    EXPECT_TRUE(BecomeOnlyCopy(L"Toravane"));
    EXPECT_EQ(HeadlessElapsed(), 5000u);
    LeaveOnlyCopy();
    CloseHandle(ending);
    EXPECT_TRUE(BecomeOnlyCopy(L"Toravane"));
    EXPECT_EQ(HeadlessElapsed(), 5000u);
    LeaveOnlyCopy();
    EXPECT_EQ(HeadlessOpenHandles(), 0u);
}

TEST_F(MainWindowTest, SystemWithoutTheObjectForOneCopyStartsIt)
{
    HeadlessFailCall("CreateMutexW", 1, ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_TRUE(BecomeOnlyCopy(L"Toravane"));
    LeaveOnlyCopy();
}

TEST_F(MainWindowTest, CopyThatCouldNotStartLeavesTheNextOneItsPlace)
{
    HeadlessFailCall("CreateWindowExW", 1, ERROR_NOT_ENOUGH_MEMORY);
    Run();
    EXPECT_EQ(HeadlessOpenHandles(), 0u);
    EXPECT_TRUE(BecomeOnlyCopy(L"Toravane"));
    EXPECT_EQ(HeadlessElapsed(), 0u);
    LeaveOnlyCopy();
}

// At the first showing of the window, systems obey the launcher, not the program.
TEST_F(MainWindowTest, StartThatTheLauncherMinimisesShowsTheWindow)
{
    StorePortAndRate();
    HeadlessAddPort(3);
    HeadlessStartMinimised();
    bool minimised = true, visible = false;
    HeadlessUser([&] {
        minimised = HeadlessIsMinimised(HeadlessMainWindow());
        visible = GetWindowLongW(HeadlessMainWindow(), GWL_STYLE) & static_cast<LONG>(WS_VISIBLE);
    });
    UserExits();
    Run();
    EXPECT_FALSE(minimised);
    EXPECT_TRUE(visible);
}

TEST_F(MainWindowTest, ClassRedrawsAtAnySizeOnWhiteWithTheProgramsIcon)
{
    StorePortAndRate();
    HeadlessAddPort(3);
    WNDCLASSW described = {};
    HeadlessUser([&] { described = HeadlessWindowClass(HeadlessMainWindow()); });
    UserExits();
    Run();
    EXPECT_EQ(described.style, UINT{CS_HREDRAW | CS_VREDRAW});
    EXPECT_EQ(described.hIcon, LoadIconW(nullptr, MAKEINTRESOURCEW(1)));
    EXPECT_NE(described.hIcon, nullptr);
    EXPECT_EQ(described.hbrBackground, GetStockObject(WHITE_BRUSH));
}

TEST_F(MainWindowTest, LogIsClosedWithTheWindow)
{
    HeadlessPort& port = HeadlessAddPort(3);
    StorePortAndRate();
    HeadlessAnswerSaveDialog(L"\\a.txt", 1);
    HeadlessUser([&] {
        EXPECT_TRUE(LogOpen());
        HeadlessReceive(port, "abc");
    });
    HeadlessUser([] { HeadlessCommand(HeadlessMainWindow(), COMMAND_EXIT); }, 200);
    Run();
    EXPECT_EQ(LogFileHandle.load(), INVALID_HANDLE_VALUE);
    EXPECT_EQ(HeadlessFileContent(L"\\a.txt"), "abc");
    EXPECT_EQ(HeadlessOpenHandles(), 0u);
}

TEST_F(MainWindowTest, TitleAndMenu)
{
    StorePortAndRate();
    HeadlessAddPort(3);
    std::wstring title;
    std::vector<std::wstring> menu;
    HeadlessUser([&] {
        title = HeadlessTitle(HeadlessMainWindow());
        menu = HeadlessMenu(HeadlessMainWindow());
    });
    UserExits();
    Run();
    EXPECT_EQ(title, L"Toravane");
    EXPECT_EQ(menu, (std::vector<std::wstring>{
                        L"0 401 About",
                        L"0 403 Com",
                        L"0 0 NMEA",
                        L"1 2003 Set Serial Port (Switch to SiRF)",
                        L"1 2004 Navigation Initialization",
                        L"1 2005 Set Message Rate",
                        L"1 2007 Development Data",
                        L"1 2008 Select Datum",
                        L"0 0 SiRF",
                        L"1 2009 Advanced Power Management",
                        L"1 2010 Initialize Data Source",
                        L"1 2011 Switch to NMEA Protocol",
                        L"1 2012 DGPS Source",
                        L"1 2013 Mode Control",
                        L"1 2014 DOP Mask",
                        L"1 2015 DGPS Mode",
                        L"1 2016 Elevation Mask",
                        L"1 2017 Power Mask",
                        L"1 2018 Static Navigation",
                        L"1 2019 Trickle Power",
                        L"1 2020 Set Message Rate",
                        L"1 2021 Low Power",
                        L"1 2022 SBAS",
                        L"1 2025 Poll Software Version",
                        L"0 408 Graph",
                        L"0 406 Exit",
                    }));
}

TEST_F(MainWindowTest, KeypadDevicesHaveTheSameItemsUnderTwoKeys)
{
    HeadlessSetPlatformType(L"SmartPhone");
    StorePortAndRate();
    HeadlessAddPort(3);
    std::vector<std::wstring> menu;
    HeadlessUser([&] { menu = HeadlessMenu(HeadlessMainWindow()); });
    UserExits();
    Run();
    ASSERT_EQ(menu.size(), 26u);
    EXPECT_EQ(menu[0], L"0 0 NMEA");
    EXPECT_EQ(menu[1], L"1 401 About Toravane");
    EXPECT_EQ(menu[2], L"1 403 Communication");
    EXPECT_EQ(menu[3], L"1 2003 Set Serial Port (Switch to SiRF)");
    EXPECT_EQ(menu[8], L"1 408 Graph Options");
    EXPECT_EQ(menu[9], L"1 406 Exit");
    EXPECT_EQ(menu[10], L"0 0 SiRF");
    EXPECT_EQ(menu[25], L"1 2025 Poll Software Version");
}

TEST_F(MainWindowTest, AnyKeyToggles)
{
    StorePortAndRate();
    HeadlessAddPort(3);
    std::vector<GraphModeValue> modes;
    bool erases = false;
    constexpr WPARAM KeyDown = 0x28, KeyA = 0x41;
    HeadlessUser([] { HeadlessKey(HeadlessMainWindow(), KeyDown); });
    HeadlessUser([&] {
        modes.push_back(GraphMode);
        HeadlessClearInvalidations(HeadlessMainWindow());
        HeadlessKey(HeadlessMainWindow(), KeyDown);
    });
    HeadlessUser([&] {
        modes.push_back(GraphMode);
        erases = LastInvalidationErases();
        HeadlessKey(HeadlessMainWindow(), KeyA, L'a'); // a key that also types: twice
    });
    HeadlessUser([&] { modes.push_back(GraphMode); });
    UserExits();
    Run();
    EXPECT_EQ(modes, (std::vector<GraphModeValue>{GraphModeValue::Chart, GraphModeValue::TextPage,
                                                  GraphModeValue::TextPage}));
    EXPECT_TRUE(erases);
}

TEST_F(MainWindowTest, MinimisingEndsTheProgram)
{
    StorePortAndRate();
    HeadlessAddPort(3);
    HeadlessUser([] { SendMessageW(HeadlessMainWindow(), WM_SIZE, SIZE_MINIMIZED, 0); });
    EXPECT_EQ(Run(), 0);
    EXPECT_FALSE(HeadlessGetPort(3).isOpen);
}

TEST_F(MainWindowTest, MinimisedWindowIsInactiveBeforeItCloses)
{
    StorePortAndRate();
    HeadlessAddPort(3);
    HeadlessUser([] {
        EXPECT_NE(HeadlessPartingMessages().second, WM_ACTIVATE);
        SendMessageW(HeadlessMainWindow(), WM_SIZE, SIZE_MINIMIZED, 0);
    });
    Run();
    EXPECT_EQ(HeadlessPartingMessages(), (std::pair{UINT{WM_ACTIVATE}, UINT{WM_CLOSE}}));
}

// Another program can do that while any dialog is open.
TEST_F(MainWindowTest, MinimisingBehindADialogEndsTheProgram)
{
    std::vector<int> items;
    StorePortAndRate();
    HeadlessAddPort(3);
    HeadlessUser([&] {
        for (const std::wstring& item : HeadlessMenu(HeadlessMainWindow()))
            if (const int number = std::stoi(item.substr(2)); number && number != COMMAND_EXIT)
                items.push_back(number);
    });
    UserExits();
    Run();
    ASSERT_EQ(items.size(), 23u);
    for (const int item : items) {
        StartAfresh();
        StorePortAndRate();
        HeadlessPort& port = HeadlessAddPort(3);
        bool wasOpen = false;
        HeadlessUser([&] { HeadlessCommand(HeadlessMainWindow(), item); });
        HeadlessUser([&] {
            wasOpen = HeadlessTopDialog() && ActiveDialogKind.load() != DialogKind::None;
            SendMessageW(HeadlessMainWindow(), WM_SIZE, SIZE_MINIMIZED, 0);
        });
        EXPECT_EQ(Run(), 0) << item;
        EXPECT_TRUE(wasOpen) << item;
        EXPECT_FALSE(port.isOpen) << item;
        EXPECT_EQ(ActiveDialogKind.load(), DialogKind::None) << item;
        EXPECT_EQ(HeadlessLiveThreads(), 0u) << item;
        EXPECT_EQ(HeadlessOpenHandles(), 0u) << item;
        EXPECT_TRUE(HeadlessBoxes().empty()) << item;
    }
}

TEST_F(MainWindowTest, CommandOfNoMenuItemDoesNothing)
{
    StorePortAndRate();
    HeadlessAddPort(3);
    HWND dialog = nullptr;
    HeadlessUser([&] {
        SendMessageW(HeadlessMainWindow(), WM_COMMAND, 999, 0);
        dialog = HeadlessTopDialog();
    });
    UserExits();
    EXPECT_EQ(Run(), 0);
    EXPECT_EQ(dialog, nullptr);
    EXPECT_TRUE(HeadlessBoxes().empty());
}

TEST_F(MainWindowTest, AboutOpensFromTheMenu)
{
    StorePortAndRate();
    HeadlessAddPort(3);
    std::wstring title;
    HeadlessUser([] { HeadlessCommand(HeadlessMainWindow(), COMMAND_ABOUT); });
    HeadlessUser([&] {
        title = HeadlessTitle(HeadlessTopDialog());
        HeadlessClick(HeadlessTopDialog(), IDOK);
    });
    UserExits();
    Run();
    EXPECT_EQ(title, L"About Toravane");
}

TEST_F(MainWindowTest, DataDoesNotRepaintWhileADialogIsOpen)
{
    HeadlessPort& port = HeadlessAddPort(3);
    StorePortAndRate();
    size_t open = 99, closed = 0;
    bool erases = true;
    HeadlessUser([] { HeadlessCommand(HeadlessMainWindow(), COMMAND_ABOUT); });
    HeadlessUser([&] {
        HeadlessClearInvalidations(HeadlessMainWindow());
        HeadlessReceive(port, Sentence("GPVTG,91.5,T,,M,20,N,,K,A"));
    });
    HeadlessUser(
        [&] {
            open = HeadlessInvalidations(HeadlessMainWindow()).size();
            HeadlessClick(HeadlessTopDialog(), IDOK);
        },
        200);
    HeadlessUser([&] {
        HeadlessClearInvalidations(HeadlessMainWindow());
        HeadlessReceive(port, Sentence("GPVTG,92.5,T,,M,20,N,,K,A"));
    });
    HeadlessUser(
        [&] {
            const std::vector<bool> all = HeadlessInvalidations(HeadlessMainWindow());
            closed = all.size();
            erases = closed && all.back();
        },
        200);
    UserExits();
    Run();
    EXPECT_EQ(open, 0u);
    EXPECT_EQ(closed, 1u);
    EXPECT_FALSE(erases);
}

TEST_F(MainWindowTest, OptionalLibrariesAreLoadedAndFreed)
{
    StorePortAndRate();
    HeadlessAddPort(3);
    HeadlessAddExport(L"COMMDLG.DLL", L"ChooseColor", UnusedExport);
    HeadlessAddExport(L"AYGSHELL.DLL", 188u, UnusedExport);
    std::vector<std::wstring> during;
    HeadlessUser([&] { during = HeadlessLoadedLibraries(); });
    UserExits();
    Run();
    EXPECT_EQ(during.size(), 2u);
    EXPECT_TRUE(HeadlessLoadedLibraries().empty());
}

// A keypad device whose shell library lacks every export.
TEST_F(MainWindowTest, MissingShellExportsAreDoneWithout)
{
    HeadlessSetPlatformType(L"", ERROR_ACCESS_DENIED);
    HeadlessAddExport(L"AYGSHELL.DLL", 188u, UnusedExport);
    HeadlessUser([] { SendMessageW(HeadlessMainWindow(), WM_SETTINGCHANGE, 0, 0); });
    HeadlessUser([] { SendMessageW(HeadlessTopDialog(), WM_HOTKEY, 0, 27 << 16); });
    HeadlessUser([] { HeadlessCommand(HeadlessTopDialog(), IDOK); });
    UserExits();
    EXPECT_EQ(Run(), 0);
}

// ---- Hand-held devices --------------------------------------------------------------------------------

// Requests of the program to the shell.
std::vector<ShellInitDialog> InitRequests;
std::vector<ShellMenuBar> BarRequests;
std::vector<WPARAM> Settings, HotKeys;
HWND ShellBar; // that the shell makes

BOOL InitDialogByShell(ShellInitDialog* request)
{
    InitRequests.push_back(*request);
    return TRUE;
}
BOOL CreateMenuBarByShell(ShellMenuBar* request)
{
    BarRequests.push_back(*request);
    request->bar = ShellBar;
    return ShellBar != nullptr;
}
BOOL HandleSettingChangeByShell(HWND, WPARAM wParam, LPARAM, ShellActivateInfo* info)
{
    EXPECT_EQ(info->size, sizeof *info);
    Settings.push_back(wParam);
    return TRUE;
}
void SendBackByShell(UINT message, WPARAM, LPARAM)
{
    HotKeys.push_back(message);
}

class WithShell : public MainWindowTest
{
protected:
    explicit WithShell(const wchar_t* type = L"PocketPC")
    {
        HeadlessSetPlatformType(type);
        const auto add = [](auto name, auto procedure) {
            HeadlessAddExport(L"AYGSHELL.DLL", name,
                              reinterpret_cast<FARPROC>(reinterpret_cast<void*>(procedure)));
        };
        add(L"SHInitDialog", InitDialogByShell);
        add(L"SHCreateMenuBar", CreateMenuBarByShell);
        add(83u, HandleSettingChangeByShell);
        add(97u, SendBackByShell);
        StorePortAndRate();
        HeadlessAddPort(3);
        InitRequests.clear();
        BarRequests.clear();
        Settings.clear();
        HotKeys.clear();
        WNDCLASSW bar = {};
        bar.lpszClassName = L"Bar";
        bar.lpfnWndProc = DefWindowProcW;
        RegisterClassW(&bar);
        ShellBar = CreateWindowExW(0, L"Bar", L"", 0, 0, 0, 240, 26, nullptr, nullptr, nullptr, nullptr);
    }
    ~WithShell() override { DestroyWindow(ShellBar); }

    static HWND Window() { return MainWindow.load(); } // the bar is a top-level window too

    // Opens the About box and presses Back in it.
    static void UserVisitsAbout()
    {
        HeadlessUser([] { SendMessageW(Window(), WM_COMMAND, COMMAND_ABOUT, 0); });
        HeadlessUser([] { SendMessageW(HeadlessTopDialog(), WM_HOTKEY, 0, 27 << 16); });
        HeadlessUser([] { SendMessageW(HeadlessTopDialog(), WM_HOTKEY, 0, 28 << 16); }); // another key
        HeadlessUser([] { HeadlessCommand(HeadlessTopDialog(), IDOK); });
    }
    static void UserExits()
    {
        HeadlessUser([] { SendMessageW(Window(), WM_COMMAND, COMMAND_EXIT, 0); });
    }
};

TEST_F(WithShell, PocketPcTakesTheShellsBarsOffTheWindow)
{
    SIZE client{};
    int chartHeight = 0;
    LONG style = 0;
    HeadlessUser([&] {
        RECT area;
        GetClientRect(Window(), &area);
        client = {area.right, area.bottom};
        chartHeight = GraphHeight.load();
        style = GetWindowLongW(Window(), GWL_STYLE);
        SendMessageW(Window(), WM_SETTINGCHANGE, 47, 0);
    });
    UserVisitsAbout();
    UserExits();
    EXPECT_EQ(Run(), 0);
    EXPECT_EQ(client.cy, 294 - 26); // less the bar, which lies below it
    EXPECT_EQ(chartHeight, client.cy);
    EXPECT_EQ(static_cast<DWORD>(style) & WS_CAPTION, 0u);
    EXPECT_EQ(Settings, std::vector<WPARAM>{47});
    ASSERT_EQ(BarRequests.size(), 2u);
    EXPECT_EQ(BarRequests[0].size, sizeof(ShellMenuBar));
    EXPECT_EQ(BarRequests[0].menu, 2000u);
    EXPECT_EQ(BarRequests[1].menu, 2001u); // of the dialog
    ASSERT_EQ(InitRequests.size(), 1u);
    EXPECT_EQ(InitRequests[0].mask, 1u);
    EXPECT_EQ(InitRequests[0].flags, 13u); // done button, full screen, no input panel
    EXPECT_EQ(InitRequests[0].dialog, BarRequests[1].parent);
    EXPECT_EQ(HotKeys, std::vector<WPARAM>{WM_HOTKEY});
}

// The title has an OK button. The bar below and the dialog have none; a button with the text Close stays.
TEST_F(WithShell, PocketPcShowsOneOk)
{
    const auto closingButtonIsVisible = [](UINT item, bool& visible) {
        HeadlessUser([=] { SendMessageW(Window(), WM_COMMAND, item, 0); });
        HeadlessUser([&visible] {
            const HWND button = GetDlgItem(HeadlessTopDialog(), IDOK);
            visible = GetWindowLongW(button, GWL_STYLE) & static_cast<LONG>(WS_VISIBLE);
            HeadlessCommand(HeadlessTopDialog(), IDOK);
        });
    };
    bool about = true, communication = true, graph = true, mask = false;
    closingButtonIsVisible(COMMAND_ABOUT, about);
    closingButtonIsVisible(COMMAND_COMMUNICATION, communication);
    closingButtonIsVisible(COMMAND_GRAPH, graph);
    closingButtonIsVisible(DIALOG_SIRF_ELEVATION_MASK, mask);
    UserExits();
    EXPECT_EQ(Run(), 0);
    EXPECT_FALSE(about);
    EXPECT_FALSE(communication);
    EXPECT_FALSE(graph);
    EXPECT_TRUE(mask);
    ASSERT_EQ(BarRequests.size(), 5u);
    EXPECT_EQ(BarRequests[0].flags, 0u);                                // of the window
    for (size_t i = 1; i < 5; ++i) EXPECT_EQ(BarRequests[i].flags, 1u); // empty
}

class WithKeypadShell : public WithShell
{
protected:
    WithKeypadShell() : WithShell(L"SmartPhone") {}
};

TEST_F(WithKeypadShell, WindowKeepsItsSizeAndDialogsScroll)
{
    int chartHeight = 0;
    LONG style = 0;
    HeadlessUser([&] { chartHeight = GraphHeight.load(); });
    HeadlessUser([] { SendMessageW(Window(), WM_COMMAND, COMMAND_ABOUT, 0); });
    HeadlessUser([&] {
        style = GetWindowLongW(HeadlessTopDialog(), GWL_STYLE);
        HeadlessCommand(HeadlessTopDialog(), IDOK);
    });
    UserExits();
    EXPECT_EQ(Run(), 0);
    EXPECT_EQ(chartHeight, 294);
    EXPECT_NE(static_cast<DWORD>(style) & WS_VSCROLL, 0u);
    ASSERT_EQ(BarRequests.size(), 2u);
    EXPECT_EQ(BarRequests[0].menu, 2100u);
    EXPECT_EQ(BarRequests[1].menu, 2001u); // the same for both layouts
    EXPECT_EQ(BarRequests[1].flags, 0u);
}

// A keypad device whose shell provides no bar: the command bar is above the chart, which keeps the window's
// height.
TEST_F(WithKeypadShell, ChartKeepsTheWindowsHeightUnderACommandBar)
{
    DestroyWindow(ShellBar);
    ShellBar = nullptr;
    RECT client = {};
    int chartHeight = 0;
    HeadlessUser([&] {
        GetClientRect(Window(), &client);
        chartHeight = GraphHeight.load();
    });
    UserExits();
    EXPECT_EQ(Run(), 0);
    EXPECT_GT(chartHeight, 0);
    EXPECT_EQ(chartHeight, client.bottom);
}

// Neither the shell nor the system provides a bar for the window: it has no chart, but its settings.
TEST_F(WithShell, WithoutAnyBarThereIsNoChart)
{
    DestroyWindow(ShellBar);
    ShellBar = nullptr;
    StoreSetting(L"TimeScaleIdx", 3);
    HeadlessFailCall("CommandBar_Create", 1, ERROR_GEN_FAILURE);
    int width = -1;
    HeadlessUser([&] { width = GraphWidth.load(); });
    UserExits();
    EXPECT_EQ(Run(), 0);
    EXPECT_EQ(width, 0);
    EXPECT_EQ(TimeScaleIdx.load(), 3);
}

} // namespace
