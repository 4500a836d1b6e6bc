// SPDX-License-Identifier: MIT
// A dialog as a row of a table, and the one way to open it. User-interface thread.
#pragma once

#include <cstdint>
#include <span>

#include "platform/platform.h"
#include "text/fields.h"
#include "ui/dialog_kind.h"

struct DialogButton {
    int control;
    void (*press)(HWND dialog);
};

// A dialog opens with the common set-up, is published, prepares its fields, and then calls `fill` and
// `begin`. The reader thread writes into it only after that. Null or empty: nothing to do.
struct Dialog {
    uint16_t number; // of its templates, without the layout's offset
    DialogKind kind;
    std::span<const CommandField> fields = {};
    std::span<const DialogButton> buttons =
        {};                               // OK and Cancel end the dialog after their actions in this list
    void (*fill)(HWND dialog) = nullptr;  // the controls' further initial state
    void (*begin)(HWND dialog) = nullptr; // last step: a poll, whose answer finds the dialog ready
    int (*firstFocus)() = nullptr;        // control that has the focus first; 0: the template's first one

    // Handles messages of this dialog only, other than clicks; returns 0 for messages that it does not
    // handle.
    INT_PTR (*handle)(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) = nullptr;
};

// Shows a dialog over the main window until it is closed.
void OpenDialog(const Dialog& dialog);

// Ends the open dialog, as OK does.
void CloseDialog(HWND dialog);
