// SPDX-License-Identifier: MIT
// The effect of every failing platform call on every action of the user, compared with texts that were
// checked by a person. TORAVANE_REWRITE_GOLDEN=1 writes them again.
#include "tests/unit/failures/failure_loop.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <utility>

#include "graph/channels.h"
#include "graph/recorder.h"
#include "graph/surface.h"
#include "link/link_state.h"
#include "link/reader_thread.h"
#include "link/receiver_log.h"
#include "link/serial_port.h"
#include "resources/resource_ids.h"
#include "tests/support/whole_program.h"
#include "tests/unit/support/product_test.h"
#include "ui/page_lines.h"

namespace
{

constexpr const DialogEntry& Communication = Dialogs[1];

// Compares line by line, so that a difference is seen at once.
void ExpectGolden(const std::string& name, const std::string& text)
{
    const std::string path = std::string(GOLDEN) + '/' + name + ".txt";
    if (std::getenv("TORAVANE_REWRITE_GOLDEN")) {
        std::ofstream(path) << text;
        return;
    }
    std::ifstream file(path);
    ASSERT_TRUE(file) << path;
    std::istringstream lines(text);
    std::string wanted, found, heading;
    uint32_t number = 0;
    for (;;) {
        const bool more = static_cast<bool>(std::getline(file, wanted));
        const bool got = static_cast<bool>(std::getline(lines, found));
        ++number;
        ASSERT_EQ(got, more) << path << ':' << number << "\n" << (got ? found : wanted);
        if (!got) return;
        if (found.starts_with("==")) heading = found;
        ASSERT_EQ(found, wanted) << path << ':' << number << " under\n" << heading;
    }
}

// ---- Start --------------------------------------------------------------------------------------------

TEST(Failures, Start)
{
    const std::vector<StoredSetting> port = {{L"CommPortIdx", 3}, {L"BaudrateIdx", 2}};
    const std::vector<StoredSetting> rates = {
        {L"CommPortIdx", 3}, {L"BaudrateIdx", 2}, {L"NmeaBaudrateIdx", 2}, {L"SirfBaudrateIdx", 5}};
    ExpectGolden("start", StartFailureLines("first start", {}, L"") +
                              StartFailureLines("start with port and rate", port, L"") +
                              StartFailureLines("start with a command line", rates, L"StaticNavigationOn"));
}

// ---- Communication ------------------------------------------------------------------------------------

const std::string Sentences = Sentence("GPVTG,91.5,T,,M,20,N,,K,A");

std::string CommunicationState()
{
    const HWND dialog = HeadlessTopDialog();
    if (!dialog) return "no dialog";
    std::string enabled;
    const std::pair<int, const char*> buttons[] = {{CONTROL_COM_OPEN, "Open"},
                                                   {CONTROL_COM_CLOSE, "Close"},
                                                   {CONTROL_COM_FIND_BAUD, "Find"},
                                                   {CONTROL_COM_LOG_OPEN, "Log"},
                                                   {CONTROL_COM_LOG_CLOSE, "EndLog"}};
    for (const auto& [control, name] : buttons)
        if (HeadlessEnabled(dialog, control)) enabled += (enabled.empty() ? "" : "+") + std::string(name);
    std::string protocol;
    for (const wchar_t c : HeadlessText(dialog, CONTROL_COM_PROTOCOL)) protocol += static_cast<char>(c);
    return enabled + " '" + protocol + "' rate " +
           std::to_string(HeadlessSelection(dialog, CONTROL_COM_BAUDRATE));
}

HWND Dialog()
{
    return HeadlessTopDialog();
}

// A receiver on COM3, the port chosen in the dialog.
void PrepareReceiver()
{
    constexpr uint32_t ByteMicroseconds = 10000;
    HeadlessStream(HeadlessGetPort(3), Sentences, ByteMicroseconds);
    HeadlessChoose(Dialog(), CONTROL_COM_PORT, 3);
    HeadlessChoose(Dialog(), CONTROL_COM_BAUDRATE, 2);
}

void Click(int control)
{
    if (Dialog()) HeadlessClick(Dialog(), control);
}

std::function<void()> Clicks(int control)
{
    return [control] { Click(control); };
}

UserAction Open()
{
    return {"open",
            &Communication,
            PrepareReceiver,
            Clicks(CONTROL_COM_OPEN),
            CommunicationState,
            Clicks(CONTROL_COM_CLOSE)};
}

TEST(Failures, OpenAndClose)
{
    UserAction close = Open();
    close.name = "close";
    close.prepare = [] {
        PrepareReceiver();
        Click(CONTROL_COM_OPEN);
    };
    std::swap(close.act, close.finish);
    ExpectGolden("open_close", FailureLines(Open()) + FailureLines(close));
}

TEST(Failures, Report)
{
    UserAction report = Open();
    report.name = "open with a report";
    report.prepare = [] {
        PrepareReceiver();
        HeadlessSetFolder(CSIDL_PERSONAL, L"\\My Documents");
    };
    report.state = [] {
        return CommunicationState() + ", report of " +
               std::to_string(HeadlessFileContent(L"\\My Documents\\COM3;.txt").size());
    };
    ExpectGolden("report", FailureLines(report));
}

TEST(Failures, Search)
{
    UserAction search = Open();
    search.name = "find port and baud";
    search.prepare = [] {
        HeadlessGetPort(3).deviceRate = 4800;
        PrepareReceiver();
    };
    search.act = Clicks(CONTROL_COM_FIND_PORT);
    ExpectGolden("search", FailureLines(search));
}

TEST(Failures, Log)
{
    const auto choosePath = [] { HeadlessAnswerSaveDialog(L"\\a.txt", 1); };
    const UserAction open{"open log",         &Communication,
                          choosePath,         Clicks(CONTROL_COM_LOG_OPEN),
                          CommunicationState, Clicks(CONTROL_COM_LOG_CLOSE)};
    UserAction close = open;
    close.name = "close log";
    close.prepare = [=] {
        choosePath();
        Click(CONTROL_COM_LOG_OPEN);
    };
    std::swap(close.act, close.finish);
    UserAction write;
    write.name = "three bytes into the log";
    write.prepare = [=] {
        choosePath();
        LogOpen();
    };
    write.act = [] {
        for (const uint8_t b : {'1', '2', '3'}) RouteReceived(&b, 1);
    };
    write.state = [] { return std::to_string(HeadlessFileContent(L"\\a.txt").size()) + " bytes"; };
    write.finish = [=] {
        LogClose();
        LogOpen();
    };
    ExpectGolden("log", FailureLines(open) + FailureLines(close) + FailureLines(write));
}

// ---- Reception and painting ---------------------------------------------------------------------------

uint32_t Second;

void ReceiveFix()
{
    const std::string time = std::to_string(120000 + Second++ % 60);
    const std::string fix =
        Sentence("GPGGA," + time + ".000,3723.2475,N,12158.3416,W,1,07,1.0,9.0,M,,,,0000");
    RouteReceived(reinterpret_cast<const uint8_t*>(fix.data()), static_cast<uint32_t>(fix.size()));
}

std::string Shown()
{
    const HWND window = HeadlessMainWindow();
    return std::to_string(GraphSampleCount.load()) + " samples, " +
           std::to_string(HeadlessPaintedTexts(window).size()) + " lines";
}

UserAction Paint(const std::string& name, bool chart)
{
    UserAction paint;
    paint.name = name;
    paint.prepare = [chart] {
        Second = 0;
        if (chart) ShowChart();
        ReceiveFix();
    };
    paint.act = [] {
        InvalidateRect(HeadlessMainWindow(), nullptr, TRUE);
        SendMessageW(HeadlessMainWindow(), WM_PAINT, 0, 0);
    };
    paint.state = Shown;
    return paint;
}

TEST(Failures, ReceptionAndPaint)
{
    UserAction first;
    first.name = "first message";
    first.prepare = [] { OpenPortWithoutReader(); };
    first.act = [] {
        Second = 0;
        ReceiveFix();
    };
    first.state = Shown;
    first.finish = ResetProtocolMode;
    UserAction sample;
    sample.name = "chart sample";
    sample.prepare = [] {
        ShowChart();
        Second = 0;
        ReceiveFix();
    };
    sample.act = ReceiveFix;
    sample.state = Shown;
    ExpectGolden("reception_paint", FailureLines(first) + FailureLines(sample) +
                                        FailureLines(Paint("paint the text page", false)) +
                                        FailureLines(Paint("paint the chart", true)));
}

// ---- Dialogs ------------------------------------------------------------------------------------------

// The content of a dialog, as numbers: enough to see that something is missing.
std::string Contents(HWND dialog, const DialogEntry& entry)
{
    size_t texts = 0, entries = 0, selected = 0, checked = 0, enabled = 0;
    for (const HeadlessTemplateControl& control : ControlsOf(entry)) {
        texts += HeadlessText(dialog, control.id).size();
        entries += HeadlessItems(dialog, control.id).size();
        selected += HeadlessSelection(dialog, control.id) >= 0;
        checked += HeadlessCheck(dialog, control.id) == BST_CHECKED;
        enabled += HeadlessEnabled(dialog, control.id);
    }
    return std::to_string(texts) + " characters, " + std::to_string(entries) + " entries, " +
           std::to_string(selected) + " selected, " + std::to_string(checked) + " checked, " +
           std::to_string(enabled) + " enabled";
}

void PrepareProtocolFlags(const DialogEntry& entry)
{
    const bool sirf = entry.resource >= DIALOG_SIRF_ADVANCED_POWER_MANAGEMENT &&
                      entry.resource != DIALOG_ABOUT && entry.resource != DIALOG_GRAPH_OPTIONS;
    NmeaRecognised.store(!sirf);
    SirfRecognised.store(sirf);
}

void PrepareProtocol(const DialogEntry& entry)
{
    OpenPortWithoutReader();
    PrepareProtocolFlags(entry);
}

std::string NameOf(const DialogEntry& entry)
{
    HeadlessTemplate found;
    HeadlessFindTemplate(entry.resource, found);
    return std::string(found.caption.begin(), found.caption.end());
}

TEST(Failures, DialogsOpening)
{
    std::string text;
    for (const DialogEntry& entry : Dialogs) {
        std::string seen;
        UserAction open;
        open.name = "open " + NameOf(entry);
        open.prepare = [&] { PrepareProtocol(entry); };
        open.act = [&] {
            seen = "did not open";
            InDialog(entry, [&](HWND dialog) {
                ActionIsOver();
                seen = Contents(dialog, entry);
            });
        };
        open.state = [&] { return seen; };
        text += FailureLines(open);
    }
    ExpectGolden("dialogs_open", text);
}

constexpr DWORD ButtonType = 0xF, LastPushButtonType = 1;

bool IsPushButton(const HeadlessTemplateControl& control)
{
    return control.className == L"BUTTON" && (control.style & ButtonType) <= LastPushButtonType;
}

// Makes every invalid field valid: the first entry of a list, a 10 in an edit, a ticked box, the first of
// several options.
void FillIn(HWND dialog, const DialogEntry& entry)
{
    constexpr DWORD ThreeStates = 5, AutoThreeStates = 6, AutoRadioButton = 9;
    bool chosen = false;
    for (const HeadlessTemplateControl& control : ControlsOf(entry)) {
        const bool list = control.className == L"COMBOBOX" || control.className == L"LISTBOX";
        const bool edit = control.className == L"EDIT", button = control.className == L"BUTTON";
        const DWORD type = control.style & ButtonType;
        if (list && HeadlessSelection(dialog, control.id) < 0 && !HeadlessItems(dialog, control.id).empty())
            HeadlessChoose(dialog, control.id, 0);
        if (edit && HeadlessText(dialog, control.id).empty()) HeadlessType(dialog, control.id, L"10");
        if (button && (type == ThreeStates || type == AutoThreeStates))
            for (int click = 0; click < 2 && HeadlessCheck(dialog, control.id) != BST_CHECKED; ++click)
                HeadlessClick(dialog, control.id);
        if (button && type == AutoRadioButton && !std::exchange(chosen, true))
            HeadlessClick(dialog, control.id);
    }
    struct OtherText {
        int control;
        const wchar_t* text;
    };
    constexpr OtherText OtherTexts[] = {{CONTROL_TRICKLE_ON_TIME, L"300"},
                                        {CONTROL_DGPS_BEACON_FREQUENCY, L"300000"},
                                        {CONTROL_DGPS_BEACON_BIT_RATE, L"25"}};
    for (const OtherText& other : OtherTexts)
        if (HeadlessHasControl(dialog, other.control)) HeadlessType(dialog, other.control, other.text);
}

int FirstButton(const DialogEntry& entry)
{
    for (const HeadlessTemplateControl& control : ControlsOf(entry))
        if (IsPushButton(control)) return control.id;
    return 0;
}

// Every button of every dialog, except those that close it and those of the Communication dialog, which have
// their own tests.
TEST(Failures, DialogsButtons)
{
    std::string text;
    for (const DialogEntry& entry : Dialogs) {
        if (&entry == &Communication) continue;
        for (const HeadlessTemplateControl& button : ControlsOf(entry)) {
            if (!IsPushButton(button) || button.id == IDOK || button.id == IDCANCEL) continue;
            UserAction press;
            press.name = NameOf(entry) + ", " + std::string(button.text.begin(), button.text.end());
            press.within = &entry;
            press.prepare = [&] {
                PrepareProtocol(entry);
                FillIn(Dialog(), entry);
                if (!HeadlessEnabled(Dialog(), button.id)) Click(FirstButton(entry)); // which enables it
            };
            press.act = Clicks(button.id);
            press.state = [&] { return Dialog() ? Contents(Dialog(), entry) : std::string("closed"); };
            press.finish = [&] { PrepareProtocolFlags(entry); };
            text += FailureLines(press);
        }
    }
    ExpectGolden("dialogs_buttons", text);
}

} // namespace
