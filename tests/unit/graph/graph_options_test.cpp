// SPDX-License-Identifier: MIT
#include "graph/graph_options_dialog.h"

#include <algorithm>
#include <map>

#include "graph/graph_mode.h"
#include "platform/start.h"
#include "resources/resource_ids.h"
#include "tests/support/fresh_program.h"
#include "tests/unit/graph/support/chart_fixture.h"
#include "ui/dialog_support.h"
#include "ui/shell_libraries.h"

namespace
{

constexpr WPARAM BackKey = 27;

// The colour that the scripted user chooses, and the arguments of the chooser.
CHOOSECOLORW AskedWith;
COLORREF InitialColor;
COLORREF* CustomTable;
bool ColorIsChosen;
uint32_t ColorDialogs;

BOOL WINAPI ScriptedChooseColor(CHOOSECOLORW* request)
{
    ++ColorDialogs;
    AskedWith = *request;
    InitialColor = request->rgbResult;
    CustomTable = request->lpCustColors;
    request->rgbResult = 0x0000FF;
    return ColorIsChosen;
}

LPARAM PassedBack;
void WINAPI ScriptedSendBack(UINT, WPARAM, LPARAM lParam)
{
    PassedBack = lParam;
}

template <typename Procedure> FARPROC Export(Procedure procedure)
{
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(procedure));
}

class GraphOptionsTest : public ChartTest
{
protected:
    GraphOptionsTest()
    {
        StorePort();
        ColorIsChosen = true;
        ColorDialogs = 0;
        PassedBack = 0;
    }

    void StorePort()
    {
        StoreSetting(L"CommPortIdx", 3);
        StoreSetting(L"BaudrateIdx", 2);
        m_port = &HeadlessAddPort(3);
    }

    // The whole program with the dialog open: `work` is done in it, then it is closed by `last`.
    template <typename Work> static void Run(Work work, int last = IDOK)
    {
        HeadlessUser([] { HeadlessCommand(HeadlessMainWindow(), COMMAND_GRAPH); });
        HeadlessUser([work] { work(HeadlessTopDialog()); });
        HeadlessUser([last] {
            if (last == IDOK || last == IDCANCEL)
                HeadlessCommand(HeadlessTopDialog(), last);
            else
                HeadlessClick(HeadlessTopDialog(), last);
        });
        HeadlessUser([] {
            EXPECT_EQ(HeadlessTopDialog(), nullptr);
            EXPECT_EQ(ActiveDialogKind.load(), DialogKind::None);
            EXPECT_EQ(ActiveDialogWindow.load(), nullptr);
            HeadlessCommand(HeadlessMainWindow(), COMMAND_EXIT);
        });
        EXPECT_EQ(RunProgram(nullptr, L"", SW_SHOWNORMAL), 0);
        EXPECT_EQ(HeadlessGdiObjects(), 0u);
    }
    static void Nothing(HWND) {}

    // A new process on the same device: only the registry is kept.
    void RestartSystem()
    {
        std::vector<std::wstring> names = {L"Lines", L"TimeScaleIdx", L"CommPortIdx", L"BaudrateIdx"};
        for (const GraphChannelRecord& channel : GraphChannel)
            for (const wchar_t* suffix :
                 {L"ValueZero", L"ValueMin", L"ValueMax", L"PixelMin", L"PixelMax", L"Color", L"Use"})
                names.push_back(std::wstring(channel.Name) + suffix);
        std::map<std::wstring, int32_t> stored;
        for (const std::wstring& name : names) stored[name] = Setting(name.c_str());
        HeadlessReset();
        for (const auto& [name, value] : stored) StoreSetting(name.c_str(), value);
        m_port = &HeadlessAddPort(3);
        ResetChannels();
        ResetGraphSettings();
    }

    HeadlessPort* m_port;
};

// ---- Opening ------------------------------------------------------------------------------------------

