// SPDX-License-Identifier: MIT
// The platform interface of the system in memory: our own declarations of the names that the product
// uses, with the published values. `wchar_t` is the platform's wide character, of any width.
#pragma once

#include <cstddef>
#include <cstdint>

#define CALLBACK
#define WINAPI

// ---- Types --------------------------------------------------------------------------------------------

using BOOL = int;
using BYTE = uint8_t;
using WORD = uint16_t;
using DWORD = uint32_t;
using LONG = int32_t;
using UINT = uint32_t;
using ATOM = uint16_t;
using WPARAM = uintptr_t;
using LPARAM = intptr_t;
using LRESULT = intptr_t;
using INT_PTR = intptr_t;
using UINT_PTR = uintptr_t;
using LONG_PTR = intptr_t;
using COLORREF = uint32_t;
using HANDLE = void*;
using HGDIOBJ = void*;
using HKEY = struct MemoryRegistryKey*;
using HWND = struct MemoryWindow*;
using HMENU = struct MemoryMenuTree*;
using HINSTANCE = struct MemoryModule*;
using HMODULE = HINSTANCE;
using HDC = struct MemoryDc*;
using HBITMAP = struct MemoryBitmap*;
using HBRUSH = struct MemoryBrush*;
using HPEN = struct MemoryPen*;
using HFONT = struct MemoryFont*;
using HICON = struct MemoryIcon*;
using HCURSOR = HICON;
using FARPROC = INT_PTR (*)();
using WNDPROC = LRESULT (*)(HWND, UINT, WPARAM, LPARAM);
using DLGPROC = INT_PTR (*)(HWND, UINT, WPARAM, LPARAM);
using TIMERPROC = void (*)(HWND, UINT, UINT_PTR, DWORD);
using LPTHREAD_START_ROUTINE = DWORD (*)(void*);

struct POINT {
    LONG x, y;
};
struct SIZE {
    LONG cx, cy;
};
struct RECT {
    LONG left, top, right, bottom;
};
struct MSG {
    HWND hwnd;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    DWORD time;
    POINT pt;
};
struct SCROLLINFO {
    UINT cbSize, fMask;
    int nMin, nMax;
    UINT nPage;
    int nPos, nTrackPos;
};
struct PAINTSTRUCT {
    HDC hdc;
    BOOL fErase;
    RECT rcPaint;
    BOOL fRestore, fIncUpdate;
    BYTE rgbReserved[32];
};
struct SYSTEMTIME {
    WORD wYear, wMonth, wDayOfWeek, wDay, wHour, wMinute, wSecond, wMilliseconds;
};

struct WNDCLASSW {
    UINT style;
    WNDPROC lpfnWndProc;
    int cbClsExtra, cbWndExtra;
    HINSTANCE hInstance;
    HICON hIcon;
    HCURSOR hCursor;
    HBRUSH hbrBackground;
    const wchar_t *lpszMenuName, *lpszClassName;
};

struct OSVERSIONINFOW {
    DWORD dwOSVersionInfoSize, dwMajorVersion, dwMinorVersion, dwBuildNumber, dwPlatformId;
    wchar_t szCSDVersion[128];
};

struct DCB {
    DWORD DCBlength, BaudRate;
    DWORD fBinary : 1, fParity : 1, fOutxCtsFlow : 1, fOutxDsrFlow : 1, fDtrControl : 2, fDsrSensitivity : 1,
        fTXContinueOnXoff : 1, fOutX : 1, fInX : 1, fErrorChar : 1, fNull : 1, fRtsControl : 2,
        fAbortOnError : 1, fDummy2 : 17;
    WORD wReserved, XonLim, XoffLim;
    BYTE ByteSize, Parity, StopBits;
    char XonChar, XoffChar, ErrorChar, EofChar, EvtChar;
    WORD wReserved1;
};
static_assert(sizeof(DCB) == 28);

