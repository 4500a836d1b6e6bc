// SPDX-License-Identifier: MIT
// The platform interface of the desktop implementation: the system's own headers, the few names that only
// Windows CE has, and the calls whose desktop version differs. The latter keep their names in product code:
// the name is redirected here to a bridge in this folder; its comment names the difference and the reason.
#pragma once

#ifndef UNICODE
#define UNICODE
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <commdlg.h>
#include <shlobj.h>

// ---- Only on Windows CE -------------------------------------------------------------------------------

constexpr DWORD WS_EX_NODRAG = 0; // desktop windows can always be dragged

// The command bar of Windows CE is the window's own menu here; it takes no room of the client area.
HWND CommandBar_Create(HINSTANCE instance, HWND window, int id);
BOOL CommandBar_InsertMenubar(HWND bar, HINSTANCE instance, WORD menu, WORD index);
int CommandBar_Height(HWND bar);

// GetProcAddress with a wide name or MAKEINTRESOURCEW of a number. A name that is missing is also looked for
// with the desktop's ending W.
FARPROC GetProcAddressW(HMODULE library, const wchar_t* name);

// ---- Different on the desktop -------------------------------------------------------------------------

// Ports "COMn:" open as \\.\COMn, so that names above 9 and drivers that insist on that form work.
HANDLE BridgeCreateFile(const wchar_t* name, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security,
                        DWORD disposition, DWORD attributes, HANDLE pattern);
#undef CreateFileW
#define CreateFileW BridgeCreateFile

// The device's library of common dialogs has another name on the desktop.
HMODULE BridgeLoadLibrary(const wchar_t* name);
#undef LoadLibraryW
#define LoadLibraryW BridgeLoadLibrary

// Platform type: the environment variable TORAVANE_PLATFORM, for trying the hand-held layouts; a Pocket PC
// when the hand-held shell is beside the program. The desktop's own answer is an error; it is never "access
// denied", which on a device means a Smartphone.
BOOL BridgeSystemParametersInfo(UINT action, UINT size, void* data, UINT flags);
#undef SystemParametersInfoW
#define SystemParametersInfoW BridgeSystemParametersInfo

// Device registry paths may begin with a backslash, which the desktop refuses. A desktop keeps the list of
// its serial ports in another form than devices; where "Drivers\RegisteredDevice" is missing, a copy in that
// form opens.
LONG BridgeRegOpenKeyEx(HKEY root, const wchar_t* path, DWORD options, REGSAM access, HKEY* key);
#undef RegOpenKeyExW
#define RegOpenKeyExW BridgeRegOpenKeyEx

// Ordinary users may not write the machine-wide root, and a 64-bit process gets no virtual copy of it:
// settings then live under the user's root.
#define SETTINGS_FALLBACK_ROOT HKEY_CURRENT_USER
constexpr DWORD SETTINGS_KEY_VIEW = KEY_WOW64_64KEY;

// Library and export that offer the colour chooser.
constexpr const wchar_t* COLOR_LIBRARY = L"COMMDLG.DLL";
constexpr const wchar_t* COLOR_EXPORT = L"ChooseColor";
