// SPDX-License-Identifier: MIT
// The two libraries that some platforms have and others lack: the shell of hand-held devices and the common
// dialogs. Entry points are null where the library or the export is missing; test each before its call.
#pragma once

#include "platform/platform.h"

// Request to the shell about a dialog that opens: done button, full screen, input panel down.
struct ShellInitDialog {
    DWORD mask;
    HWND dialog;
    DWORD flags;
};
constexpr DWORD ShellInitFlagsValid = 1;
constexpr DWORD ShellDoneButton = 1, ShellFullScreen = 4, ShellInputPanelDown = 8;

// Request for a menu bar: resource number of the bar, and the bar's window in return.
struct ShellMenuBar {
    DWORD size;
    HWND parent;
    DWORD flags;
    UINT menu;
    HINSTANCE instance;
    int bitmap, bitmapCount;
    HWND bar;
    COLORREF background;
};

// Kept by the window for the shell's settings-change handler.
struct ShellActivateInfo {
    DWORD size;
    HWND lastFocus;
    UINT flags;
};

extern BOOL(WINAPI* ShellInitDialogEntry)(ShellInitDialog*);
extern BOOL(WINAPI* ShellCreateMenuBar)(ShellMenuBar*);
extern BOOL(WINAPI* ShellHandleSettingChange)(HWND, WPARAM, LPARAM, ShellActivateInfo*); // export 83
extern void(WINAPI* ShellSendBackToFocusWindow)(UINT, WPARAM, LPARAM);                   // export 97
extern FARPROC ShellExport188; // looked up, not called
extern BOOL(WINAPI* ChooseColorEntry)(CHOOSECOLORW*);

// Whether the shell library is there, whatever it exports.
bool HasShellLibrary();

void LoadShellLibraries();
void FreeShellLibraries();
