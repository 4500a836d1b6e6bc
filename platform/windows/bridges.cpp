// SPDX-License-Identifier: MIT
// Calls that Windows CE has and the desktop lacks, and calls whose desktop version differs.

#include <cstring>
#include <cwchar>
#include <iterator>

#include "platform/platform.h"

// ---- Command bar: the window's own menu ---------------------------------------------------------------

HWND CommandBar_Create(HINSTANCE, HWND window, int)
{
    return window;
}

BOOL CommandBar_InsertMenubar(HWND bar, HINSTANCE instance, WORD menu, WORD)
{
    HMENU loaded = LoadMenuW(instance, MAKEINTRESOURCEW(menu));
    return loaded && SetMenu(bar, loaded);
}

int CommandBar_Height(HWND)
{
    return 0; // the client area already excludes the menu
}

// ---- Libraries ----------------------------------------------------------------------------------------

FARPROC GetProcAddressW(HMODULE library, const wchar_t* name)
{
    if (IS_INTRESOURCE(name)) return GetProcAddress(library, reinterpret_cast<const char*>(name));
    char narrow[128];
    if (!WideCharToMultiByte(CP_ACP, 0, name, -1, narrow, sizeof narrow - 1, nullptr, nullptr))
        return nullptr;
    if (const FARPROC found = GetProcAddress(library, narrow)) return found;
    std::strcat(narrow, "W"); // the names of the desktop's exports contain their kind of text
    return GetProcAddress(library, narrow);
}

// ---- Calls whose names are redirected here ------------------------------------------------------------

#undef CreateFileW
#undef LoadLibraryW
#undef SystemParametersInfoW
#undef RegOpenKeyExW

HANDLE BridgeCreateFile(const wchar_t* name, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security,
                        DWORD disposition, DWORD attributes, HANDLE pattern)
{
    constexpr size_t Longest = 6; // "COM99:"
    const size_t length = std::wcslen(name);
    wchar_t device[sizeof "\\\\.\\" + Longest];
    if (std::wcsncmp(name, L"COM", 3) == 0 && length <= Longest && name[length - 1] == L':') {
        std::wcscpy(device, L"\\\\.\\");
        std::wcscat(device, name);
        device[std::wcslen(device) - 1] = 0; // this form has no colon
        name = device;
    }
    return CreateFileW(name, access, share, security, disposition, attributes, pattern);
}

HMODULE BridgeLoadLibrary(const wchar_t* name)
{
    const HMODULE library = LoadLibraryW(name);
    return library || lstrcmpiW(name, COLOR_LIBRARY) != 0 ? library : LoadLibraryW(L"comdlg32.dll");
}

// True if the hand-held shell is there, which only programs beside its library have loaded.
static bool HasShell()
{
    return GetModuleHandleW(L"aygshell.dll") != nullptr;
}

BOOL BridgeSystemParametersInfo(UINT action, UINT size, void* data, UINT flags)
{
    if (action != SPI_GETPLATFORMTYPE && action != SPI_GETOEMINFO)
        return SystemParametersInfoW(action, size, data, flags);
    const DWORD capacity = size / sizeof(wchar_t);
    if (action == SPI_GETPLATFORMTYPE) {
        const DWORD length =
            GetEnvironmentVariableW(L"TORAVANE_PLATFORM", static_cast<wchar_t*>(data), capacity);
        if (length && length < capacity) return TRUE;
        constexpr wchar_t TouchScreen[] = L"PocketPC";
        if (HasShell() && capacity >= std::size(TouchScreen)) {
            std::wcscpy(static_cast<wchar_t*>(data), TouchScreen);
            return TRUE;
        }
    }
    SetLastError(ERROR_INVALID_PARAMETER);
    return FALSE;
}

namespace
{

constexpr const wchar_t* RegisteredDrivers = L"Drivers\\RegisteredDevice";
constexpr const wchar_t* SystemsPorts = L"HARDWARE\\DEVICEMAP\\SERIALCOMM"; // device's path = port's name
constexpr const wchar_t* DriversCopy = L"Software\\Toravane Ports";

void SetText(HKEY key, const wchar_t* name, const wchar_t* text)
{
    RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text),
                   static_cast<DWORD>((std::wcslen(text) + 1) * sizeof *text));
}

