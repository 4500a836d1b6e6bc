// SPDX-License-Identifier: MIT
#include "tests/device/scenario.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "resources/resource_ids.h"
#include "tests/device/receiver_line.h"
#include "tests/device/transcript.h"
#include "tests/support/menu_dialogs.h"
#include "tests/support/settings_key.h"
#include "tests/unit/nmea/dialogs/dialog_rows.h"
#include "tests/unit/sirf/dialogs/field_cases.h"
#include "ui/shell_libraries.h"

namespace
{

constexpr uint32_t PortNumber = 3;
constexpr uint32_t StartMs = 3000; // until the port is open and everything is painted

enum class Platform : uint8_t { Plain, PocketPc, Smartphone };
constexpr const char* PlatformNames[] = {"plain", "pocketpc", "smartphone"};

// ---- The shell and the colour chooser, as far as the program uses them --------------------------------

BOOL InitShellDialog(ShellInitDialog* request)
{
    Print("shell: dialog |%s| mask %X flags %X", Readable(HeadlessTitle(request->dialog)).c_str(),
          request->mask, request->flags);
    return TRUE;
}

BOOL CreateShellBar(ShellMenuBar* bar)
{
    Print("shell: menu bar %u of |%s| flags %X size %s", bar->menu,
          Readable(HeadlessTitle(bar->parent)).c_str(), bar->flags,
          bar->size == sizeof *bar ? "right" : "wrong");
    bar->bar = CommandBar_Create(bar->instance, bar->parent, 1);
    CommandBar_InsertMenubar(bar->bar, bar->instance, static_cast<WORD>(bar->menu), 0);
    return bar->bar != nullptr;
}

BOOL HandleSettingChange(HWND window, WPARAM wParam, LPARAM, ShellActivateInfo* info)
{
    Print("shell: setting change %zu of |%s| size %s flags %X", static_cast<size_t>(wParam),
          Readable(HeadlessTitle(window)).c_str(), info->size == sizeof *info ? "right" : "wrong",
          info->flags);
    info->flags += 1;
    return TRUE;
}

void SendBack(UINT message, WPARAM wParam, LPARAM lParam)
{
    Print("shell: back key, message %X %zX %zX", message, static_cast<size_t>(wParam),
          static_cast<size_t>(lParam));
}

BOOL ChooseAColor(CHOOSECOLORW* request)
{
    Print("colour chooser: |%s| %06X flags %X custom %06X size %s",
          Readable(HeadlessTitle(request->hwndOwner)).c_str(), request->rgbResult, request->Flags,
          request->lpCustColors[15], request->lStructSize == sizeof *request ? "right" : "wrong");
    request->rgbResult = (request->rgbResult + 0x102030) & 0xFFFFFF;
    request->lpCustColors[15] += 1;
    return TRUE;
}

template <typename Procedure> FARPROC Export(Procedure procedure)
{
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(procedure));
}

// The text page's font is the same in every form of the program with this one.
void UsePlatform(Platform platform)
{
    HeadlessSetScreenFont(6, 14);
    HeadlessSetFolder(CSIDL_PERSONAL, L"\\My Documents");
    HeadlessSetFolder(CSIDL_APPDATA, L"\\Application Data");
    HeadlessSetOemInfo(L"Emulated");
    if (platform == Platform::Plain) return;
    HeadlessSetPlatformType(platform == Platform::PocketPc ? L"PocketPC" : L"SmartPhone");
    HeadlessAddExport(COLOR_LIBRARY, COLOR_EXPORT, Export(ChooseAColor));
    HeadlessAddExport(L"AYGSHELL.DLL", L"SHInitDialog", Export(InitShellDialog));
    HeadlessAddExport(L"AYGSHELL.DLL", L"SHCreateMenuBar", Export(CreateShellBar));
    HeadlessAddExport(L"AYGSHELL.DLL", 83, Export(HandleSettingChange));
    HeadlessAddExport(L"AYGSHELL.DLL", 97, Export(SendBack));
}