struct COMMPROP {
    WORD wPacketLength, wPacketVersion;
    DWORD dwServiceMask, dwReserved1, dwMaxTxQueue, dwMaxRxQueue, dwMaxBaud, dwProvSubType,
        dwProvCapabilities, dwSettableParams, dwSettableBaud;
    WORD wSettableData, wSettableStopParity;
    DWORD dwCurrentTxQueue, dwCurrentRxQueue, dwProvSpec1, dwProvSpec2;
    wchar_t wcProvChar[1];
};

struct COMMTIMEOUTS {
    DWORD ReadIntervalTimeout, ReadTotalTimeoutMultiplier, ReadTotalTimeoutConstant,
        WriteTotalTimeoutMultiplier, WriteTotalTimeoutConstant;
};

struct COMSTAT {
    DWORD fCtsHold : 1, fDsrHold : 1, fRlsdHold : 1, fXoffHold : 1, fXoffSent : 1, fEof : 1, fTxim : 1,
        fReserved : 25;
    DWORD cbInQue, cbOutQue;
};

struct BITMAPINFOHEADER {
    DWORD biSize;
    LONG biWidth, biHeight;
    WORD biPlanes, biBitCount;
    DWORD biCompression, biSizeImage;
    LONG biXPelsPerMeter, biYPelsPerMeter;
    DWORD biClrUsed, biClrImportant;
};
struct RGBQUAD {
    BYTE rgbBlue, rgbGreen, rgbRed, rgbReserved;
};
struct BITMAPINFO {
    BITMAPINFOHEADER bmiHeader;
    RGBQUAD bmiColors[1];
};

struct LOGFONTW {
    LONG lfHeight, lfWidth, lfEscapement, lfOrientation, lfWeight;
    BYTE lfItalic, lfUnderline, lfStrikeOut, lfCharSet, lfOutPrecision, lfClipPrecision, lfQuality,
        lfPitchAndFamily;
    wchar_t lfFaceName[32];
};

struct OPENFILENAMEW {
    DWORD lStructSize;
    HWND hwndOwner;
    HINSTANCE hInstance;
    const wchar_t* lpstrFilter; // pairs of text and pattern, each terminated, ended by an empty text
    wchar_t* lpstrCustomFilter;
    DWORD nMaxCustFilter, nFilterIndex; // nFilterIndex counts from 1
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
    void* pvReserved;
    DWORD dwReserved, FlagsEx;
};

struct DRAWITEMSTRUCT {
    UINT CtlType, CtlID, itemID, itemAction, itemState;
    HWND hwndItem;
    HDC hDC;
    RECT rcItem;
    uintptr_t itemData;
};
constexpr UINT ODS_FOCUS = 0x10;

struct CHOOSECOLORW {
    DWORD lStructSize;
    HWND hwndOwner, hInstance;
    COLORREF rgbResult, *lpCustColors;
    DWORD Flags;
    LPARAM lCustData;
    void* lpfnHook;
    const wchar_t* lpTemplateName;
};

// ---- Constants ----------------------------------------------------------------------------------------

constexpr BOOL FALSE = 0, TRUE = 1;
#define INVALID_HANDLE_VALUE (reinterpret_cast<HANDLE>(static_cast<intptr_t>(-1)))
constexpr size_t MAX_PATH = 260;

constexpr DWORD ERROR_SUCCESS = 0, ERROR_FILE_NOT_FOUND = 2, ERROR_ACCESS_DENIED = 5,
                ERROR_INVALID_HANDLE = 6, ERROR_NOT_ENOUGH_MEMORY = 8, ERROR_GEN_FAILURE = 31,
                ERROR_INVALID_PARAMETER = 87, ERROR_DISK_FULL = 112, ERROR_MORE_DATA = 234,
                ERROR_ALREADY_EXISTS = 183, ERROR_NO_MORE_ITEMS = 259, ERROR_INVALID_WINDOW_HANDLE = 1400,
                ERROR_CONTROL_ID_NOT_FOUND = 1421, ERROR_RESOURCE_NAME_NOT_FOUND = 1814,
                ERROR_INVALID_SPI_VALUE = 1439, ERROR_MOD_NOT_FOUND = 126, ERROR_PROC_NOT_FOUND = 127;

