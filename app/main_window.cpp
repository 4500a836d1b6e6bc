// SPDX-License-Identifier: MIT
#include "app/main_window.h"

#include "app/about_dialog.h"
#include "app/command_line.h"
#include "app/single_copy.h"
#include "graph/chart.h"
#include "graph/graph_mode.h"
#include "graph/graph_options_dialog.h"
#include "graph/graph_settings.h"
#include "graph/repaint.h"
#include "link/communication_dialog.h"
#include "link/link_state.h"
#include "link/receiver_log.h"
#include "link/serial_port.h"
#include "nmea/dialogs/command_dialog.h"
#include "resources/resource_ids.h"
#include "settings/settings_store.h"
#include "sirf/dialogs/command_dialog.h"
#include "ui/active_dialog.h"
#include "ui/dialog_support.h"
#include "ui/error_boxes.h"
#include "ui/page_lines.h"
#include "ui/screen_scale.h"
#include "ui/shell_libraries.h"

namespace
{

constexpr uint32_t NameCapacity = 64;

// Size of the window on the desktop: room for the text page's longest lines and the chart's default bands.
constexpr int PageColumns = 50, ChartRows = 268;

HFONT PageFont = nullptr; // null: the font that a device context starts with
int LineHeight = 0, CharacterWidth = 0;
int GraphTop = 0; // upper edge of page and chart: height of a command bar
bool FirstPaint = true;
bool IsStarting = false, StartsMinimised = false;
ShellActivateInfo Activation;

// ---- Commands -----------------------------------------------------------------------------------------

// True if the number is a menu item, which has then been carried out. Most items have the number of the
// dialog that they open.
bool RunCommand(HWND window, uint16_t item)
{
    switch (item) {
    case COMMAND_EXIT: SendMessageW(window, WM_CLOSE, 0, 0); return true;
    case COMMAND_ABOUT: OpenDialog(AboutDialog); return true;
    case COMMAND_COMMUNICATION: OpenDialog(CommunicationDialog); return true;
    case COMMAND_GRAPH: OpenDialog(GraphOptionsDialog); return true;
    default: return ShowNmeaDialog(item) || ShowSirfDialog(item);
    }
}

// ---- Creation and destruction -------------------------------------------------------------------------

void MeasureText(HWND window)
{
    PageFont = CreateTextPageFont();
    HDC dc = GetDC(window);
    const HGDIOBJ before = PageFont ? SelectObject(dc, PageFont) : nullptr;
    RECT cell = {};
    DrawTextW(dc, L"A", 1, &cell, DT_CALCRECT);
    LineHeight = cell.bottom - cell.top;
    CharacterWidth = cell.right - cell.left;
    if (before) SelectObject(dc, before);
    ReleaseDC(window, dc);
}

// The shell's menu bar, which is below the window's own area; null when there is no shell.
HWND CreateShellMenuBar(HWND window, UINT menu)
{
    if (!ShellCreateMenuBar) return nullptr;
    ShellMenuBar bar = {};
    bar.size = sizeof bar;
    bar.parent = window;
    bar.menu = menu;
    bar.instance = ProgramInstance;
    return ShellCreateMenuBar(&bar) ? bar.bar : nullptr;
}

// Makes the menu bar and the room for it: below the window if there is a shell, otherwise at the top of the
// client area. False if neither kind of bar can be made.
bool CreateMenuBar(HWND window)
{
    const uint16_t menu = static_cast<uint16_t>(MENU_MAIN + LayoutOffset());
    if (HWND bar = CreateShellMenuBar(window, menu)) {
        if (IsSmartphone()) return true; // its windows end above the bar
        RECT area, outer;
        GetWindowRect(bar, &area);
        GetWindowRect(window, &outer);
        SetWindowPos(window, nullptr, 0, 0, outer.right - outer.left,
                     outer.bottom - outer.top - (area.bottom - area.top),
                     SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
        return true;
    }
    HWND bar = CommandBar_Create(ProgramInstance, window, 1);
    if (!bar || !CommandBar_InsertMenubar(bar, ProgramInstance, menu, 0)) return false;
    GraphTop = CommandBar_Height(bar);
    return true;
}

void OnCreate(HWND window)
{
    MainWindow.store(window);
    ChooseLayout();
    MeasureText(window);
    GraphTop = 0;
    if (!CreateMenuBar(window)) {
        LoadGraphSettings();
        return;
    }
    TextPageTop.store(GraphTop);
    TextLineHeight.store(LineHeight);
    const int pageHeight = LineHeight * static_cast<int>(TextLineCount);
    const int chartHeight = OnScreen(ChartRows);
    FitMainWindow(window, PageColumns * CharacterWidth, pageHeight > chartHeight ? pageHeight : chartHeight);
    RECT client;
    GetClientRect(window, &client);
    const int height = client.bottom - (IsSmartphone() ? 0 : GraphTop);
    CreateChart(window, client.right, height > 0 ? height : 0);
}

void OnDestroy()
{
    PortClose();
    LogClose();
    DeleteChart();
    if (PageFont) DeleteObject(PageFont);
    PageFont = nullptr;
    MainWindow.store(nullptr);
    PostQuitMessage(0);
}

// ---- Painting -----------------------------------------------------------------------------------------

// Each line fills the window's width, so that what a longer or older line left there disappears.
void PaintTextPage(HWND window, HDC dc, const RECT& invalid)
{
    RECT client;
    GetClientRect(window, &client);
    const HGDIOBJ before = PageFont ? SelectObject(dc, PageFont) : nullptr;
    for (uint32_t i = 0; i < TextLineCount; ++i) {
        RECT line;
        line.left = 0;
        line.right = client.right;
        line.top = GraphTop + LineHeight * static_cast<int>(i);
        line.bottom = line.top + LineHeight;
        if (line.bottom <= invalid.top || line.top >= invalid.bottom) continue;
        wchar_t text[TextLineCapacity];
        const uint32_t length = CopyTextLine(i, text);
        if (length == LineIsChanging) continue;
        ExtTextOutW(dc, 0, line.top, ETO_OPAQUE, &line, text, length, nullptr);
    }
    if (before) SelectObject(dc, before);
}

// Opens the port that worked last, greets a first user, carries out the command line. Runs during the first
// paint and shows boxes, in which the user may end the program. So each step checks first that the window
// still exists.
void RunStartActions(HWND window)
{
    CommPortIdx.store(SettingsGetDword(SettingCommPort, -1));
    BaudrateIdx.store(SettingsGetDword(SettingBaudrate, -1));
    const bool hasPort = IsPortIndex(CommPortIdx.load()), hasRate = IsBaudIndex(BaudrateIdx.load());
    CommandLinePending.store(HasCommandLine() && (hasPort || hasRate));
    if (hasPort && hasRate) PortOpen(PortNameTable[CommPortIdx.load()], BaudTable[BaudrateIdx.load()]);
    if (!IsWindow(window)) {
        PortClose(); // the window's own close came while the port was still being opened
        return;
    }
    if (!hasPort && !hasRate)
        OpenDialog(AboutDialog);
    else if (HasCommandLine())
        RunCommandLine(hasPort, hasRate);
}

void OnPaint(HWND window)
{
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(window, &paint);
    if (GraphMode == GraphModeValue::Chart)
        PaintChart(dc, GraphTop);
    else
        PaintTextPage(window, dc, paint.rcPaint);
    EndPaint(window, &paint);
    if (!FirstPaint) return;
    FirstPaint = false;
    RunStartActions(window);
}

void ToggleGraphMode(HWND window)
{
    if (GraphMode == GraphModeValue::TextPage) {
        GraphMode = GraphModeValue::Chart; // shown with the next fix
        return;
    }
    GraphMode = GraphModeValue::TextPage;
    InvalidateRect(window, nullptr, TRUE);
}

LRESULT CALLBACK MainWindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_CREATE: OnCreate(window); return 0;
    case WM_DESTROY: OnDestroy(); return 0;
    case WM_SIZE: // a minimised program ends
        if (wParam != SIZE_MINIMIZED) break;
        if (IsStarting) {
            StartsMinimised = true;
            return 0;
        }
        SendMessageW(window, WM_ACTIVATE, WA_INACTIVE, 0);
        SendMessageW(window, WM_CLOSE, 0, 0);
        return 0;
    case WM_SETTINGCHANGE:
        if (!ShellHandleSettingChange) break;
        ShellHandleSettingChange(window, wParam, lParam, &Activation);
        return 0;
    case WM_PAINT: OnPaint(window); return 0;
    case WM_KEYDOWN:
    case WM_CHAR: ToggleGraphMode(window); return 0;
    case WM_COMMAND:
        if (RunCommand(window, LOWORD(wParam))) return 0;
        break;
    case MessagePostedBox: ShowPostedBox(wParam, lParam); return 0;
    default: break;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

bool RegisterMainClass(const wchar_t* name)
{
    WNDCLASSW windowClass = {};
    windowClass.style = CS_HREDRAW | CS_VREDRAW;
    windowClass.lpfnWndProc = MainWindowProcedure;
    windowClass.hInstance = ProgramInstance;
    windowClass.hIcon = LoadIconW(ProgramInstance, MAKEINTRESOURCEW(ICON_PROGRAM));
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
    windowClass.lpszClassName = name;
    return RegisterClassW(&windowClass) != 0;
}

// The launcher may have asked for a minimised window. Systems obey it when the window is shown first, no
// matter what the program asks for. This program ends when it is minimised, so it must not start that way.
void ShowMainWindow(HWND window, int show)
{
    ShowWindow(window, show);
    if (StartsMinimised) ShowWindow(window, SW_RESTORE);
    IsStarting = false;
    UpdateWindow(window);
}

bool MakeMainWindow(HINSTANCE instance, const wchar_t* name, int show)
{
    if (!RegisterMainClass(name)) return false;
    LoadShellLibraries();

    const DWORD style = HasShellLibrary() ? WS_VISIBLE : WS_VISIBLE | WS_CAPTION | WS_SYSMENU;
    const DWORD extendedStyle = HasShellLibrary() ? 0 : WS_EX_NODRAG;
    GraphMode = GraphModeValue::TextPage;
    FirstPaint = true;
    IsStarting = true;
    StartsMinimised = false;
    Activation = {};
    Activation.size = sizeof Activation;
    StartTextView();
    HWND window = CreateWindowExW(extendedStyle, name, name, style, CW_USEDEFAULT, CW_USEDEFAULT,
                                  CW_USEDEFAULT, CW_USEDEFAULT, nullptr, nullptr, instance, nullptr);
    if (!window) return false;
    ShowMainWindow(window, show);
    return true;
}

} // namespace

bool InitInstance(HINSTANCE instance, int show)
{
    ProgramInstance = instance;
    UserInterfaceThread.store(GetCurrentThreadId());
    wchar_t name[NameCapacity] = L"";
    LoadStringW(instance, STRING_PROGRAM_NAME, name, NameCapacity);
    if (!BecomeOnlyCopy(name)) return false;
    if (MakeMainWindow(instance, name, show)) return true;
    LeaveOnlyCopy();
    return false;
}