// ---- Common to all ------------------------------------------------------------------------------------

constexpr int32_t RateIndex(uint32_t rate)
{
    constexpr uint32_t rates[] = {1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200};
    return static_cast<int32_t>(std::find(std::begin(rates), std::end(rates), rate) - std::begin(rates));
}

void Store(const wchar_t* name, int32_t value)
{
    HeadlessRegistrySetDword(HKEY_LOCAL_MACHINE, SettingsKey, name, static_cast<uint32_t>(value));
}

HeadlessPort& StorePort(uint32_t rate)
{
    Store(L"CommPortIdx", PortNumber);
    Store(L"BaudrateIdx", RateIndex(rate));
    return HeadlessAddPort(PortNumber);
}

void Exit()
{
    HeadlessCommand(HeadlessMainWindow(), COMMAND_EXIT);
}

// Runs the program, and prints what remains of it.
void RunAndPrint(const wchar_t* commandLine, HeadlessPort* port)
{
    const int exitCode = RunProgramUnderTest(commandLine);
    for (int i = 0; i < 100 && HeadlessLiveThreads() != 0 && port && port->isOpen; ++i) Sleep(20);
    Sleep(200);
    PrintNews(port);
    Print("exit code %d after %llu ms", exitCode, static_cast<unsigned long long>(HeadlessElapsed()));
    if (port)
        Print("port: %u opens, %u closes, %zu bytes sent", port->opens, port->closes, port->sent.size());
    PrintRegistry();
    PrintLeftovers();
}

void Pass(uint32_t milliseconds)
{
    HeadlessPass(milliseconds);
}

// ---- Start and end ------------------------------------------------------------------------------------

uint32_t Layout(Platform platform)
{
    return platform == Platform::Smartphone ? KEYPAD_LAYOUT : 0;
}

// Every command of the menu must have its dialog among the scenarios.
void CheckMenu(HWND window)
{
    for (const std::wstring& line : HeadlessMenu(window)) {
        const auto id = static_cast<uint32_t>(std::stoul(line.substr(line.find(L' '))));
        const bool known = id == 0 || id == COMMAND_EXIT ||
                           std::any_of(std::begin(Dialogs), std::end(Dialogs),
                                       [&](const auto& row) { return row.command == id; });
        if (!known) {
            std::fprintf(stderr, "the menu has a command without a scenario: %u\n", id);
            std::exit(1);
        }
    }
}

// The first start, which greets the user, who looks around and leaves.
void RunStart(Platform platform)
{
    UsePlatform(platform);
    HeadlessUser([platform] {
        const HWND dialog = HeadlessTopDialog();
        PrintDialog(dialog, DIALOG_ABOUT + Layout(platform));
        SendMessageW(dialog, WM_HOTKEY, 0, static_cast<LPARAM>(MAKEWPARAM(0, 27)));
        HeadlessCommand(dialog, IDOK);
    });
    HeadlessUser([] {
        const HWND window = HeadlessMainWindow();
        PrintMainWindow();
        CheckMenu(window);
        SendMessageW(window, WM_SETTINGCHANGE, 47, reinterpret_cast<LPARAM>(L"Screen"));
        SendMessageW(window, WM_SETTINGCHANGE, 48, 0);
        SetWindowTextW(window, L"Another title");
        wchar_t title[64] = L"";
        GetWindowTextW(window, title, 64);
        Print("title |%s|", Readable(title).c_str());
        HeadlessKey(window, 0x26); // the chart, of which there is nothing yet
    });
    HeadlessUser(PrintMainWindow, 100);
    HeadlessUser(Exit);
    RunAndPrint(L"", nullptr);
}

// A second one while the first runs brings that one to the front.
void RunSecond()
{
    UsePlatform(Platform::Plain);
    WNDCLASSW first = {};
    first.lpszClassName = L"Toravane";
    RegisterClassW(&first);
    const HWND window = CreateWindowExW(0, L"Toravane", L"Toravane", WS_VISIBLE, 0, 0, 100, 100, nullptr,
                                        nullptr, nullptr, nullptr);
    RunAndPrint(L"", nullptr);
    Print("in front: %s", HeadlessBroughtToFront() == window ? "the first" : "no");
}