constexpr DWORD GENERIC_READ = 0x80000000, GENERIC_WRITE = 0x40000000, CREATE_NEW = 1, CREATE_ALWAYS = 2,
                OPEN_EXISTING = 3, OPEN_ALWAYS = 4, FILE_ATTRIBUTE_NORMAL = 0x80, STILL_ACTIVE = 259,
                INFINITE = 0xFFFFFFFF, WAIT_OBJECT_0 = 0, WAIT_TIMEOUT = 258, WAIT_FAILED = 0xFFFFFFFF;
constexpr DWORD FORMAT_MESSAGE_ALLOCATE_BUFFER = 0x100, FORMAT_MESSAGE_IGNORE_INSERTS = 0x200,
                FORMAT_MESSAGE_FROM_SYSTEM = 0x1000;
constexpr UINT CP_ACP = 0; // the system's 8-bit code page
constexpr DWORD QS_SENDMESSAGE = 0x40;
constexpr UINT PM_NOREMOVE = 0, PM_REMOVE = 1, PM_QS_SENDMESSAGE = QS_SENDMESSAGE << 16;

#define HKEY_CURRENT_USER (reinterpret_cast<HKEY>(static_cast<uintptr_t>(0x80000001)))
#define HKEY_LOCAL_MACHINE (reinterpret_cast<HKEY>(static_cast<uintptr_t>(0x80000002)))
constexpr DWORD KEY_READ = 0x20019, KEY_WRITE = 0x20006, REG_OPTION_NON_VOLATILE = 0, REG_SZ = 1,
                REG_BINARY = 3, REG_DWORD = 4, REG_MULTI_SZ = 7;

constexpr UINT WM_NULL = 0, WM_CREATE = 1, WM_DESTROY = 2, WM_SIZE = 5, WM_ACTIVATE = 6, WM_SETTEXT = 0xC,
               WM_GETTEXT = 0xD, WM_GETTEXTLENGTH = 0xE, WM_PAINT = 0xF, WM_CLOSE = 0x10, WM_QUIT = 0x12,
               WM_ERASEBKGND = 0x14, WM_SETTINGCHANGE = 0x1A, WM_DRAWITEM = 0x2B, WM_SETFONT = 0x30,
               WM_SETICON = 0x80, WM_GETDLGCODE = 0x87, WM_KEYDOWN = 0x100, WM_CHAR = 0x102,
               WM_INITDIALOG = 0x110, WM_COMMAND = 0x111, WM_TIMER = 0x113, WM_VSCROLL = 0x115,
               WM_CTLCOLOREDIT = 0x133, WM_CTLCOLORBTN = 0x135, WM_CTLCOLORSTATIC = 0x138, WM_HOTKEY = 0x312,
               WM_USER = 0x400, WM_APP = 0x8000;
constexpr WPARAM SIZE_MINIMIZED = 1;
constexpr WORD WA_INACTIVE = 0;
constexpr WPARAM ICON_SMALL = 0;
constexpr int SW_HIDE = 0, SW_SHOWNORMAL = 1, SW_SHOW = 5, SW_RESTORE = 9;
constexpr int CW_USEDEFAULT = static_cast<int>(0x80000000);
constexpr int GWL_STYLE = -16;
constexpr UINT SWP_NOSIZE = 1, SWP_NOMOVE = 2, SWP_NOZORDER = 4, SWP_NOACTIVATE = 0x10,
               SWP_FRAMECHANGED = 0x20;