TEST_F(GraphOptionsTest, ShowsARowForEachChannel)
{
    StoreSetting(L"SpeedUse", 0);
    StoreSetting(L"CourseValueMin", -180);
    Run([](HWND dialog) {
        EXPECT_EQ(HeadlessTitle(dialog), L"Graph Options");
        EXPECT_EQ(ActiveDialogKind.load(), DialogKind::GraphOptions);
        EXPECT_EQ(ActiveDialogWindow.load(), dialog);
        struct Row {
            const wchar_t *name, *zero, *min, *max, *floor, *ceiling;
        };
        constexpr Row Rows[] = {
            {L"SVsInFix", L"0", L"0", L"12", L"255", L"267"},
            {L"HDOP", L"0", L"0", L"10", L"235", L"255"},
            {L"EHPE", L"0", L"0", L"20", L"215", L"235"},
            {L"Northing", L"6592520", L"-40", L"40", L"175", L"215"},
            {L"Easting", L"723400", L"-40", L"40", L"135", L"175"},
            {L"VDOP", L"0", L"0", L"10", L"115", L"135"},
            {L"EVPE", L"0", L"0", L"25", L"90", L"115"},
            {L"Altitude", L"70", L"-50", L"50", L"40", L"90"},
            {L"Speed", L"0", L"0", L"2", L"20", L"40"},
            {L"Course", L"0", L"-180", L"360", L"0", L"20"},
        };
        for (int i = 0; i < 10; ++i) {
            EXPECT_EQ(HeadlessText(dialog, CONTROL_GRAPH_NAME + i), Rows[i].name);
            EXPECT_EQ(HeadlessText(dialog, CONTROL_GRAPH_VALUE_ZERO + i), Rows[i].zero);
            EXPECT_EQ(HeadlessText(dialog, CONTROL_GRAPH_VALUE_MIN + i), Rows[i].min);
            EXPECT_EQ(HeadlessText(dialog, CONTROL_GRAPH_VALUE_MAX + i), Rows[i].max);
            EXPECT_EQ(HeadlessText(dialog, CONTROL_GRAPH_PIXEL_MIN + i), Rows[i].floor);
            EXPECT_EQ(HeadlessText(dialog, CONTROL_GRAPH_PIXEL_MAX + i), Rows[i].ceiling);
            EXPECT_EQ(HeadlessCheck(dialog, CONTROL_GRAPH_VISIBLE + i), i == 8 ? BST_UNCHECKED : BST_CHECKED);
        }
        EXPECT_EQ(HeadlessItems(dialog, CONTROL_GRAPH_TIME_SCALE),
                  (std::vector<std::wstring>{L"1 sec/pixel", L" 5 sec/pixel", L"20 sec/pixel", L"1 min/pixel",
                                             L"3 min/pixel", L"6 min/pixel"}));
        EXPECT_EQ(HeadlessSelection(dialog, CONTROL_GRAPH_TIME_SCALE), 0);
        EXPECT_EQ(HeadlessCheck(dialog, CONTROL_GRAPH_LINES), BST_CHECKED);
        const std::pair<int, const wchar_t*> texts[] = {
            {CONTROL_GRAPH_HELP, L"Help"}, {CONTROL_GRAPH_ZERO, L"Zero"}, {CONTROL_GRAPH_SAVE, L"Save"},
            {CONTROL_GRAPH_HIDE, L"Hide"}, {CONTROL_GRAPH_SHOW, L"Show"}, {CONTROL_GRAPH_LINES, L"Lines"}};
        for (const auto& [control, text] : texts) EXPECT_EQ(HeadlessText(dialog, control), text);
    });
}

TEST_F(GraphOptionsTest, ShowsWhatIsStored)
{
    StoreSetting(L"Lines", 0);
    StoreSetting(L"TimeScaleIdx", 4);
    Run([](HWND dialog) {
        EXPECT_EQ(HeadlessSelection(dialog, CONTROL_GRAPH_TIME_SCALE), 4);
        EXPECT_EQ(HeadlessCheck(dialog, CONTROL_GRAPH_LINES), BST_UNCHECKED);
    });
    EXPECT_EQ(TimeScaleIdx.load(), 4);
    EXPECT_EQ(GraphLines.load(), 0);
}

