// SPDX-License-Identifier: MIT
// Start-up of the desktop program.

#include <cwchar>

#include "platform/start.h"

namespace
{

// The command line after the program's name as the user meant it: without the blanks of a shell, without one
// pair of quotes.
const wchar_t* Trim(wchar_t* text)
{
    while (*text == L' ') ++text;
    size_t length = std::wcslen(text);
    while (length && text[length - 1] == L' ') text[--length] = 0;
    if (length >= 2 && text[0] == L'"' && text[length - 1] == L'"') {
        text[length - 1] = 0;
        ++text;
    }
    return text;
}

// A program that ends when it is minimised must not start that way.
int NormalShow(int show)
{
    return show == SW_SHOWMINIMIZED || show == SW_MINIMIZE || show == SW_SHOWMINNOACTIVE ||
                   show == SW_FORCEMINIMIZE
               ? SW_SHOWNORMAL
               : show;
}

} // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, wchar_t* commandLine, int show)
{
    // The program waits on its user-interface thread, for seconds; the system must not paint a ghost over it.
    DisableProcessWindowsGhosting();
    return RunProgram(instance, Trim(commandLine), NormalShow(show));
}