constexpr DWORD WS_OVERLAPPED = 0, WS_POPUP = 0x80000000, WS_CHILD = 0x40000000, WS_VISIBLE = 0x10000000,
                WS_DISABLED = 0x08000000, WS_CAPTION = 0x00C00000, WS_BORDER = 0x00800000,
                WS_VSCROLL = 0x00200000, WS_SYSMENU = 0x00080000, WS_GROUP = 0x00020000,
                WS_TABSTOP = 0x00010000, WS_EX_NODRAG = 0x40000000;
constexpr UINT CS_VREDRAW = 1, CS_HREDRAW = 2;

constexpr int IDOK = 1, IDCANCEL = 2;
constexpr UINT MB_OK = 0, MB_OKCANCEL = 1, MB_ICONEXCLAMATION = 0x30, MB_ICONINFORMATION = 0x40,
               MB_DEFBUTTON2 = 0x100;
constexpr UINT BN_CLICKED = 0, BM_GETCHECK = 0xF0, BM_SETCHECK = 0xF1, BM_CLICK = 0xF5, BST_UNCHECKED = 0,
               BST_CHECKED = 1, BST_INDETERMINATE = 2;
constexpr UINT DLGC_DEFPUSHBUTTON = 0x10, DLGC_UNDEFPUSHBUTTON = 0x20, DLGC_RADIOBUTTON = 0x40,
               DLGC_BUTTON = 0x2000;
constexpr UINT BS_NOTIFY = 0x4000, GW_HWNDNEXT = 2, GW_CHILD = 5;
constexpr int SB_LINEUP = 0, SB_LINEDOWN = 1, SB_PAGEUP = 2, SB_PAGEDOWN = 3, SB_THUMBPOSITION = 4,
              SB_THUMBTRACK = 5, SB_TOP = 6, SB_BOTTOM = 7, SB_VERT = 1;
constexpr UINT SIF_RANGE = 1, SIF_PAGE = 2, SIF_POS = 4, SW_SCROLLCHILDREN = 1, SW_INVALIDATE = 2,
               SW_ERASE = 4;
constexpr UINT BN_SETFOCUS = 6, LBN_SETFOCUS = 4, CBN_SETFOCUS = 3, EN_SETFOCUS = 0x100;
constexpr UINT EM_SETLIMITTEXT = 0xC5, STN_CLICKED = 0;
constexpr UINT CB_GETEDITSEL = 0x140, CB_ADDSTRING = 0x143, CB_DELETESTRING = 0x144, CB_GETCOUNT = 0x146,
               CB_GETCURSEL = 0x147, CB_GETLBTEXT = 0x148, CB_GETLBTEXTLEN = 0x149, CB_INSERTSTRING = 0x14A,
               CB_RESETCONTENT = 0x14B, CB_GETDROPPEDCONTROLRECT = 0x152, CB_SETCURSEL = 0x14E,
               CB_LIMITTEXT = 0x141;
constexpr LRESULT CB_ERR = -1, LB_ERR = -1;
constexpr UINT LB_ADDSTRING = 0x180, LB_INSERTSTRING = 0x181, LB_DELETESTRING = 0x182,
               LB_RESETCONTENT = 0x184, LB_SETCURSEL = 0x186, LB_GETCURSEL = 0x188, LB_GETTEXT = 0x189,
               LB_GETTEXTLEN = 0x18A, LB_GETCOUNT = 0x18B;

constexpr int WHITE_BRUSH = 0, HOLLOW_BRUSH = 5, BLACK_PEN = 7, BLACK_BRUSH = 4;
constexpr DWORD SRCCOPY = 0x00CC0020, WHITENESS = 0x00FF0062;
constexpr UINT DIB_RGB_COLORS = 0, ETO_OPAQUE = 2, BI_RGB = 0;
constexpr UINT DT_LEFT = 0, DT_CENTER = 1, DT_VCENTER = 4, DT_SINGLELINE = 0x20, DT_NOCLIP = 0x100,
               DT_CALCRECT = 0x400, DT_NOPREFIX = 0x800;
