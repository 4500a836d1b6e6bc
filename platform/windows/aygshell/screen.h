// SPDX-License-Identifier: MIT
// The device's screen, at the desktop's upper left corner: a title bar, the room for windows, a menu bar. The
// environment selects the device: TORAVANE_PLATFORM ("SmartPhone" has a keypad, everything else a touch
// screen) and TORAVANE_SCREEN (width x height in pixels, "240x320" when it is not set).
#pragma once

#include "platform/windows/aygshell/contract.h"

bool HasKeypad();
RECT WorkArea(); // between the bars
RECT MenuBarArea();

// Makes a window one of those that fill the screen: no frame of its own, its title in the title bar. `height`
// in pixels from the title bar down.
void TakeOntoScreen(HWND window, int height);
bool IsOnScreen(HWND window);

// Shows the title of a window that has come to the front, with the done button that it may want.
void ShowTitle(HWND window);
void WantDoneButton(HWND window);

// Moves a box that has come up onto the screen.
void CentreOnScreen(HWND box);

void PaintBar(HDC dc, const RECT& area); // the bars' common look
