// SPDX-License-Identifier: MIT
// Dialogs on small screens: a template is as wide and high as its controls need, a hand-held device's dialog
// as large as its screen. User-interface thread.
#pragma once

#include "platform/platform.h"

// Brings a dialog that has become as large as the screen to terms with it: its controls are stretched or
// squeezed to the screen's width, and what does not fit below is scrolled to. `width` and `height`: client
// area that the template asks for, in pixels.
void FitDialogToScreen(HWND dialog, int width, int height);

// The dialog procedure's answer to a movement of its scroll bar.
void ScrollDialog(HWND dialog, WPARAM wParam);

// Scrolls until a control that has newly got the focus can be seen, with the label above it.
void ScrollToFocus(HWND dialog);

// Pixels that the open dialog's controls have been scrolled up.
int DialogScrolled();