constexpr int TRANSPARENT = 1, OPAQUE = 2;
constexpr COLORREF RGB(BYTE red, BYTE green, BYTE blue)
{
    return red | (green << 8) | (blue << 16);
}
constexpr WORD LOWORD(WPARAM value)
{
    return static_cast<WORD>(value);
}
constexpr WORD HIWORD(WPARAM value)
{
    return static_cast<WORD>(value >> 16);
}
constexpr WPARAM MAKEWPARAM(WORD low, WORD high)
{
    return low | (static_cast<WPARAM>(high) << 16);
}
inline const wchar_t* MAKEINTRESOURCEW(uintptr_t number)
{
    return reinterpret_cast<const wchar_t*>(number);
}

// Folder codes of SHGetSpecialFolderPathW.
constexpr int CSIDL_PERSONAL = 5, CSIDL_APPDATA = 26;

// Event mask and results of the common dialogs.
constexpr DWORD CC_RGBINIT = 1, CC_ANYCOLOR = 0x100;

// The settings store's second root: none, the machine-wide root is always writable here unless a test says
// otherwise; the key view of 64-bit systems has no meaning here.
#define SETTINGS_FALLBACK_ROOT HKEY_CURRENT_USER
constexpr DWORD SETTINGS_KEY_VIEW = 0;

// Library and export that offer the colour chooser.
constexpr const wchar_t* COLOR_LIBRARY = L"COMMDLG.DLL";
constexpr const wchar_t* COLOR_EXPORT = L"ChooseColor";

// ---- Calls --------------------------------------------------------------------------------------------

// Errors.
DWORD GetLastError();
void SetLastError(DWORD error);
DWORD FormatMessageW(DWORD flags, const void* source, DWORD error, DWORD language, wchar_t* buffer,
                     DWORD size, void* arguments);
HANDLE LocalFree(HANDLE memory);

// Files and serial ports. A name of the form "COMn:" is a port, anything else a file.
HANDLE CreateFileW(const wchar_t* name, DWORD access, DWORD share, void* security, DWORD disposition,
                   DWORD attributes, HANDLE pattern);
BOOL ReadFile(HANDLE file, void* buffer, DWORD count, DWORD* read, void* overlapped);
BOOL WriteFile(HANDLE file, const void* buffer, DWORD count, DWORD* written, void* overlapped);
BOOL CloseHandle(HANDLE handle);
BOOL GetCommProperties(HANDLE port, COMMPROP* properties);
BOOL GetCommState(HANDLE port, DCB* dcb);
BOOL SetCommState(HANDLE port, DCB* dcb);
BOOL GetCommTimeouts(HANDLE port, COMMTIMEOUTS* timeouts);
BOOL SetCommTimeouts(HANDLE port, COMMTIMEOUTS* timeouts);
BOOL ClearCommError(HANDLE port, DWORD* errors, COMSTAT* status);
BOOL EscapeCommFunction(HANDLE port, DWORD function);
BOOL SetCommMask(HANDLE port, DWORD mask);
BOOL SHGetSpecialFolderPathW(HWND owner, wchar_t* path, int folder, BOOL create);
BOOL GetSaveFileNameW(OPENFILENAMEW* dialog);

// Threads and time.
// Ends with its last handle. Nobody waits for one here: it only shows by ERROR_ALREADY_EXISTS that the name
// is taken.
HANDLE CreateMutexW(void* security, BOOL owned, const wchar_t* name);

HANDLE CreateThread(void* security, DWORD stackSize, LPTHREAD_START_ROUTINE start, void* parameter,
                    DWORD flags, DWORD* id);
BOOL GetExitCodeThread(HANDLE thread, DWORD* exitCode);
DWORD GetCurrentThreadId();
void Sleep(DWORD milliseconds);
DWORD GetTickCount();
void GetLocalTime(SYSTEMTIME* time);
DWORD MsgWaitForMultipleObjectsEx(DWORD count, const HANDLE* handles, DWORD milliseconds, DWORD wakeMask,
                                  DWORD flags);

