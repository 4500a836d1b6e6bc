// SPDX-License-Identifier: MIT
// Names the open dialog for the decoders: they fill its controls, or repaint the main window if none is open.
#pragma once

#include <atomic>

#include "platform/platform.h"
#include "ui/dialog_kind.h"

// The top-level window; null before it exists and after its end. The user-interface thread writes it.
extern std::atomic<HWND> MainWindow;

// Written by the user-interface thread, read by both. The window is set before the kind and cleared after it.
// So a thread that sees a kind finds a window with the controls of this kind, or none. Sequentially
// consistent.
extern std::atomic<HWND> ActiveDialogWindow;
extern std::atomic<DialogKind> ActiveDialogKind;

// Called when a dialog opens and before it ends. A second call at its destruction does no harm.
void PublishDialog(DialogKind kind, HWND dialog);
void WithdrawDialog();

// The open dialog's window if it is of this kind, else null.
HWND OpenDialogOfKind(DialogKind kind);