// ---- Logs ---------------------------------------------------------------------------------------------

// Time of a byte on the line. Slower than any receiver, so that time passes in a short log too.
constexpr uint32_t ByteMicroseconds = 1000;

std::string NameOf(const std::string& path)
{
    return std::filesystem::path(path).filename().string();
}

std::string ReadFileOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void RunLog(const std::string& path)
{
    const std::string bytes = ReadFileOf(path);
    UsePlatform(Platform::Plain);
    HeadlessPort& port = StorePort(4800);
    HeadlessReceive(port, bytes, ByteMicroseconds);
    const auto middle = static_cast<uint32_t>(bytes.size() / 2 * ByteMicroseconds / 1000);
    HeadlessUser([] { HeadlessKey(HeadlessMainWindow(), 0x26); }, StartMs); // the chart
    HeadlessUser(PrintTexts, middle);
    HeadlessUser(
        [&port] {
            PrintPixels();
            PrintNews(&port);
            HeadlessKey(HeadlessMainWindow(), 0x26); // back to the page
        },
        middle);
    HeadlessUser(PrintMainWindow, 100);
    HeadlessUser([&port, bytes] { HeadlessReceive(port, bytes, 100); }); // once more, faster, on the page
    HeadlessUser(PrintMainWindow, static_cast<uint32_t>(bytes.size() / 10) + 200);
    HeadlessUser(Exit);
    RunAndPrint(L"", &port);
}

// A receiver that never pauses, at the highest rate.
constexpr int StreamRepeats = 20;

void RunStream(const std::string& path, bool showsChart)
{
    constexpr uint32_t HighestRateByteMicroseconds = 87;
    std::string bytes;
    for (int i = 0; i < StreamRepeats; ++i) bytes += ReadFileOf(path);
    UsePlatform(Platform::Plain);
    HeadlessPort& port = StorePort(115200);
    if (showsChart) HeadlessUser([] { HeadlessKey(HeadlessMainWindow(), 0x26); }, StartMs - 1000);
    HeadlessUser([&port, bytes] { HeadlessReceive(port, bytes, HighestRateByteMicroseconds); }, 1000);
    HeadlessUser(PrintMainWindow, static_cast<uint32_t>(bytes.size() * HighestRateByteMicroseconds / 1000));
    HeadlessUser(Exit);
    RunAndPrint(L"", &port);
}

// ---- Dialogs ------------------------------------------------------------------------------------------

enum class Doing : uint8_t { Push, Check, Type, Choose, None };

constexpr DWORD OwnerDrawn = 0xB; // type of a button

Doing DoingWith(const HeadlessTemplateControl& control)
{
    constexpr DWORD TypeMask = 0xF, DropDownList = 3, Notifies = 0x100;
    std::wstring name = control.className;
    for (wchar_t& c : name) c = static_cast<wchar_t>(c >= L'A' && c <= L'Z' ? c + 32 : c);
    const DWORD type = control.style & TypeMask;
    if (name == L"button")
        return type <= 1 || type == OwnerDrawn ? Doing::Push : type == 7 ? Doing::None : Doing::Check;
    if (name == L"edit") return Doing::Type;
    if (name == L"combobox") return (type & 3) == DropDownList ? Doing::Choose : Doing::Type;
    if (name == L"listbox") return Doing::Choose;
    if (name == L"static" && (control.style & Notifies)) return Doing::Push;
    return Doing::None;
}

// Works with every control of the open dialog, and prints it after each round.
class Exercise
{
public:
    Exercise(uint32_t number, HeadlessPort& port) : Number(number), Port(port), Dialog(HeadlessTopDialog())
    {
        HeadlessFindTemplate(number, Source);
    }

