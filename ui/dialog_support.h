// SPDX-License-Identifier: MIT
// Common to all dialogs: the kind of device, the set-up of a dialog, access to lists.
#pragma once

#include <cstdint>

#include "platform/platform.h"

// The program's instance, for its resources; set once at start.
extern HINSTANCE ProgramInstance;

// ---- Platform -----------------------------------------------------------------------------------------

// Keypad device: the platform type begins with "smartphone" in upper or lower case, or it may not be read.
bool IsSmartphone();

// Touch-screen device: the platform type begins with "pocketpc" in upper or lower case.
bool IsPocketPc();

// Chooses templates and list messages for the device; once, when the main window is created.
void ChooseLayout();

// Added to each template's and menu's number: 0, or 100 on keypad devices.
uint32_t LayoutOffset();

// ---- Dialogs ------------------------------------------------------------------------------------------

// Shows a modal dialog over the main window; `number` without the layout's offset. Returns its result.
INT_PTR ShowDialog(uint32_t number, DLGPROC procedure);

// The first call in a dialog's initialisation: sets up full screen, scroll bar, caption and menu bar as the
// device needs them.
void InitDialogCommon(HWND dialog);

// The dialog procedure's answer to a hot-key message: passes the Back key to the shell, which then erases in
// the focused edit instead of closing the dialog.
void HandleHotKey(UINT message, WPARAM wParam, LPARAM lParam);

// ---- Lists --------------------------------------------------------------------------------------------

// Messages of the list controls: list boxes on keypad devices, combo boxes elsewhere.
struct ListMessageTable {
    UINT addString, insertString, deleteString, setSelection, getSelection, getText, getTextLength;
};
extern ListMessageTable ListMessages;

// Index of the selected entry, -1 when none is.
int32_t GetListSelection(HWND dialog, int control);

// Text of the selected entry; the number of characters copied, 0 when there is none or it does not fit in
// `capacity` with its terminator.
uint32_t GetSelectedListText(HWND dialog, int control, wchar_t* text, uint32_t capacity);

// Leading decimal number of the selected entry's text; 0 and `found` false when nothing is selected.
int32_t GetSelectedListNumber(HWND dialog, int control, bool& found);