TEST_F(GraphOptionsTest, ShowsFractionsAndHugeValuesAsWholeNumbers)
{
    HeadlessUser([] {
        GraphChannel[0].ValueZero.store(-2.9f);
        GraphChannel[1].ValueZero.store(1e15f);
        GraphChannel[2].ValueZero.store(-1e15f);
    });
    Run([](HWND dialog) {
        EXPECT_EQ(HeadlessText(dialog, CONTROL_GRAPH_VALUE_ZERO), L"-2");
        EXPECT_EQ(HeadlessText(dialog, 1871), L"2147483647");
        EXPECT_EQ(HeadlessText(dialog, 1872), L"-2147483648");
    });
}

TEST_F(GraphOptionsTest, TimeScaleOutOfTheListSelectsNothingAndStays)
{
    StoreSetting(L"TimeScaleIdx", 17);
    Run([](HWND dialog) { EXPECT_EQ(HeadlessSelection(dialog, CONTROL_GRAPH_TIME_SCALE), -1); });
    EXPECT_EQ(TimeScaleIdx.load(), 17);
}

// ---- Applying -----------------------------------------------------------------------------------------

void ChangeEverything(HWND dialog)
{
    for (int i = 0; i < 10; ++i) {
        const auto number = [i](int base) { return std::to_wstring(base + i); };
        HeadlessType(dialog, CONTROL_GRAPH_VALUE_ZERO + i, L"-" + number(100));
        HeadlessType(dialog, CONTROL_GRAPH_VALUE_MIN + i, number(200));
        HeadlessType(dialog, CONTROL_GRAPH_VALUE_MAX + i, number(300));
        HeadlessType(dialog, CONTROL_GRAPH_PIXEL_MIN + i, number(10));
        HeadlessType(dialog, CONTROL_GRAPH_PIXEL_MAX + i, number(20));
        if (i % 2) HeadlessClick(dialog, CONTROL_GRAPH_VISIBLE + i);
    }
    HeadlessClick(dialog, CONTROL_GRAPH_LINES);
    HeadlessChoose(dialog, CONTROL_GRAPH_TIME_SCALE, 3);
}

void ExpectEverythingChanged()
{
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(GraphChannel[i].ValueZero.load(), static_cast<float>(-100 - i));
        EXPECT_EQ(GraphChannel[i].ValueMin.load(), static_cast<float>(200 + i));
        EXPECT_EQ(GraphChannel[i].ValueMax.load(), static_cast<float>(300 + i));
        EXPECT_EQ(GraphChannel[i].PixelMin.load(), 10 + i);
        EXPECT_EQ(GraphChannel[i].PixelMax.load(), 20 + i);
        EXPECT_EQ(GraphChannel[i].Visible.load(), i % 2 ? 0 : 1);
    }
    EXPECT_EQ(GraphLines.load(), 0);
    EXPECT_EQ(TimeScaleIdx.load(), 3);
}

class EveryWayOut : public GraphOptionsTest, public testing::WithParamInterface<int>
{
};

TEST_P(EveryWayOut, Applies)
{
    Run(ChangeEverything, GetParam());
    ExpectEverythingChanged();
    EXPECT_EQ(GraphMode, GetParam() == CONTROL_GRAPH_SHOW ? GraphModeValue::Chart : GraphModeValue::TextPage);
    EXPECT_EQ(Setting(L"Lines"), -12345); // nothing is stored without "Save"
}

INSTANTIATE_TEST_SUITE_P(GraphOptions, EveryWayOut,
                         testing::Values(IDOK, IDCANCEL, CONTROL_GRAPH_SHOW, CONTROL_GRAPH_HIDE));

TEST_F(GraphOptionsTest, EditsWithoutANumberLeaveTheirFieldAsItIs)
{
    Run([](HWND dialog) {
        const wchar_t* const no[] = {L"", L"x", L"-", L"--5", L"99999999999", L"-99999999999", L"e5", L". 5"};
        for (int i = 0; i < 8; ++i) {
            HeadlessType(dialog, CONTROL_GRAPH_VALUE_ZERO + i, no[i]);
            HeadlessType(dialog, CONTROL_GRAPH_PIXEL_MAX + i, no[i]);
        }
        HeadlessType(dialog, 1848, L"-5"); // heights have no sign
        HeadlessType(dialog, 1878, L"-5");
        HeadlessType(dialog, 1849, L"65556"); // low 16 bits
        HeadlessType(dialog, 1879, L" 1.5");  // whole numbers only
    });
    const float zeros[] = {0, 0, 0, 6592520, 723400, 0, 0, 70, -5, 0};
    const int ceilings[] = {267, 255, 235, 215, 175, 135, 115, 90, 40, 20};
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(GraphChannel[i].ValueZero.load(), zeros[i]) << i;
        EXPECT_EQ(GraphChannel[i].PixelMax.load(), ceilings[i]) << i;
    }
}

