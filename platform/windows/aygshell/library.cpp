// SPDX-License-Identifier: MIT
// The shell library of hand-held devices, for the desktop: with it beside the program, the program's own code
// for those devices runs, on a screen of their size. Enough of the shell for that, and no more.
#include "platform/windows/aygshell/fields.h"
#include "platform/windows/aygshell/keys.h"
#include "platform/windows/aygshell/menu_bar.h"
#include "platform/windows/aygshell/screen.h"
#include "platform/windows/aygshell/window_class.h"

extern "C" {

BOOL WINAPI SHInitDialog(ShInitDialogInfo* request)
{
    if (!request || !(request->mask & FlagsAreValid) || !IsWindow(request->dialog)) return FALSE;
    WatchThread();
    const RECT area = WorkArea();
    if (request->flags & FullScreen) TakeOntoScreen(request->dialog, area.bottom - area.top);
    if (request->flags & WantsDoneButton) WantDoneButton(request->dialog);
    if (HasKeypad()) PrepareFields(request->dialog);
    return TRUE;
}

// A window that is not on the screen yet comes to fill it: on a touch screen down to the lower edge, where it
// makes room for the bar itself.
BOOL WINAPI SHCreateMenuBar(ShMenuBarInfo* request)
{
    if (!request || request->size != sizeof *request || !IsWindow(request->parent)) return FALSE;
    WatchThread();
    request->window =
        MakeMenuBar(request->parent, request->instance, request->bar, request->flags & EmptyBar);
    if (!request->window) return FALSE;
    const RECT area = WorkArea(), bar = MenuBarArea();
    if (!IsOnScreen(request->parent))
        TakeOntoScreen(request->parent, (HasKeypad() ? area.bottom : bar.bottom) - area.top);
    return TRUE;
}

// 83, for a program that was notified of a changed setting: its window fills the available room.
BOOL WINAPI SHHandleWMSettingChange(HWND window, WPARAM setting, LPARAM, void*)
{
    constexpr WPARAM InputPanel = 224;
    if (!IsOnScreen(window) || (setting != InputPanel && setting != SPI_SETWORKAREA)) return FALSE;
    const RECT area = WorkArea();
    TakeOntoScreen(window, area.bottom - area.top);
    return TRUE;
}

// 97
void WINAPI SHSendBackToFocusWindow(UINT, WPARAM, LPARAM hotKey)
{
    SendBackToFocus(hotKey);
}

// 188: looked up, never called.
BOOL WINAPI ShellExport188()
{
    return FALSE;
}

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void*)
{
    if (reason == DLL_PROCESS_ATTACH) LibraryInstance = instance;
    if (reason == DLL_PROCESS_DETACH) StopWatching();
    return TRUE;
}

} // extern "C"
