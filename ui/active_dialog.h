// SPDX-License-Identifier: MIT
// Which dialog is open, for the decoders: they fill its controls, or repaint the main window when none is.
#pragma once

#include <atomic>

#include "platform/platform.h"
#include "ui/dialog_kind.h"

// The top-level window; written once by the user-interface thread, null before it exists and after.
extern std::atomic<HWND> MainWindow;

// Written by the user-interface thread, read by both. The window is published before the kind and withdrawn
// after it, so that whoever sees a kind finds a window that has its controls, or none. Sequentially
// consistent.
extern std::atomic<HWND> ActiveDialogWindow;
extern std::atomic<DialogKind> ActiveDialogKind;

// Called by a dialog when it opens and before it ends (again from its destruction: harmless).
void PublishDialog(DialogKind kind, HWND dialog);
void WithdrawDialog();

// The open dialog's window if it is of this kind, else null.
HWND OpenDialogOfKind(DialogKind kind);