    void Run()
    {
        Show("opened");
        Pass(3000);
        Show("answered");
        Each([&](const HeadlessTemplateControl& control) {
            if (DoingWith(control) == Doing::Push && (control.style & 0xF) == OwnerDrawn) Draw(control.id);
        });
        Round("as it is", [](const HeadlessTemplateControl&) {});
        for (const wchar_t* text : {L"5", L"30", L"200", L"1000", L"", L"-1", L"7.5", L"a1", L"99999999999"})
            Round(Readable(text), [&](const HeadlessTemplateControl& control) {
                if (DoingWith(control) == Doing::Type) HeadlessType(Dialog, control.id, text);
            });
        for (const bool last : {false, true})
            Round(last ? "last" : "first", [&](const HeadlessTemplateControl& control) {
                const auto count = static_cast<int>(HeadlessItems(Dialog, control.id).size());
                const Doing doing = DoingWith(control);
                if ((doing == Doing::Choose || doing == Doing::Type) && count != 0)
                    HeadlessChoose(Dialog, control.id, last ? count - 1 : 0);
            });
        for (int i = 0; i < 2; ++i)
            Round("boxes", [&](const HeadlessTemplateControl& control) {
                if (DoingWith(control) == Doing::Check) HeadlessClick(Dialog, control.id);
            });
    }

private:
    bool IsOpen() const { return HeadlessTopDialog() == Dialog; }

    void Show(const std::string& what)
    {
        Print("-- %s", what.c_str());
        PrintNews(&Port);
        if (IsOpen()) PrintDialog(Dialog, Number);
    }

    // Lets the program draw a control, as the system does when it shows one.
    void Draw(int control)
    {
        const HWND window = GetDlgItem(Dialog, control);
        for (const UINT state : {0u, ODS_FOCUS}) {
            DRAWITEMSTRUCT item = {};
            item.CtlType = 4; // a button
            item.CtlID = static_cast<UINT>(control);
            item.itemState = state;
            item.hwndItem = window;
            item.hDC = GetDC(window);
            GetClientRect(window, &item.rcItem);
            SendMessageW(Dialog, WM_DRAWITEM, item.CtlID, reinterpret_cast<LPARAM>(&item));
            ReleaseDC(window, item.hDC);
            const std::vector<uint32_t> pixels = HeadlessPixels(window);
            const auto at = [&](int x, int y) {
                return pixels.at(static_cast<size_t>(y * item.rcItem.right + x));
            };
            Print("drawn %d: edge %06X, frame %06X, middle %06X", control, at(0, 0), at(2, 2),
                  at(item.rcItem.right / 2, item.rcItem.bottom / 2));
        }
    }

    void Each(const std::function<void(const HeadlessTemplateControl&)>& act)
    {
        for (const HeadlessTemplateControl& control : Source.controls)
            if (IsOpen() && HeadlessHasControl(Dialog, control.id)) act(control);
    }

    // Fills the dialog in one way before each press of a button, some of which fill it themselves.
    void Round(const std::string& name, const std::function<void(const HeadlessTemplateControl&)>& fill)
    {
        Each([&](const HeadlessTemplateControl& control) {
            if (DoingWith(control) != Doing::Push || control.id == IDOK || control.id == IDCANCEL) return;
            Each(fill);
            if (!HeadlessClick(Dialog, control.id)) return;
            Pass(1500);
            Show(name + ", pushed " + std::to_string(control.id));
        });
    }

    uint32_t Number;
    HeadlessPort& Port;
    HWND Dialog;
    HeadlessTemplate Source;
};

void CloseDialog()
{
    if (const HWND dialog = HeadlessTopDialog()) HeadlessCommand(dialog, IDCANCEL);
}