// Registry. Keys and value names compare without case, as the system's do.
LONG RegOpenKeyExW(HKEY root, const wchar_t* path, DWORD options, DWORD access, HKEY* key);
LONG RegCreateKeyExW(HKEY root, const wchar_t* path, DWORD reserved, wchar_t* className, DWORD options,
                     DWORD access, void* security, HKEY* key, DWORD* disposition);
LONG RegQueryValueExW(HKEY key, const wchar_t* name, DWORD* reserved, DWORD* type, BYTE* data, DWORD* size);
LONG RegSetValueExW(HKEY key, const wchar_t* name, DWORD reserved, DWORD type, const BYTE* data, DWORD size);
LONG RegDeleteValueW(HKEY key, const wchar_t* name);
LONG RegEnumKeyExW(HKEY key, DWORD index, wchar_t* name, DWORD* nameCount, DWORD* reserved,
                   wchar_t* className, DWORD* classCount, void* lastWrite);
LONG RegCloseKey(HKEY key);

// Text in the 8-bit form of the system: here its first 256 characters, the rest is `unknown`. `count` must be
// -1.
int WideCharToMultiByte(UINT codePage, DWORD flags, const wchar_t* wide, int count, char* narrow,
                        int capacity, const char* unknown, BOOL* usedUnknown);

// System and libraries. GetProcAddressW takes a name or MAKEINTRESOURCEW of an export's number.
BOOL GetVersionExW(OSVERSIONINFOW* version);
BOOL SystemParametersInfoW(UINT action, UINT size, void* data, UINT flags);
HMODULE LoadLibraryW(const wchar_t* name);
FARPROC GetProcAddressW(HMODULE library, const wchar_t* name);
BOOL FreeLibrary(HMODULE library);

// Windows, messages, menus.
ATOM RegisterClassW(const WNDCLASSW* windowClass);
HWND CreateWindowExW(DWORD extendedStyle, const wchar_t* className, const wchar_t* title, DWORD style, int x,
                     int y, int width, int height, HWND parent, HMENU menu, HINSTANCE instance,
                     void* parameter);
