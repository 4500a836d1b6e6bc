// SPDX-License-Identifier: MIT
#include "tests/unit/failures/failure_loop.h"

#include <csignal>
#include <cstdio>
#include <utility>

#include "link/link_state.h"
#include "link/receiver_log.h"
#include "link/serial_port.h"
#include "link/write_queue.h"
#include "platform/start.h"
#include "resources/resource_ids.h"
#include "tests/support/fresh_program.h"
#include "tests/support/settings_key.h"
#include "tests/support/whole_program.h"
#include "ui/active_dialog.h"

namespace
{

constexpr DWORD Error = ERROR_GEN_FAILURE;
constexpr uint64_t LongestMilliseconds = 3600 * 1000; // no action of the user takes an hour

constexpr uint32_t ReaderRest = 200; // milliseconds, more than the reader thread rests
constexpr uint32_t Settle = 100;     // milliseconds

// For a very frequent call, the first and the last ones are enough.
constexpr uint32_t FirstOfMany = 16, LastOfMany = 8;

struct Fault {
    std::string call; // "": none
    uint32_t number;
    FailMode mode;
};

// A hang aborts the process; this adds the action during which it happened.
char Doing[200];

void SayWhatWasDone(int)
{
    std::fprintf(stderr, "while: %s\n", Doing);
}

void Announce(const std::string& name, const Fault& fault)
{
    std::snprintf(Doing, sizeof Doing, "%s, %s %u %s", name.c_str(), fault.call.c_str(), fault.number,
                  fault.mode == FailMode::Once ? "once" : "always");
    std::signal(SIGABRT, SayWhatWasDone);
}

std::string Narrow(const std::wstring& text)
{
    std::string out;
    for (const wchar_t c : text)
        if (c == '\n')
            out += '/';
        else if (c >= ' ')
            out += c < 0x80 ? static_cast<char>(c) : '?';
    return out;
}

// Each box as its caption, with its text unless that is the system's for the error; equal ones counted.
std::string TakeBoxes()
{
    const std::wstring systemText = L"Error text " + std::to_wstring(Error) + L".\r\n";
    std::string boxes, last;
    uint32_t repeated = 0;
    const auto flush = [&] {
        if (repeated == 0) return;
        boxes += (boxes.empty() ? "" : ", ") + last + (repeated > 1 ? " x" + std::to_string(repeated) : "");
    };
    for (const HeadlessBox& box : HeadlessBoxes()) {
        std::string shown = '"' + Narrow(box.caption) + '"';
        if (box.text != systemText) shown += " \"" + Narrow(box.text).substr(0, 60) + '"';
        if (!box.onUserInterfaceThread) shown += " (reader thread)";
        if (shown == last) {
            ++repeated;
            continue;
        }
        flush();
        last = shown;
        repeated = 1;
    }
    flush();
    HeadlessClearBoxes();
    return boxes.empty() ? "no box" : boxes;
}

void Add(std::string& state, const std::string& what)
{
    state += (state.empty() ? "" : ", ") + what;
}

// Checks for every action: only unusual results are printed.
std::string CommonState()
{
    std::string state;
    if (!HeadlessMainWindow()) Add(state, "no window");
    if (IsPortOpen()) Add(state, "port open");
    if (HeadlessLiveThreads() != (IsPortOpen() ? 1u : 0u))
        Add(state, std::to_string(HeadlessLiveThreads()) + " readers");
    if (LogFileHandle.load() != INVALID_HANDLE_VALUE) Add(state, "log open");
    if (ProtocolMode() != ProtocolNone) Add(state, Narrow(ProtocolName(ProtocolMode())));
    if (SearchInProgress.load()) Add(state, "SEARCHING");
    if (LinkClosing.load()) Add(state, "CLOSING");
    if (ActiveDialogKind.load() != DialogKind::None)
        Add(state, "dialog " + std::to_string(static_cast<uint32_t>(ActiveDialogKind.load())));
    if (const HWND window = HeadlessMainWindow();
        window && !ActiveDialogWindow.load() && !IsWindowEnabled(window))
        Add(state, "MAIN WINDOW DISABLED");
    return state;
}

std::string Left()
{
    std::string left;
    const auto count = [&](uint32_t number, const char* what) {
        if (number != 0) Add(left, number == 1 ? what : what + std::string("s"));
    };
    count(HeadlessLiveThreads(), "thread");
    count(HeadlessOpenHandles(), "handle");
    count(HeadlessOpenKeys(), "key");
    count(HeadlessUnfreedTexts(), "text");
    count(HeadlessGdiObjects(), "drawing object");
    return left;
}

struct Outcome {
    std::string boxes, state, again, left;
    bool operator==(const Outcome&) const = default;
};

std::string Sent()
{
    const std::string sent = std::exchange(HeadlessGetPort(3).sent, "");
    if (sent.empty()) return "";
    if (sent[0] == '$') return "sent " + sent.substr(0, sent.find('*'));
    std::string shown = "sent";
    for (const char c : sent) {
        char hex[4];
        std::snprintf(hex, sizeof hex, " %02X", static_cast<unsigned>(static_cast<uint8_t>(c)));
        shown += hex;
    }
    return shown;
}

std::string Observe(const UserAction& action)
{
    std::string state = action.state ? action.state() : "";
    if (const std::string sent = Sent(); !sent.empty()) Add(state, sent);
    if (const std::string common = CommonState(); !common.empty()) Add(state, common);
    return state.empty() ? "-" : state;
}

std::vector<HeadlessCallCount> Calls; // made by the action when nothing fails
bool Counting = false, Armed = false;

void Arm(const Fault& fault)
{
    Armed = true;
    Counting = fault.call.empty();
    if (Counting)
        HeadlessCountCalls();
    else
        HeadlessFailCall(fault.call.c_str(), fault.number, Error, fault.mode);
}

Outcome Try(const UserAction& action, const Fault& fault)
{
    Announce(action.name, fault);
    Outcome outcome;
    StartAfresh();
    HeadlessSetTimeLimit(LongestMilliseconds);
    HeadlessSetClientSize(240, 294);
    HeadlessAddPort(3);
    HeadlessRegistrySetDword(HKEY_LOCAL_MACHINE, SettingsKey, L"CommPortIdx", 3);
    const auto run = [&] {
        if (action.prepare) action.prepare();
        HeadlessPumpMessages();
        HeadlessClearBoxes();
        Sent();
        Arm(fault);
        action.act();
        ActionIsOver();
        HeadlessPass(Settle); // posted boxes, and what the reader thread has begun
        outcome.boxes = TakeBoxes();
        outcome.state = Observe(action);
        if (action.finish) action.finish();
        Sent();
        HeadlessClearBoxes();
        action.act();
        HeadlessPass(Settle);
        const std::string boxes = TakeBoxes();
        outcome.again = (boxes == "no box" ? "" : boxes + "; ") + Observe(action);
        if (action.finish) action.finish();
    };
    HeadlessUser([&] {
        if (action.within)
            InDialog(*action.within, [&](HWND) { run(); });
        else
            run();
        if (HeadlessMainWindow()) HeadlessCommand(HeadlessMainWindow(), COMMAND_EXIT);
    });
    RunProgram(nullptr, L"", SW_SHOWNORMAL);
    CloseEverything();
    HeadlessPass(ReaderRest); // a reader that nobody waits for ends
    outcome.left = Left();
    return outcome;
}

// A process that starts, is checked when it waits for the user or when it has ended itself, and is then
// ended.
void RunOnce(const std::vector<StoredSetting>& settings, const wchar_t* commandLine,
             const std::function<void()>& beginning, const std::function<void()>& look)
{
    StartAfresh();
    HeadlessSetTimeLimit(LongestMilliseconds);
    HeadlessReceive(HeadlessAddPort(3), "$GPXYZ*61\r\n");
    for (const auto& [name, value] : settings)
        HeadlessRegistrySetDword(HKEY_LOCAL_MACHINE, SettingsKey, name, value);
    bool seen = false;
    const auto lookOnce = [&] {
        if (!std::exchange(seen, true)) look();
    };
    constexpr uint32_t Milliseconds = 300; // for the receiver's message
    HeadlessUser(
        [&] {
            lookOnce();
            if (HeadlessTopDialog()) HeadlessCommand(HeadlessTopDialog(), IDCANCEL);
            HeadlessUser([] {
                if (HeadlessMainWindow()) HeadlessCommand(HeadlessMainWindow(), COMMAND_EXIT);
            });
        },
        Milliseconds);
    beginning();
    RunProgram(nullptr, commandLine, SW_SHOWNORMAL);
    lookOnce();
    if (HeadlessMainWindow()) DestroyWindow(HeadlessMainWindow()); // as the system does when the process ends
    HeadlessPumpMessages();
    CloseEverything();
    HeadlessPass(ReaderRest);
}

Outcome TryStart(const std::string& name, std::vector<StoredSetting> settings, const wchar_t* commandLine,
                 const Fault& fault)
{
    Announce(name, fault);
    Outcome outcome;
    UserAction start;
    start.state = [] {
        const HWND window = HeadlessMainWindow();
        return (HeadlessTopDialog() ? "greeting, " : "") +
               (window ? std::to_string(HeadlessMenu(window).size()) + " menu entries, " +
                             std::to_string(HeadlessPaintedTexts(window).size()) + " lines"
                       : std::string("not running"));
    };
    RunOnce(
        settings, commandLine, [&] { Arm(fault); },
        [&] {
            ActionIsOver();
            outcome.boxes = TakeBoxes();
            outcome.state = Observe(start);
        });
    outcome.left = Left();
    for (StoredSetting& setting : settings)
        HeadlessRegistryGetDword(HKEY_LOCAL_MACHINE, SettingsKey, setting.name, setting.value);
    RunOnce(
        settings, commandLine, [] {},
        [&] {
            const std::string boxes = TakeBoxes();
            outcome.again = (boxes == "no box" ? "" : boxes + "; ") + Observe(start);
        });
    return outcome;
}

std::string Ordinals(const std::vector<uint32_t>& numbers)
{
    std::string text;
    for (size_t i = 0; i < numbers.size(); ++i) {
        size_t last = i;
        while (last + 1 < numbers.size() && numbers[last + 1] == numbers[last] + 1) ++last;
        text += (text.empty() ? "" : ",") + std::to_string(numbers[i]);
        if (last != i) text += "-" + std::to_string(numbers[last]);
        i = last;
    }
    return text;
}

// The parts of an outcome that differ from those without a fault; "" when none does.
std::string Line(const Outcome& outcome, const Outcome& usual)
{
    if (outcome == usual) return "";
    std::string line = outcome.boxes == usual.boxes ? "same boxes" : outcome.boxes;
    line += " | " + (outcome.state == usual.state ? "same state" : outcome.state);
    line += " | " + (outcome.again == usual.again ? "again same" : "AGAIN " + outcome.again);
    if (outcome.left != usual.left) line += " | left: " + (outcome.left.empty() ? "nothing" : outcome.left);
    return line;
}

std::string Lines(const std::string& name, const std::function<Outcome(const Fault&)>& attempt)
{
    const Outcome usual = attempt({"", 0, FailMode::Once});
    std::string text = "== " + name + ": " + usual.boxes + " | " + usual.state + " | again: " + usual.again +
                       (usual.left.empty() ? "" : " | left: " + usual.left) + '\n';
    for (const HeadlessCallCount& made : std::vector(Calls))
        for (const FailMode mode : {FailMode::Once, FailMode::FromHereOn}) {
            std::vector<std::pair<std::string, std::vector<uint32_t>>>
                outcomes; // in the order of their first
            for (uint32_t n = 1; n <= made.count; ++n) {
                if (n > FirstOfMany && n + LastOfMany <= made.count) continue;
                const std::string line = Line(attempt({made.call, n, mode}), usual);
                auto place = outcomes.begin();
                while (place != outcomes.end() && place->first != line) ++place;
                if (place == outcomes.end()) place = outcomes.insert(place, {line, {}});
                place->second.push_back(n);
            }
            for (const auto& [line, numbers] : outcomes) {
                if (line.empty()) continue;
                text += made.call + ' ' + Ordinals(numbers) +
                        (mode == FailMode::Once ? " once: " : " always: ") + line + '\n';
            }
        }
    return text + '\n';
}

} // namespace

void ActionIsOver()
{
    if (std::exchange(Counting, false)) Calls = HeadlessCountedCalls();
    if (std::exchange(Armed, false)) HeadlessClearFaults();
}

std::string FailureLines(const UserAction& action)
{
    return Lines(action.name, [&](const Fault& fault) { return Try(action, fault); });
}

std::string StartFailureLines(const std::string& name, const std::vector<StoredSetting>& settings,
                              const wchar_t* commandLine)
{
    return Lines(name, [&](const Fault& fault) { return TryStart(name, settings, commandLine, fault); });
}
