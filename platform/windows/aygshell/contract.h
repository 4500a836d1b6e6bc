// SPDX-License-Identifier: MIT
// The shell of hand-held devices as its programs know it: structures, flags and messages, by their published
// layout. Nothing here comes from the program that calls, so that a mistake in one shows against the other.
#pragma once

#ifndef UNICODE
#define UNICODE
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <commctrl.h>

// SHInitDialog.
struct ShInitDialogInfo {
    DWORD mask;
    HWND dialog;
    DWORD flags;
};
constexpr DWORD FlagsAreValid = 1;
constexpr DWORD WantsDoneButton = 1, FullScreen = 4;

// SHCreateMenuBar. The bar is a resource of words: number of a menu resource, count of buttons, and for each
// button picture, command, state, style, string, 0, and which of the menu's pop-ups it opens.
struct ShMenuBarInfo {
    DWORD size;
    HWND parent;
    DWORD flags;
    UINT bar;
    HINSTANCE instance;
    int bitmap, bitmapCount;
    HWND window; // in return
    COLORREF background;
};
constexpr DWORD EmptyBar = 1; // a flag: the buttons of the resource are left out
constexpr WORD NoPopup = 0xFFFF;

// Message to a menu bar: what happens to a key. wParam is the key, lParam the flags and which of them to set.
constexpr UINT OverrideKey = WM_USER + 403;
constexpr WORD NoDefaultAction = 1, NotifyParent = 2;

// Message to an edit: which characters its keys type.
constexpr UINT SetInputMode = 0xDE;
constexpr LPARAM NumbersOnly = 2;

constexpr WPARAM BackKey = VK_ESCAPE, FirstSoftKey = VK_F1, SecondSoftKey = VK_F2;
constexpr WORD KeyWasReleased = 0x1000; // among the modifiers of WM_HOTKEY