void RunDialog(Platform platform, receiver::Protocol protocol, uint32_t command, uint32_t dialog)
{
    constexpr uint32_t Rate = 38400;
    UsePlatform(platform);
    HeadlessPort& port = StorePort(Rate);
    HeadlessAnswerSaveDialog(L"\\My Documents\\log.txt", 1);
    const uint32_t number = dialog + Layout(platform);
    const auto open = [command] { HeadlessCommand(HeadlessMainWindow(), static_cast<int>(command)); };
    {
        ReceiverLine line(port, protocol, Rate);
        HeadlessUser(open, 2 * StartMs);
        HeadlessUser([&, number] { Exercise(number, port).Run(); });
        HeadlessUser(CloseDialog);
        HeadlessUser(open, 1000);
        HeadlessUser([number] { PrintDialog(HeadlessTopDialog(), number); }, 3000);
        HeadlessUser(CloseDialog);
        HeadlessUser(
            [&port] {
                PrintNews(&port);
                PrintMainWindow();
            },
            1000);
        HeadlessUser(Exit);
        RunAndPrint(L"", &port);
    }
    for (const wchar_t* path : {L"\\My Documents\\log.txt", L"\\Application Data\\NMEA log.txt"})
        if (HeadlessFileExists(path))
            Print("file %s: %s", Readable(path).c_str(), Readable(HeadlessFileContent(path)).c_str());
}

// ---- Dialogs, with what their own tests expect --------------------------------------------------------

void Expect(bool asExpected, const std::string& what)
{
    Print("%s: %s", what.c_str(), asExpected ? "as expected" : "NOT as expected");
    if (asExpected) return;
    std::fflush(stdout);
    std::fprintf(stderr, "not as expected: %s\n", what.c_str());
    std::_Exit(1);
}

// Bytes sent to the port since the last call.
std::string TakeSent(HeadlessPort& port)
{
    static size_t seen = 0;
    const std::string sent = port.sent.substr(seen);
    seen = port.sent.size();
    return sent;
}

std::string BytesOfHex(std::string_view hex)
{
    std::string bytes, digits;
    for (const char c : hex) {
        if (c != ' ') digits += c;
        if (digits.size() < 2) continue;
        bytes += static_cast<char>(std::stoi(digits, nullptr, 16));
        digits.clear();
    }
    return bytes;
}

// The frame with other bytes at a place of its payload.
std::string FrameWith(std::string frame, size_t offset, const std::string& bytes)
{
    constexpr size_t Before = 4, Behind = 4; // start and length; checksum and end
    frame.replace(Before + offset, bytes.size(), bytes);
    unsigned sum = 0;
    for (size_t i = Before; i < frame.size() - Behind; ++i) sum += static_cast<uint8_t>(frame[i]);
    frame[frame.size() - Behind] = static_cast<char>(sum >> 8 & 0x7F);
    frame[frame.size() - Behind + 1] = static_cast<char>(sum);
    return frame;
}

void Enter(Platform platform, HWND dialog, const Entry& entry)
{
    const bool keypad = platform == Platform::Smartphone;
    switch (entry.kind) {
    case Entry::Kind::Box:
        SendDlgItemMessageW(dialog, entry.control, BM_SETCHECK, static_cast<WPARAM>(entry.number), 0);
        return;
    case Entry::Kind::Choice:
        SendDlgItemMessageW(dialog, entry.control, keypad ? LB_SETCURSEL : CB_SETCURSEL,
                            static_cast<WPARAM>(intptr_t{entry.number}), 0);
        return;
    case Entry::Kind::Text: break;
    }
    const std::vector<std::wstring> items = HeadlessItems(dialog, entry.control);
    const auto found = std::find(items.begin(), items.end(), entry.text);
    if (!keypad || items.empty())
        HeadlessType(dialog, entry.control, entry.text);
    else if (found != items.end())
        HeadlessChoose(dialog, entry.control, static_cast<int>(found - items.begin()));
}