TEST_F(GraphOptionsTest, ChangeOfTheTimeScaleClearsTheChartWithTheOldBackground)
{
    Run([](HWND dialog) {
        for (uint32_t second = 1; second < 90; ++second) Sample(second, second % 12);
        HeadlessType(dialog, CONTROL_GRAPH_PIXEL_MAX, L"260");
        HeadlessChoose(dialog, CONTROL_GRAPH_TIME_SCALE, 1);
        HeadlessClick(dialog, CONTROL_GRAPH_SAVE);
        const std::string column = Column(0);
        EXPECT_EQ(column[column.size() - 1 - 267], '-'); // the band's old edge
        for (int x = 1; x < GraphBitmap.Width; ++x) ASSERT_EQ(Column(x), column) << x;
        const std::string now = Column(0, BackgroundColumn);
        EXPECT_EQ(now[now.size() - 1 - 267], '.');
        EXPECT_EQ(now[now.size() - 1 - 260], '-');
    });
}

TEST_F(GraphOptionsTest, BandsAloneKeepTheOldPoints)
{
    Run([](HWND dialog) {
        for (uint32_t second = 1; second < 90; ++second) Sample(second, second % 12);
        const Rows before = Picture();
        HeadlessType(dialog, CONTROL_GRAPH_PIXEL_MAX, L"260");
        HeadlessClick(dialog, CONTROL_GRAPH_SAVE);
        EXPECT_EQ(Picture(), before);
        EXPECT_EQ(GraphChannel[0].PixelMax.load(), 260);
        const std::string now = Column(0, BackgroundColumn);
        EXPECT_EQ(now[now.size() - 1 - 260], '-');
    });
}

TEST_F(GraphOptionsTest, TimeScaleChangedBeforeTheFirstSampleLeavesAWhiteChart)
{
    Run([](HWND dialog) {
        HeadlessChoose(dialog, CONTROL_GRAPH_TIME_SCALE, 1);
        HeadlessClick(dialog, CONTROL_GRAPH_SAVE);
        EXPECT_EQ(Column(17), std::string(GraphHeight.load(), '.'));
    });
}

TEST_F(GraphOptionsTest, TimeScaleWithoutAChartClearsNothing)
{
    HeadlessFailCall("CommandBar_Create", 1, ERROR_NOT_ENOUGH_MEMORY); // a window without a menu has no chart
    Run([](HWND dialog) {
        HeadlessClearFaults();
        HeadlessChoose(dialog, CONTROL_GRAPH_TIME_SCALE, 1);
    });
    EXPECT_EQ(TimeScaleIdx.load(), 1);
    EXPECT_TRUE(HeadlessBoxes().empty());
}

TEST_F(GraphOptionsTest, FailedClearingIsNamed)
{
    HeadlessFailCall("CreateDIBSection", 1, ERROR_NOT_ENOUGH_MEMORY, FailMode::FromHereOn);
    Run([](HWND dialog) {
        HeadlessClearBoxes();
        HeadlessChoose(dialog, CONTROL_GRAPH_TIME_SCALE, 1);
    });
    EXPECT_EQ(BoxCaptions(), (std::vector<std::wstring>{L"StretchBlt3", L"StretchBlt1", L"StretchBlt2"}));
}

