// SPDX-License-Identifier: MIT
#include "app/command_line.h"

#include "app/static_navigation_switch.h"
#include "text/copy.h"
#include "ui/active_dialog.h"
#include "ui/error_boxes.h"

namespace
{

constexpr uint32_t CommandLineCapacity = 256;
wchar_t CommandLine[CommandLineCapacity];

void RunAction(bool hasPort, bool hasRate)
{
    if (!hasPort)
        InfoBox(L"CmdLine", L"Unknown Comm Port for GPS");
    else if (!hasRate)
        InfoBox(L"CmdLine", L"Unknown Baudrate for Comm Port");
    else if (TextEquals(CommandLine, L"StaticNavigationOn"))
        SwitchStaticNavigation(true);
    else if (TextEquals(CommandLine, L"StaticNavigationOff"))
        SwitchStaticNavigation(false);
    else
        InfoBox(L"Un-supported CmdLine", CommandLine);
}

} // namespace

void StoreCommandLine(const wchar_t* text)
{
    CopyText(CommandLine, CommandLineCapacity, text);
}

bool HasCommandLine()
{
    return CommandLine[0] != 0;
}

void RunCommandLine(bool hasPort, bool hasRate)
{
    RunAction(hasPort, hasRate);
    // Posted: this runs inside a paint, in which a window must not be destroyed.
    if (HWND window = MainWindow.load()) PostMessageW(window, WM_CLOSE, 0, 0);
}
