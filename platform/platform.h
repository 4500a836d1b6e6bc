// SPDX-License-Identifier: MIT
// The platform as the product sees it, under the names that Windows CE gives it.
//
// Product code includes this header and no other platform header. What the calls do is the platform's
// published contract; each implementation says where it differs:
//   platform/windows   the desktop system, and what Windows CE has and the desktop lacks
//   platform/headless  the whole interface in memory (platform/memory), under the control of a test or a tool
//   platform/device    Windows CE itself, on ARM: coredll.exports and commctrl.exports there are the whole
//                      list of what the product calls of the system
#pragma once

#include <atomic>
#include <cstdint>

// Of the implementation chosen by the include path. Besides the system's own names it provides what differs
// in value from place to place: WS_EX_NODRAG, the settings' SETTINGS_FALLBACK_ROOT and SETTINGS_KEY_VIEW, and
// where the colour dialog is found, COLOR_LIBRARY and COLOR_EXPORT.
#include "system.h"

// Function codes of EscapeCommFunction that switch a port into and out of infrared mode. Windows CE
// drivers know them; desktop drivers refuse them.
constexpr DWORD SETIR = 10;
constexpr DWORD CLRIR = 11;

// Codes of SystemParametersInfoW for the platform type and the maker's device text.
constexpr UINT SPI_GETPLATFORMTYPE = 0x101;
constexpr UINT SPI_GETOEMINFO = 0x102;

// ---- What each implementation provides beyond the system's own calls ---------------------------------

// Puts `value` into `place` and returns what was there, as one step. Handles are taken out of their
// globals this way before they are closed, so that only one thread ever closes one.
HANDLE ExchangeHandle(std::atomic<HANDLE>& place, HANDLE value);

// Puts `value` into `place` if it still holds `expected`; returns whether it did, as one step.
bool ReplaceHandle(std::atomic<HANDLE>& place, HANDLE expected, HANDLE value);

// Font of the text page: fixed pitch where the system has one, so that the satellite columns align.
// The caller deletes it. Null: draw with the font that a device context starts with.
HFONT CreateTextPageFont();

// Makes the client area of a window that is being created at least `width` x `height` pixels, where the
// system leaves its size open; a device's windows fill its screen and stay as they are.
void FitMainWindow(HWND window, int width, int height);

// Brings another process' window to the front, with the dialog or box that it may have open.
void BringToFront(HWND window);

// Makes a dialog's menu bar pass the Back key to the dialog as a hot-key message, where the shell has one.
void PassBackKeyToDialog(HWND menuBar);

// Ends a read or write in which the thread may be waiting. Needed where reads and the closing of one handle
// exclude each other and the driver has refused the time-outs that make reads return at once.
void CancelThreadIo(HANDLE thread);