TEST_F(GraphOptionsTest, WindowIsRepaintedWhenTheDialogHasClosed)
{
    HeadlessUser([] { HeadlessCommand(HeadlessMainWindow(), COMMAND_GRAPH); });
    HeadlessUser([] {
        HeadlessClearInvalidations(HeadlessMainWindow());
        HeadlessClick(HeadlessTopDialog(), CONTROL_GRAPH_SAVE);
        EXPECT_TRUE(HeadlessInvalidations(HeadlessMainWindow()).empty());
        HeadlessClick(HeadlessTopDialog(), CONTROL_GRAPH_SHOW);
    });
    HeadlessUser([] {
        EXPECT_EQ(HeadlessInvalidations(HeadlessMainWindow()), std::vector<bool>{true});
        HeadlessCommand(HeadlessMainWindow(), COMMAND_EXIT);
    });
    RunProgram(nullptr, L"", SW_SHOWNORMAL);
}

// While the dialog is open the decoders do not paint the main window, but the chart continues.
TEST_F(GraphOptionsTest, SamplesAreRecordedBehindTheDialog)
{
    Run([this](HWND) {
        HeadlessClearInvalidations(HeadlessMainWindow());
        HeadlessReceive(*m_port, Sentence("GPGGA,000107,5913.1000,N,01241.8000,E,1,07,1.5,80.0,M,0,M,,"));
        HeadlessPass(500);
        EXPECT_EQ(GraphSampleCount.load(), 1u);
        EXPECT_EQ(CurrentGraphColumn.load(), 67);
        EXPECT_TRUE(HeadlessInvalidations(HeadlessMainWindow()).empty());
    });
}

// ---- Buttons ------------------------------------------------------------------------------------------

TEST_F(GraphOptionsTest, SaveAppliesAndStoresEverythingAndStaysOpen)
{
    Run([](HWND dialog) {
        ChangeEverything(dialog);
        HeadlessClick(dialog, CONTROL_GRAPH_SAVE);
        EXPECT_EQ(HeadlessTopDialog(), dialog);
        ExpectEverythingChanged();
    });
    EXPECT_EQ(Setting(L"NorthingValueZero"), -103);
    EXPECT_EQ(Setting(L"NorthingValueMin"), 203);
    EXPECT_EQ(Setting(L"NorthingValueMax"), 303);
    EXPECT_EQ(Setting(L"NorthingPixelMin"), 13);
    EXPECT_EQ(Setting(L"NorthingPixelMax"), 23);
    EXPECT_EQ(Setting(L"NorthingColor"), 0xC000C0);
    EXPECT_EQ(Setting(L"NorthingUse"), 0);
    EXPECT_EQ(Setting(L"Lines"), 0);
    EXPECT_EQ(Setting(L"TimeScaleIdx"), 3);
    RestartSystem();
    Run(Nothing);
    ExpectEverythingChanged();
}

TEST_F(GraphOptionsTest, ZeroTakesThePresentPosition)
{
    Run([](HWND dialog) {
        SetChannelValue(ChannelNorthing, 5485446.5);
        SetChannelValue(ChannelEasting, -17200536.0);
        SetChannelValue(ChannelAltitude, 99.9);
        SetChannelValue(ChannelSpeed, 5);
        HeadlessType(dialog, CONTROL_GRAPH_VALUE_MIN, L"5");
        HeadlessClick(dialog, CONTROL_GRAPH_ZERO);
        EXPECT_EQ(HeadlessText(dialog, 1873), L"5485446");
        EXPECT_EQ(HeadlessText(dialog, 1874), L"-17200536");
        EXPECT_EQ(HeadlessText(dialog, 1877), L"99");
        EXPECT_EQ(HeadlessText(dialog, 1878), L"0");
        EXPECT_EQ(GraphChannel[ChannelNorthing].ValueZero.load(), 5485446.5f);
        EXPECT_EQ(GraphChannel[0].ValueMin.load(), 0); // not applied yet
    });
    EXPECT_EQ(GraphChannel[ChannelNorthing].ValueZero.load(), 5485446); // the whole number of the edit
    EXPECT_EQ(GraphChannel[ChannelAltitude].ValueZero.load(), 99);
    EXPECT_EQ(GraphChannel[0].ValueMin.load(), 5);
}

