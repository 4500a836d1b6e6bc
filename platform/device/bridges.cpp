// SPDX-License-Identifier: MIT
// The device's differences from other platforms.

#include <cstring>

#include "platform/device/packed_template.h"
#include "platform/platform.h"

// ---- Calls that the system has in another form --------------------------------------------------------

INT_PTR DeviceDialogBoxParam(HINSTANCE instance, const wchar_t* name, HWND owner, DLGPROC procedure,
                             LPARAM parameter)
{
    // Read only while the dialog is made, so one place serves a dialog over another, too.
    alignas(DWORD) static uint8_t dialogTemplate[LargestTemplate];
    HRSRC resource = FindResourceW(instance, name, MAKEINTRESOURCEW(PackedTemplateType));
    HGLOBAL found = resource ? LoadResource(instance, resource) : nullptr;
    // A loaded resource is its bytes; nothing has to be locked.
    if (!found || !UnpackTemplate(static_cast<const uint8_t*>(found), dialogTemplate)) return -1;
    return DialogBoxIndirectParamW(instance, reinterpret_cast<const DLGTEMPLATE*>(dialogTemplate), owner,
                                   procedure, parameter);
}

DWORD DeviceCurrentThreadId()
{
    constexpr uintptr_t SystemHandles = 0xFFFFC804, CurrentThread = 1;
    return reinterpret_cast<const volatile DWORD*>(SystemHandles)[CurrentThread];
}

// ---- Common to all platforms --------------------------------------------------------------------------

// The processors have no compare-and-exchange; the system has, for one-processor machines.
extern "C" {
LONG SystemExchange(std::atomic<HANDLE>* place, HANDLE value) asm("InterlockedExchange");
LONG SystemTestExchange(std::atomic<HANDLE>* place, HANDLE expected,
                        HANDLE value) asm("InterlockedTestExchange");
}
static_assert(sizeof(std::atomic<HANDLE>) == sizeof(LONG));

HANDLE ExchangeHandle(std::atomic<HANDLE>& place, HANDLE value)
{
    return reinterpret_cast<HANDLE>(SystemExchange(&place, value));
}

bool ReplaceHandle(std::atomic<HANDLE>& place, HANDLE expected, HANDLE value)
{
    return reinterpret_cast<HANDLE>(SystemTestExchange(&place, expected, value)) == expected;
}

// 19 lines of 14 pixels, narrow enough for twelve satellites and the longest lines on 240 pixels.
HFONT CreateTextPageFont()
{
    LOGFONTW font = {};
    font.lfHeight = 14;
    constexpr wchar_t Face[] = L"Tahoma";
    std::memcpy(font.lfFaceName, Face, sizeof Face);
    return CreateFontIndirectW(&font);
}

void FitMainWindow(HWND, int, int) {} // windows fill the screen

int DotsPerInch()
{
    return 96;
}

void BringToFront(HWND window)
{
    // A window with a dialog open is brought forward by its lowest bit: the system then shows the dialog.
    constexpr uintptr_t WithItsDialogs = 1;
    SetForegroundWindow(reinterpret_cast<HWND>(reinterpret_cast<uintptr_t>(window) | WithItsDialogs));
}

void PassBackKeyToDialog(HWND menuBar)
{
    constexpr UINT OverrideKey = WM_USER + 403;
    constexpr WORD NoDefault = 1, Notify = 2;
    SendMessageW(menuBar, OverrideKey, VK_ESCAPE, MAKELPARAM(NoDefault | Notify, NoDefault | Notify));
}

void CancelThreadIo(HANDLE) {} // closing the port ends the reads in it
