// What the NMEA command dialogs share: their set-up, their buttons, and the sending of their commands.
// User-interface thread.
#pragma once

#include <cstdint>
#include <span>

#include "ui/active_dialog.h"

struct DialogButton {
    int control;
    void (*press)(HWND dialog);
};

struct CommandDialog {
    DialogKind kind;
    void (*fill)(HWND dialog); // the controls' initial state
    std::span<const DialogButton> buttons;
};

// The answer of a dialog's procedure to a message.
INT_PTR HandleCommandDialog(const CommandDialog& description, HWND dialog, UINT message, WPARAM wParam,
                            LPARAM lParam);

// Sends a command; the grey box then shows only what the receiver says from now on.
void SendDialogCommand(const char* body);