TEST_F(GraphOptionsTest, ZeroWithoutAFixIsZero)
{
    Run([](HWND dialog) {
        HeadlessClick(dialog, CONTROL_GRAPH_ZERO);
        for (const int control : {1873, 1874, 1877}) EXPECT_EQ(HeadlessText(dialog, control), L"0");
    });
    EXPECT_EQ(GraphChannel[ChannelNorthing].ValueZero.load(), 0);
}

TEST_F(GraphOptionsTest, ZeroOfValuesBeyondWholeNumbers)
{
    Run([](HWND dialog) {
        SetChannelValue(ChannelNorthing, 1e15);
        SetChannelValue(ChannelEasting, -1e300);
        SetChannelValue(ChannelAltitude, __builtin_nan(""));
        HeadlessClick(dialog, CONTROL_GRAPH_ZERO);
        EXPECT_EQ(HeadlessText(dialog, 1873), L"2147483647");
        EXPECT_EQ(HeadlessText(dialog, 1874), L"-2147483648");
        EXPECT_EQ(HeadlessText(dialog, 1877), L"-2147483648");
    });
}

TEST_F(GraphOptionsTest, HelpSaysWhatIsNeeded)
{
    Run([](HWND dialog) { HeadlessClick(dialog, CONTROL_GRAPH_HELP); });
    ASSERT_EQ(HeadlessBoxes().size(), 1u);
    EXPECT_TRUE(IsBox(HeadlessBoxes()[0], L"Graph",
                      L"Messages GGA, GSA and RMC are needed in NMEA protocol. Messages MID2 and MID41 are "
                      L"needed in SiRF protocol. VDOP is not supported in SiRF protocol. EHPE and EVPE, are "
                      L"not supported in NMEA protocol. Use joystick to toggle graph/text in main screen."));
}

TEST_F(GraphOptionsTest, OnlyClicksAreCommands)
{
    constexpr WORD EditChange = 0x300, DoubleClick = 1;
    Run([](HWND dialog) {
        SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(CONTROL_GRAPH_HELP, EditChange), 0);
        SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(CONTROL_GRAPH_SAVE, DoubleClick), 0);
        SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(CONTROL_GRAPH_VALUE_MIN, 0), 0);
        EXPECT_EQ(HeadlessTopDialog(), dialog);
    });
    EXPECT_TRUE(HeadlessBoxes().empty());
    EXPECT_EQ(Setting(L"Lines"), -12345);
}

// ---- Colours ------------------------------------------------------------------------------------------

TEST_F(GraphOptionsTest, FieldsHaveTheirChannelsColour)
{
    Run([](HWND dialog) {
        HeadlessPumpMessages();
        for (int i = 0; i < 10; ++i) {
            const std::vector<uint32_t> pixels = HeadlessPixels(GetDlgItem(dialog, CONTROL_GRAPH_COLOR + i));
            ASSERT_FALSE(pixels.empty());
            EXPECT_EQ(PixelName(pixels[pixels.size() / 2]), '0' + i);
        }
    });
}

TEST_F(GraphOptionsTest, BrushesOfRepaintsAreFreed)
{
    Run([](HWND dialog) {
        HeadlessPumpMessages();
        const uint32_t before = HeadlessGdiObjects();
        for (int i = 0; i < 100; ++i) {
            InvalidateRect(GetDlgItem(dialog, CONTROL_GRAPH_COLOR), nullptr, TRUE);
            HeadlessPumpMessages();
        }
        EXPECT_EQ(HeadlessGdiObjects(), before);
    }); // and Run finds that nothing is left
}

