// SPDX-License-Identifier: MIT
// The platform as the product sees it, under the names that Windows CE gives it.
//
// Product code includes this header and no other platform header. The calls do what the platform's public
// documentation describes; each implementation notes its differences:
//   platform/windows   the desktop system, with those parts of Windows CE that the desktop lacks
//   platform/headless  the whole interface in memory (platform/memory), under the control of a test or a tool
//   platform/device    Windows CE itself, on ARM: its coredll.exports and commctrl.exports list all calls of
//                      the product to the system
#pragma once

#include <atomic>
#include <cstdint>

// The include path chooses the implementation. Besides the system's own names it provides values that differ
// between platforms: WS_EX_NODRAG, SETTINGS_FALLBACK_ROOT and SETTINGS_KEY_VIEW for the settings,
// COLOR_LIBRARY and COLOR_EXPORT for the colour dialog.
#include "system.h"

// Function codes of EscapeCommFunction that switch a port into and out of infrared mode. Windows CE
// drivers know them; desktop drivers refuse them.
constexpr DWORD SETIR = 10;
constexpr DWORD CLRIR = 11;

// Codes of SystemParametersInfoW for the platform type and the maker's device text.
constexpr UINT SPI_GETPLATFORMTYPE = 0x101;
constexpr UINT SPI_GETOEMINFO = 0x102;

// ---- Provided by each implementation, in addition to the system's own calls --------------------------

// Puts `value` into `place` and returns the old value, as one step. Handles are taken out of their global
// variables in this way before they are closed, so that only one thread closes a handle.
HANDLE ExchangeHandle(std::atomic<HANDLE>& place, HANDLE value);

// Puts `value` into `place` if it still holds `expected`, as one step. True if it did.
bool ReplaceHandle(std::atomic<HANDLE>& place, HANDLE expected, HANDLE value);

// Font of the text page: fixed pitch if the system has such a font, so that the satellite columns align. The
// caller deletes it. Null: draw with the initial font of a device context.
HFONT CreateTextPageFont();

// Makes the client area of a window that is being created at least `width` x `height` pixels, if the program
// can choose the size; on a device windows fill the screen and stay as they are.
void FitMainWindow(HWND window, int width, int height);

// Dots per inch of the screen on which windows appear first. Letters and dialogs have grown with them
// already. 96 on a device, for whose screen every picture is made.
int DotsPerInch();

// Brings another process' window to the front, together with its open dialog or box.
void BringToFront(HWND window);

// Makes a dialog's menu bar pass the Back key to the dialog as a hot-key message, if the device has this key.
void PassBackKeyToDialog(HWND menuBar);

// Ends a read or write in which the thread may be waiting. Needed on systems where a handle cannot be closed
// during a read, if the driver has refused the time-outs that make reads return immediately.
void CancelThreadIo(HANDLE thread);