// One driver key as a device has it, for a port "COM3" of the device "\Device\VCP0".
void CopyDriver(HKEY copy, const wchar_t* port, const wchar_t* device)
{
    HKEY driver;
    if (std::wcsncmp(port, L"COM", 3) != 0) return;
    if (RegCreateKeyExW(copy, port, 0, nullptr, REG_OPTION_VOLATILE, KEY_WRITE, nullptr, &driver, nullptr) !=
        ERROR_SUCCESS)
        return;
    const DWORD index = std::wcstoul(port + 3, nullptr, 10);
    const wchar_t* const separator = std::wcsrchr(device, L'\\');
    SetText(driver, L"Prefix", L"COM");
    SetText(driver, L"FriendlyName", separator ? separator + 1 : device);
    RegSetValueExW(driver, L"Index", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&index), sizeof index);
    RegCloseKey(driver);
}

// Makes the copy again, because ports come and go. It lives as long as the user's session.
void CopyDrivers()
{
    HKEY ports, copy;
    RegDeleteTreeW(HKEY_CURRENT_USER, DriversCopy);
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, SystemsPorts, 0, KEY_READ, &ports) != ERROR_SUCCESS) return;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, DriversCopy, 0, nullptr, REG_OPTION_VOLATILE, KEY_WRITE, nullptr,
                        &copy, nullptr) == ERROR_SUCCESS) {
        for (DWORD i = 0;; ++i) {
            wchar_t device[256], port[16] = {};
            DWORD length = 256, type, size = sizeof port - sizeof *port; // stays terminated
            const LONG result = RegEnumValueW(ports, i, device, &length, nullptr, &type,
                                              reinterpret_cast<BYTE*>(port), &size);
            if (result != ERROR_SUCCESS && result != ERROR_MORE_DATA) break; // the latter is no port's name
            if (result == ERROR_SUCCESS && type == REG_SZ) CopyDriver(copy, port, device);
        }
        RegCloseKey(copy);
    }
    RegCloseKey(ports);
}

} // namespace

LONG BridgeRegOpenKeyEx(HKEY root, const wchar_t* path, DWORD options, REGSAM access, HKEY* key)
{
    const LONG result = RegOpenKeyExW(root, *path == L'\\' ? path + 1 : path, options, access, key);
    if (result != ERROR_FILE_NOT_FOUND || std::wcscmp(path, RegisteredDrivers) != 0) return result;
    CopyDrivers();
    return RegOpenKeyExW(HKEY_CURRENT_USER, DriversCopy, options, access, key);
}

// ---- Common to all platforms --------------------------------------------------------------------------

HANDLE ExchangeHandle(std::atomic<HANDLE>& place, HANDLE value)
{
    return place.exchange(value);
}

bool ReplaceHandle(std::atomic<HANDLE>& place, HANDLE expected, HANDLE value)
{
    return place.compare_exchange_strong(expected, value);
}

int DotsPerInch()
{
    static int dots = 0; // asked once: each repaint needs it several times
    if (dots) return dots;
    if (HasShell()) return dots = USER_DEFAULT_SCREEN_DPI; // its screen is a device's
    HDC screen = GetDC(nullptr);
    dots = GetDeviceCaps(screen, LOGPIXELSY);
    ReleaseDC(nullptr, screen);
    return dots;
}

HFONT CreateTextPageFont()
{
    LOGFONTW font = {};
    font.lfCharSet = ANSI_CHARSET;
    if (HasShell()) { // as on the devices: 19 lines of 14 pixels, narrow enough for a screen 240 pixels wide
        font.lfHeight = 14;
        std::wcscpy(font.lfFaceName, L"Tahoma");
        return CreateFontIndirectW(&font);
    }
    font.lfHeight = -MulDiv(13, DotsPerInch(), USER_DEFAULT_SCREEN_DPI);
    font.lfPitchAndFamily = FIXED_PITCH | FF_MODERN;
    std::wcscpy(font.lfFaceName, L"Courier New");
    return CreateFontIndirectW(&font);
}

void FitMainWindow(HWND window, int width, int height)
{
    if (HasShell()) return; // it fills the shell's screen
    RECT outer, client;
    GetWindowRect(window, &outer);
    GetClientRect(window, &client);
    const int frameWidth = outer.right - outer.left - client.right;
    const int frameHeight = outer.bottom - outer.top - client.bottom;
    SetWindowPos(window, nullptr, 0, 0, width + frameWidth, height + frameHeight,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void BringToFront(HWND window)
{
    ShowWindow(window, SW_RESTORE);
    SetForegroundWindow(GetLastActivePopup(window));
}

void PassBackKeyToDialog(HWND menuBar)
{
    constexpr UINT OverrideKey = WM_USER + 403;
    constexpr WORD NoDefault = 1, Notify = 2;
    SendMessageW(menuBar, OverrideKey, VK_ESCAPE, MAKELPARAM(NoDefault | Notify, NoDefault | Notify));
}

void CancelThreadIo(HANDLE thread)
{
    CancelSynchronousIo(thread);
}