TEST_F(GraphOptionsTest, ClickOnAColourFieldChoosesAColour)
{
    HeadlessAddExport(COLOR_LIBRARY, COLOR_EXPORT, Export(ScriptedChooseColor));
    Run([](HWND dialog) {
        HeadlessPumpMessages();
        HeadlessClick(dialog, 1857);
        HeadlessPumpMessages();
        EXPECT_EQ(InitialColor, 0x00C000u);
        EXPECT_EQ(AskedWith.lStructSize, sizeof AskedWith);
        EXPECT_EQ(AskedWith.hwndOwner, dialog);
        EXPECT_EQ(AskedWith.Flags, 257u);
        const std::vector<uint32_t> pixels = HeadlessPixels(GetDlgItem(dialog, 1857));
        EXPECT_EQ(PixelName(pixels[pixels.size() / 2]), '8'); // red, and repainted

        COLORREF* const table = CustomTable;
        table[15] = 0x123456;
        ColorIsChosen = false;
        HeadlessClick(dialog, CONTROL_GRAPH_COLOR);
        EXPECT_EQ(CustomTable, table); // one table for all, kept
        EXPECT_EQ(CustomTable[15], 0x123456u);
    });
    EXPECT_EQ(ColorDialogs, 2u);
    EXPECT_EQ(GraphChannel[7].Color.load(), 0x0000FFu);
    EXPECT_EQ(GraphChannel[0].Color.load(), 0xFFFF00u); // cancelled
}

TEST_F(GraphOptionsTest, WithoutTheChooserNothingHappens)
{
    Run([](HWND dialog) { HeadlessClick(dialog, 1857); });
    EXPECT_EQ(GraphChannel[7].Color.load(), 0x00C000u);
    EXPECT_TRUE(HeadlessBoxes().empty());
}

// ---- Keypad devices -----------------------------------------------------------------------------------

TEST_F(GraphOptionsTest, KeypadLayoutHasTheSameControlsWithAListBox)
{
    HeadlessSetPlatformType(L"SmartPhone");
    HeadlessAddExport(L"AYGSHELL.DLL", 97, Export(ScriptedSendBack));
    Run([](HWND dialog) {
        EXPECT_TRUE(GetWindowLongW(dialog, GWL_STYLE) & static_cast<LONG>(WS_VSCROLL));
        EXPECT_EQ(HeadlessItems(dialog, CONTROL_GRAPH_TIME_SCALE).size(), 6u);
        EXPECT_EQ(HeadlessSelection(dialog, CONTROL_GRAPH_TIME_SCALE), 0);
        HeadlessChoose(dialog, CONTROL_GRAPH_TIME_SCALE, 2);
        SendMessageW(dialog, WM_HOTKEY, 0, static_cast<LPARAM>(MAKEWPARAM(0, BackKey)));
        EXPECT_EQ(HeadlessTopDialog(), dialog);
    });
    EXPECT_EQ(TimeScaleIdx.load(), 2);
    EXPECT_EQ(HIWORD(static_cast<WPARAM>(PassedBack)), BackKey);
}

// On keypads they are owner-drawn buttons, with a thicker frame if they have the focus.
TEST_F(GraphOptionsTest, KeypadColourFieldsShowTheFocus)
{
    HeadlessSetPlatformType(L"SmartPhone");
    Run([](HWND dialog) {
        for (const UINT state : {0u, ODS_FOCUS}) {
            DRAWITEMSTRUCT item = {};
            item.itemState = state;
            item.hwndItem = GetDlgItem(dialog, 1857);
            item.hDC = GetDC(item.hwndItem);
            GetClientRect(item.hwndItem, &item.rcItem);
            SendMessageW(dialog, WM_DRAWITEM, 1857, reinterpret_cast<LPARAM>(&item));
            ReleaseDC(item.hwndItem, item.hDC);
            const std::vector<uint32_t> pixels = HeadlessPixels(item.hwndItem);
            const size_t width = static_cast<size_t>(item.rcItem.right);
            ASSERT_GE(pixels.size(), 8 * width);
            EXPECT_EQ(pixels[0], 0u);
            EXPECT_EQ(PixelName(pixels[2 * width + 2]) == '7', state == 0);
            EXPECT_EQ(PixelName(pixels[4 * width + 4]), '7');
        }
        DRAWITEMSTRUCT none = {};
        SendMessageW(dialog, WM_DRAWITEM, 1,
                     reinterpret_cast<LPARAM>(&none)); // no field's, so nothing happens
    });
}

