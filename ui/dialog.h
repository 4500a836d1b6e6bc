// SPDX-License-Identifier: MIT
// A dialog as a row, and the one way to open it. User-interface thread.
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

// Opens with the common set-up, is published, and then prepares its fields, `fill`s and `begin`s: whatever
// the reader thread writes into it comes after that. Null or empty: nothing to do.
struct Dialog {
    uint16_t number; // of its templates, without the layout's offset
    DialogKind kind;
    std::span<const CommandField> fields = {};
    std::span<const DialogButton> buttons = {}; // OK and Cancel end a dialog after what stands here for them
    void (*fill)(HWND dialog) = nullptr;        // the controls' further initial state
    void (*begin)(HWND dialog) = nullptr;       // at last: a poll, whose answer finds the dialog
    int (*firstFocus)() = nullptr; // control that has the focus first; 0: the template's first one

    // Messages that only this dialog answers, other than clicks; 0 where it leaves one to the others.
    INT_PTR (*handle)(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) = nullptr;
};

// Shows a dialog over the main window until it is closed.
void OpenDialog(const Dialog& dialog);

// Ends the open dialog, as OK does.
void CloseDialog(HWND dialog);
