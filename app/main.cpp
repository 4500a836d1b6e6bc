// SPDX-License-Identifier: MIT
#include "platform/start.h"

#include "app/command_line.h"
#include "app/main_window.h"
#include "app/single_copy.h"
#include "ui/shell_libraries.h"

int RunProgram(HINSTANCE instance, const wchar_t* commandLine, int show)
{
    StoreCommandLine(commandLine);
    int exitCode = 0;
    if (InitInstance(instance, show)) {
        MSG message;
        while (GetMessageW(&message, nullptr, 0, 0) > 0) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
        exitCode = static_cast<int>(message.wParam);
        LeaveOnlyCopy();
    }
    FreeShellLibraries();
    return exitCode;
}