TEST_F(GraphOptionsTest, KeypadEditsTakeNumbers)
{
    constexpr UINT SetInputMode = 0xDE;
    uint32_t edits = 0;
    for (const LPARAM mode : {0, 2}) {
        StartAfresh();
        StorePort();
        if (mode) HeadlessSetPlatformType(L"SmartPhone");
        Run([&](HWND dialog) {
            for (const int base : {CONTROL_GRAPH_VALUE_MIN, CONTROL_GRAPH_VALUE_MAX, CONTROL_GRAPH_PIXEL_MIN,
                                   CONTROL_GRAPH_PIXEL_MAX, CONTROL_GRAPH_VALUE_ZERO})
                for (int i = 0; i < 10; ++i, ++edits)
                    EXPECT_EQ(HeadlessIgnoredMessage(dialog, base + i, SetInputMode), mode) << base + i;
        });
    }
    EXPECT_EQ(edits, 100u);
}

// Otherwise a sign, or the last digit, has no room.
TEST_F(GraphOptionsTest, EditsHaveMarginsOfOnePixel)
{
    constexpr UINT SetMargins = 0xD3;
    Run([&](HWND dialog) {
        for (const int base : {CONTROL_GRAPH_VALUE_MIN, CONTROL_GRAPH_VALUE_MAX, CONTROL_GRAPH_PIXEL_MIN,
                               CONTROL_GRAPH_PIXEL_MAX, CONTROL_GRAPH_VALUE_ZERO})
            for (int i = 0; i < 10; ++i)
                EXPECT_EQ(HeadlessIgnoredMessage(dialog, base + i, SetMargins), 0x10001) << base + i;
    });
}

struct Place {
    int x, y, width, height;
};

TEST_F(GraphOptionsTest, BothLayoutsHoldEveryControlOnceAndNoneOverlaps)
{
    for (const uint32_t offset : {0u, static_cast<uint32_t>(KEYPAD_LAYOUT)}) {
        HeadlessTemplate layout;
        ASSERT_TRUE(HeadlessFindTemplate(DIALOG_GRAPH_OPTIONS + offset, layout));
        EXPECT_EQ(layout.caption, L"Graph Options");
        std::map<int, int> ids;
        for (const HeadlessTemplateControl& control : layout.controls) {
            ++ids[control.id];
            EXPECT_GE(control.x, 0);
            EXPECT_LE(control.x + control.width, layout.width) << control.id;
            EXPECT_LE(control.id == CONTROL_GRAPH_TIME_SCALE && !offset ? control.y + 13
                                                                        : control.y + control.height,
                      layout.height)
                << control.id;
        }
        for (const int base :
             {CONTROL_GRAPH_NAME, CONTROL_GRAPH_VALUE_MIN, CONTROL_GRAPH_VALUE_MAX, CONTROL_GRAPH_PIXEL_MIN,
              CONTROL_GRAPH_PIXEL_MAX, CONTROL_GRAPH_COLOR, CONTROL_GRAPH_VISIBLE, CONTROL_GRAPH_VALUE_ZERO})
            for (int i = 0; i < 10; ++i) EXPECT_EQ(ids[base + i], 1) << base + i;
        for (const int id : {CONTROL_GRAPH_HELP, CONTROL_GRAPH_ZERO, CONTROL_GRAPH_SHOW, CONTROL_GRAPH_HIDE,
                             CONTROL_GRAPH_SAVE, CONTROL_GRAPH_TIME_SCALE, CONTROL_GRAPH_LINES})
            EXPECT_EQ(ids[id], 1) << id;

        std::vector<Place> places;
        for (const HeadlessTemplateControl& control : layout.controls) {
            const int height = control.id == CONTROL_GRAPH_TIME_SCALE && !offset ? 13 : control.height;
            const Place place = {control.x, control.y, control.width, height};
            for (const Place& other : places)
                EXPECT_FALSE(place.x < other.x + other.width && other.x < place.x + place.width &&
                             place.y < other.y + other.height && other.y < place.y + place.height)
                    << control.id << " at " << place.x << ',' << place.y;
            places.push_back(place);
        }
    }
    HeadlessTemplate layout;
    ASSERT_TRUE(HeadlessFindTemplate(DIALOG_GRAPH_OPTIONS, layout));
    EXPECT_LE(layout.width, 160);  // 240 pixels
    EXPECT_LE(layout.height, 164); // 268 pixels, what caption and menu bar leave of 320
}

} // namespace