BOOL DestroyWindow(HWND window);
BOOL IsWindow(HWND window);
LRESULT DefWindowProcW(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
HWND FindWindowW(const wchar_t* className, const wchar_t* title);
HWND GetActiveWindow();
HWND GetParent(HWND window);
HWND GetWindow(HWND window, UINT relation); // GW_CHILD, GW_HWNDNEXT among children
HWND SetFocus(HWND window);
HWND GetFocus();
BOOL EnableWindow(HWND window, BOOL enable);
BOOL IsWindowEnabled(HWND window);
BOOL ShowWindow(HWND window, int command);
BOOL UpdateWindow(HWND window);
BOOL InvalidateRect(HWND window, const RECT* rectangle, BOOL erase);
BOOL GetClientRect(HWND window, RECT* rectangle);
BOOL GetWindowRect(HWND window, RECT* rectangle);
BOOL ScreenToClient(HWND window, POINT* point);
int SetScrollInfo(HWND window, int bar, const SCROLLINFO* info, BOOL redraw); // returns the position
int ScrollWindowEx(HWND window, int right, int down, const RECT* area, const RECT* clip, void* updateRegion,
                   RECT* update, UINT flags);
BOOL SetWindowPos(HWND window, HWND after, int x, int y, int width, int height, UINT flags);
LONG GetWindowLongW(HWND window, int index);
LONG SetWindowLongW(HWND window, int index, LONG value);
BOOL SetWindowTextW(HWND window, const wchar_t* text);
int GetWindowTextW(HWND window, wchar_t* text, int capacity);
int GetWindowTextLengthW(HWND window);
LRESULT SendMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
BOOL PostMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
void PostQuitMessage(int exitCode);
BOOL GetMessageW(MSG* message, HWND window, UINT first, UINT last);
BOOL PeekMessageW(MSG* message, HWND window, UINT first, UINT last, UINT flags);
BOOL TranslateMessage(const MSG* message);
LRESULT DispatchMessageW(const MSG* message);
UINT_PTR SetTimer(HWND window, UINT_PTR id, UINT period, TIMERPROC procedure);
BOOL KillTimer(HWND window, UINT_PTR id);
int MessageBoxW(HWND owner, const wchar_t* text, const wchar_t* caption, UINT type);
HWND CommandBar_Create(HINSTANCE instance, HWND window, int id);
BOOL CommandBar_InsertMenubar(HWND bar, HINSTANCE instance, WORD menu, WORD index);
int CommandBar_Height(HWND bar);

// Dialogs and their controls.
INT_PTR DialogBoxParamW(HINSTANCE instance, const wchar_t* name, HWND owner, DLGPROC procedure,
                        LPARAM parameter);
BOOL EndDialog(HWND dialog, INT_PTR result);
HWND GetDlgItem(HWND dialog, int control);
int GetDlgCtrlID(HWND control);
BOOL SetDlgItemTextW(HWND dialog, int control, const wchar_t* text);
UINT GetDlgItemTextW(HWND dialog, int control, wchar_t* text, int capacity);
BOOL SetDlgItemInt(HWND dialog, int control, UINT value, BOOL isSigned);
LRESULT SendDlgItemMessageW(HWND dialog, int control, UINT message, WPARAM wParam, LPARAM lParam);

// Resources, compiled from the program's own resource script.
int LoadStringW(HINSTANCE instance, UINT id, wchar_t* text, int capacity);
HICON LoadIconW(HINSTANCE instance, const wchar_t* name);
HCURSOR LoadCursorW(HINSTANCE instance, const wchar_t* name);
HBITMAP LoadBitmapW(HINSTANCE instance, const wchar_t* name);
HMENU LoadMenuW(HINSTANCE instance, const wchar_t* name);

// Drawing. A device context belongs to the thread that got it.
HDC BeginPaint(HWND window, PAINTSTRUCT* paint);
BOOL EndPaint(HWND window, const PAINTSTRUCT* paint);
HDC GetDC(HWND window);
int ReleaseDC(HWND window, HDC dc);
HDC CreateCompatibleDC(HDC dc);
BOOL DeleteDC(HDC dc);
HBITMAP CreateCompatibleBitmap(HDC dc, int width, int height);
HBITMAP CreateDIBSection(HDC dc, const BITMAPINFO* info, UINT usage, void** bits, HANDLE section,
                         DWORD offset);
HGDIOBJ SelectObject(HDC dc, HGDIOBJ object);
BOOL DeleteObject(HGDIOBJ object);
HGDIOBJ GetStockObject(int object);
HBRUSH CreateSolidBrush(COLORREF color);
HFONT CreateFontIndirectW(const LOGFONTW* font);
COLORREF SetTextColor(HDC dc, COLORREF color);
COLORREF SetBkColor(HDC dc, COLORREF color);
int SetBkMode(HDC dc, int mode);
BOOL BitBlt(HDC to, int x, int y, int width, int height, HDC from, int fromX, int fromY, DWORD operation);
BOOL StretchBlt(HDC to, int x, int y, int width, int height, HDC from, int fromX, int fromY, int fromWidth,
                int fromHeight, DWORD operation);
BOOL Ellipse(HDC dc, int left, int top, int right, int bottom);
BOOL Rectangle(HDC dc, int left, int top, int right, int bottom);
int FillRect(HDC dc, const RECT* rectangle, HBRUSH brush);
int DrawTextW(HDC dc, const wchar_t* text, int count, RECT* rectangle, UINT format);
BOOL ExtTextOutW(HDC dc, int x, int y, UINT options, const RECT* rectangle, const wchar_t* text, UINT count,
                 const int* spacing);