void CheckFields(Platform platform, const DialogCase& row, HeadlessPort& port)
{
    const HWND dialog = HeadlessTopDialog();
    const std::string usual = BytesOfHex(row.frame);
    const auto set = [&](const Entry& entry) {
        Enter(platform, dialog, entry);
        TakeSent(port);
        HeadlessClearBoxes();
        HeadlessClick(dialog, row.set);
        return std::string(row.name) + ", control " + std::to_string(entry.control) + ", |" +
               Readable(entry.text) + "| " + std::to_string(entry.number);
    };
    for (const FieldCase& field : row.fields) Enter(platform, dialog, field.usual);
    const std::string name = set(row.fields[0].usual);
    Expect(TakeSent(port) == usual && HeadlessBoxes().empty(), name);
    if (platform == Platform::Smartphone) return;
    for (const FieldCase& field : row.fields) {
        for (const Accepted& accepted : field.accepted) {
            const std::string what = set(accepted.entry);
            Expect(TakeSent(port) == FrameWith(usual, accepted.offset, BytesOfHex(accepted.bytes)), what);
        }
        for (const Entry& entry : field.refused) {
            const std::string what = set(entry);
            const std::vector<HeadlessBox>& boxes = HeadlessBoxes();
            Expect(boxes.size() == 1 && boxes[0].caption == field.caption && boxes[0].text == field.text &&
                       TakeSent(port).empty() && HeadlessTopDialog() == dialog,
                   what);
        }
        Enter(platform, dialog, field.usual);
    }
}

void CheckNmeaDialog(const NmeaDialogRow& row, HeadlessPort& port)
{
    const HWND dialog = HeadlessTopDialog();
    Expect(HeadlessTitle(dialog) == row.caption, std::string(row.name) + ", caption");
    row.prepare(dialog);
    TakeSent(port);
    HeadlessClearBoxes();
    HeadlessClick(dialog, row.set);
    Expect(TakeSent(port) == row.sentence && HeadlessBoxes().empty(), row.name);
}

void RunTables(Platform platform)
{
    UsePlatform(platform);
    HeadlessPort& port = StorePort(4800);
    HeadlessUser([] {}, StartMs);
    const auto visit = [](int command, std::function<void()> check) {
        HeadlessUser([command] { HeadlessCommand(HeadlessMainWindow(), command); });
        HeadlessUser(std::move(check));
        HeadlessUser(CloseDialog);
    };
    for (const DialogCase& row : FieldCases())
        visit(row.command, [&row, &port, platform] { CheckFields(platform, row, port); });
    for (const NmeaDialogRow& row : NmeaDialogs)
        visit(static_cast<int>(row.number), [&row, &port] { CheckNmeaDialog(row, port); });
    HeadlessUser(Exit);
    RunAndPrint(L"", &port);
}

// ---- Command lines ------------------------------------------------------------------------------------

void RunCommandLine(const wchar_t* commandLine, bool hasPort, bool hasRates)
{
    constexpr uint32_t Rate = 9600;
    UsePlatform(Platform::Smartphone);
    HeadlessPort& port = HeadlessAddPort(PortNumber);
    if (hasPort) Store(L"CommPortIdx", PortNumber);
    Store(L"BaudrateIdx", RateIndex(Rate));
    if (hasRates) Store(L"SirfBaudrateIdx", RateIndex(57600));
    if (hasRates) Store(L"NmeaBaudrateIdx", RateIndex(Rate));
    ReceiverLine line(port, receiver::Protocol::Nmea, Rate);
    RunAndPrint(commandLine, &port);
    Print("receiver: %llu commands accepted, %llu refused, static navigation %d",
          static_cast<unsigned long long>(line.Receiver().CommandsAccepted),
          static_cast<unsigned long long>(line.Receiver().CommandsRefused),
          int{receiver::StaticNavigationOf(line.Receiver().Kept)});
}

// ---- Failing calls ------------------------------------------------------------------------------------

