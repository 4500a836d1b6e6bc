// SPDX-License-Identifier: MIT
#include "platform/windows/aygshell/window_class.h"

HINSTANCE LibraryInstance = nullptr;

void RegisterShellClass(const wchar_t* name, WNDPROC procedure)
{
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = procedure;
    windowClass.hInstance = LibraryInstance;
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.lpszClassName = name;
    RegisterClassW(&windowClass);
}
