// SPDX-License-Identifier: MIT
// The platform interface of the device implementation: the desktop's headers, corrected where Windows CE
// differs, and what only Windows CE has. The calls are the system's own; coredll.exports and commctrl.exports
// list which of them there are.
#pragma once

#define UNICODE
#define NOMINMAX
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

// ---- What the compiler must provide -------------------------------------------------------------------

static_assert(sizeof(wchar_t) == 2 && sizeof(long) == 4 && sizeof(void*) == 4 && char(-1) < 0);
static_assert(sizeof(BITMAPINFOHEADER) == 40 && sizeof(COMMTIMEOUTS) == 20 && sizeof(COMSTAT) == 12 &&
              sizeof(DCB) == 28 && sizeof(COMMPROP) == 64 && sizeof(LOGFONTW) == 92 && sizeof(MSG) == 28 &&
              sizeof(OSVERSIONINFOW) == 276 && sizeof(PAINTSTRUCT) == 64 && sizeof(RECT) == 16 &&
              sizeof(SCROLLINFO) == 28 && sizeof(SYSTEMTIME) == 16 && sizeof(WNDCLASSW) == 40);

extern "C" {

// ---- Calls that differ from the desktop's -------------------------------------------------------------

#undef GetProcAddress
FARPROC GetProcAddressW(HMODULE library, const wchar_t* name);

// Built on the form that takes the template; the system has no other.
INT_PTR DeviceDialogBoxParam(HINSTANCE instance, const wchar_t* name, HWND owner, DLGPROC procedure,
                             LPARAM parameter);
#undef DialogBoxParamW
#define DialogBoxParamW DeviceDialogBoxParam

// The system keeps the number in a page that every process can read; there is no call.
DWORD DeviceCurrentThreadId();
#undef GetCurrentThreadId
#define GetCurrentThreadId DeviceCurrentThreadId

// ---- Command bar --------------------------------------------------------------------------------------

constexpr DWORD WS_EX_NODRAG = 0x40000000;

HWND CommandBar_Create(HINSTANCE instance, HWND window, int id);
BOOL CommandBar_InsertMenubar(HWND bar, HINSTANCE instance, WORD menu, WORD index);
int CommandBar_Height(HWND bar);

// ---- Common dialogs and folders -----------------------------------------------------------------------

struct OPENFILENAMEW {
    DWORD lStructSize;
    HWND hwndOwner;
    HINSTANCE hInstance;
    const wchar_t* lpstrFilter;
    wchar_t* lpstrCustomFilter;
    DWORD nMaxCustFilter, nFilterIndex;
    wchar_t* lpstrFile;
    DWORD nMaxFile;
    wchar_t* lpstrFileTitle;
    DWORD nMaxFileTitle;
    const wchar_t *lpstrInitialDir, *lpstrTitle;
    DWORD Flags;
    WORD nFileOffset, nFileExtension;
    const wchar_t* lpstrDefExt;
    LPARAM lCustData;
    void* lpfnHook;
    const wchar_t* lpTemplateName;
};
static_assert(sizeof(OPENFILENAMEW) == 76);
BOOL GetSaveFileNameW(OPENFILENAMEW* dialog);

struct CHOOSECOLORW {
    DWORD lStructSize;
    HWND hwndOwner, hInstance;
    COLORREF rgbResult, *lpCustColors;
    DWORD Flags;
    LPARAM lCustData;
    void* lpfnHook;
    const wchar_t* lpTemplateName;
};
static_assert(sizeof(CHOOSECOLORW) == 36);
constexpr DWORD CC_RGBINIT = 1, CC_ANYCOLOR = 0x100;

constexpr int CSIDL_PERSONAL = 5, CSIDL_APPDATA = 26;
BOOL SHGetSpecialFolderPathW(HWND owner, wchar_t* path, int folder, BOOL create);

} // extern "C"

// The queue cannot be asked for sent messages alone; any look at it serves them.
#undef PM_QS_SENDMESSAGE
constexpr UINT PM_QS_SENDMESSAGE = 0;

// The machine-wide root can always be written, and has one view.
#define SETTINGS_FALLBACK_ROOT (static_cast<HKEY>(nullptr))
constexpr DWORD SETTINGS_KEY_VIEW = 0;

// Library and export that offer the colour chooser.
constexpr const wchar_t* COLOR_LIBRARY = L"COMMDLG.DLL";
constexpr const wchar_t* COLOR_EXPORT = L"ChooseColor";
