// SPDX-License-Identifier: MIT
// Dialogs on small screens: a template is as large as its controls need, but a dialog on a hand-held device
// is as large as the screen. User-interface thread.
#pragma once

#include "platform/platform.h"

// Fits the controls of a dialog that has become as large as the screen: they are stretched or squeezed to the
// screen's width, and the part that does not fit below can be scrolled to. `width` and `height`: client area
// of the template, in pixels.
void FitDialogToScreen(HWND dialog, int width, int height);

// The dialog procedure's answer to a movement of its scroll bar.
void ScrollDialog(HWND dialog, WPARAM wParam);

// Scrolls until the control that has just got the focus is visible, with the label above it.
void ScrollToFocus(HWND dialog);

// Pixels by which the open dialog's controls have been scrolled up.
int DialogScrolled();
