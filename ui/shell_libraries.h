// SPDX-License-Identifier: MIT
// Two libraries that only some platforms have: the shell of hand-held devices and the common dialogs. An
// entry point is null if the library or the export is missing; test each one before you call it.
#pragma once

#include "platform/platform.h"

// Request to the shell for a dialog that opens: done button, full screen, input panel hidden.
struct ShellInitDialog {
    DWORD mask;
    HWND dialog;
    DWORD flags;
};
constexpr DWORD ShellInitFlagsValid = 1;
constexpr DWORD ShellDoneButton = 1, ShellFullScreen = 4, ShellInputPanelDown = 8;

// Request for a menu bar: contains the bar's resource number, and receives the bar's window. An empty bar has
// no buttons, whatever its resource contains.
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
constexpr DWORD ShellEmptyBar = 1;

// The window keeps this for the shell's handler of changed settings.
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

// True if the shell library is loaded, even if exports are missing.
bool HasShellLibrary();

void LoadShellLibraries();
void FreeShellLibraries();