void RunFailure(const char* call)
{
    UsePlatform(Platform::Plain);
    HeadlessPort& port = StorePort(4800);
    HeadlessReceive(port, "$GPGGA,120000.000,4722.6140,N,00832.5020,E,1,05,2.1,455.0,M,48.0,M,,0000*55\r\n",
                    500);
    HeadlessFailCall(call, 1, ERROR_GEN_FAILURE);
    HeadlessUser([] { HeadlessCommand(HeadlessMainWindow(), DIALOG_SIRF_POLL_SOFTWARE_VERSION); }, StartMs);
    HeadlessUser(CloseDialog, 500);
    HeadlessUser(
        [&port] {
            Print("failed: %s", HeadlessFailedCall().c_str());
            PrintNews(&port);
            if (HeadlessMainWindow()) PrintMainWindow();
        },
        500);
    HeadlessUser([] {
        if (HeadlessMainWindow()) Exit();
    });
    RunAndPrint(L"", &port);
}

constexpr const char* FailingCalls[] = {
    "CreateFileW",      "GetCommProperties",
    "GetCommState",     "SetCommState",
    "SetCommTimeouts",  "CreateThread",
    "ReadFile",         "WriteFile",
    "CloseHandle",      "EscapeCommFunction",
    "CreateDIBSection", "FormatMessageW",
    "RegOpenKeyExW",    "RegQueryValueExW",
    "RegCreateKeyExW",  "RegSetValueExW",
    "LoadStringW",      "RegisterClassW",
    "CreateWindowExW",  "CommandBar_Create",
    "BeginPaint",       "GetDC",
    "ReleaseDC",        "BitBlt",
    "StretchBlt",       "ExtTextOutW",
    "InvalidateRect",   "DrawTextW",
};

} // namespace

std::vector<Scenario> AllScenarios(const std::vector<std::string>& logs)
{
    std::vector<Scenario> all;
    for (const Platform platform : {Platform::Plain, Platform::PocketPc, Platform::Smartphone})
        all.push_back({std::string("start ") + PlatformNames[static_cast<int>(platform)],
                       [platform] { RunStart(platform); }});
    all.push_back({"start second", RunSecond});
    for (const std::string& log : logs) all.push_back({"log " + NameOf(log), [log] { RunLog(log); }});
    for (const std::string& log : logs) {
        if (!NameOf(log).starts_with("walk-south-west")) continue;
        for (const bool showsChart : {false, true})
            all.push_back({"stream " + NameOf(log) + (showsChart ? " on the chart" : " on the page"),
                           [log, showsChart] { RunStream(log, showsChart); },
                           StreamRepeats * std::filesystem::file_size(log)});
    }
    for (const Platform platform : {Platform::Plain, Platform::PocketPc, Platform::Smartphone})
        for (const auto& row : Dialogs) {
            const bool nmea = row.command < DIALOG_SIRF_ADVANCED_POWER_MANAGEMENT;
            const receiver::Protocol protocol =
                nmea ? receiver::Protocol::Nmea : receiver::Protocol::SirfBinary;
            all.push_back({"dialog " + std::string(PlatformNames[static_cast<int>(platform)]) + " " +
                               std::to_string(row.command),
                           [=] { RunDialog(platform, protocol, row.command, row.resource); }});
        }
    for (const Platform platform : {Platform::Plain, Platform::Smartphone})
        all.push_back({std::string("tables ") + PlatformNames[static_cast<int>(platform)],
                       [platform] { RunTables(platform); }});
    struct {
        const wchar_t* text;
        bool hasPort, hasRates;
    } const commandLines[] = {{L"StaticNavigationOn", true, true},
                              {L"StaticNavigationOff", true, true},
                              {L"StaticNavigationOn", false, true},
                              {L"StaticNavigationOn", true, false},
                              {L"Something", true, true}};
    for (const auto& row : commandLines)
        all.push_back({"command line " + Readable(row.text) + (row.hasPort ? "" : " without a port") +
                           (row.hasRates ? "" : " without rates"),
                       [=] { RunCommandLine(row.text, row.hasPort, row.hasRates); }});
    for (const char* call : FailingCalls)
        all.push_back({std::string("failure ") + call, [call] { RunFailure(call); }});
    return all;
}
