// SPDX-License-Identifier: MIT
// Windows: COM ports, and their descriptions from SetupAPI.
#include "console/system.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

#include <windows.h>

#include <setupapi.h>
#include <shellapi.h>

#include "console/result.h"

namespace console
{

namespace
{

std::string ToUtf8(const wchar_t* text)
{
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    std::string utf8(size > 0 ? static_cast<size_t>(size) : 1, '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, -1, utf8.data(), size, nullptr, nullptr);
    utf8.pop_back();
    return utf8;
}

std::string ReadText(HKEY key, const wchar_t* name)
{
    wchar_t text[128] = {};
    DWORD size = sizeof text - sizeof *text, type = 0;
    const LONG result = RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(text), &size);
    return result == ERROR_SUCCESS && type == REG_SZ ? ToUtf8(text) : std::string();
}

std::wstring DeviceName(const std::string& port)
{
    return L"\\\\.\\" + std::filesystem::path(port).wstring();
}

// True for "COM" and a number.
bool IsPortName(const std::string& port)
{
    return port.size() > 3 && (port[0] | 32) == 'c' && (port[1] | 32) == 'o' && (port[2] | 32) == 'm' &&
           port.find_first_not_of("0123456789", 3) == port.npos;
}

// "USB\VID_067B&PID_2303\12345": vendor and product, and the device's serial number, if it contains no '&'.
void DescribeUsb(PortInfo& info, const std::string& instance)
{
    const size_t vendor = instance.find("VID_"), product = instance.find("PID_");
    constexpr size_t Digits = 4;
    if (vendor == instance.npos || product == instance.npos || product + 4 + Digits > instance.size()) return;
    info.usb = instance.substr(vendor + 4, Digits) + ":" + instance.substr(product + 4, Digits);
    for (char& c : info.usb) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    const std::string last = instance.substr(instance.rfind('\\') + 1);
    if (last.find('&') == last.npos) info.serial = last;
}

void SetState(PortInfo& info)
{
    // On Windows only opening a port shows if it is free, and if we may open it.
    const HANDLE port = CreateFileW(DeviceName(info.port).c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                    OPEN_EXISTING, FILE_FLAG_OVERLAPPED, nullptr);
    info.state = port != INVALID_HANDLE_VALUE ? "free" : "busy";
    if (port != INVALID_HANDLE_VALUE) CloseHandle(port);
}

// The ports of the device class, with their descriptions.
void AddDescribedPorts(std::vector<PortInfo>& ports)
{
    constexpr GUID PortsClass = {
        0x4D36E978, 0xE325, 0x11CE, {0xBF, 0xC1, 0x08, 0x00, 0x2B, 0xE1, 0x03, 0x18}};
    const HDEVINFO devices = SetupDiGetClassDevsW(&PortsClass, nullptr, nullptr, DIGCF_PRESENT);
    if (devices == INVALID_HANDLE_VALUE) return;
    SP_DEVINFO_DATA device = {};
    device.cbSize = sizeof device;
    for (DWORD i = 0; SetupDiEnumDeviceInfo(devices, i, &device); ++i) {
        const HKEY key = SetupDiOpenDevRegKey(devices, &device, DICS_FLAG_GLOBAL, 0, DIREG_DEV, KEY_READ);
        if (key == INVALID_HANDLE_VALUE) continue;
        PortInfo info;
        info.port = ReadText(key, L"PortName");
        RegCloseKey(key);
        if (!IsPortName(info.port)) continue;
        wchar_t text[256] = {};
        if (SetupDiGetDeviceRegistryPropertyW(devices, &device, SPDRP_FRIENDLYNAME, nullptr,
                                              reinterpret_cast<BYTE*>(text), sizeof text - sizeof *text,
                                              nullptr))
            info.description = ToUtf8(text);
        if (SetupDiGetDeviceInstanceIdW(devices, &device, text, std::size(text), nullptr))
            DescribeUsb(info, ToUtf8(text));
        ports.push_back(info);
    }
    SetupDiDestroyDeviceInfoList(devices);
}

// Ports of drivers that are not in that class: from the system's own list of names.
void AddMappedPorts(std::vector<PortInfo>& ports)
{
    HKEY key;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"HARDWARE\\DEVICEMAP\\SERIALCOMM", 0, KEY_READ, &key) !=
        ERROR_SUCCESS)
        return;
    wchar_t name[256];
    for (DWORD i = 0, size = std::size(name);
         RegEnumValueW(key, i, name, &size, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
         ++i, size = std::size(name)) {
        PortInfo info;
        info.port = ReadText(key, name);
        info.description = "serial port";
        const auto isSame = [&](const PortInfo& other) { return other.port == info.port; };
        if (IsPortName(info.port) && std::none_of(ports.begin(), ports.end(), isSame)) ports.push_back(info);
    }
    RegCloseKey(key);
}

// The C library takes every character device for a terminal, also NUL and serial ports.
bool IsConsole(DWORD stream)
{
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(stream), &mode);
}

std::string SystemText(DWORD error)
{
    return asio::error_code(static_cast<int>(error), asio::system_category()).message();
}

bool Configure(HANDLE port, uint32_t rate)
{
    DCB dcb = {};
    dcb.DCBlength = sizeof dcb;
    if (!GetCommState(port, &dcb)) return false;
    dcb.BaudRate = rate;
    dcb.fBinary = TRUE;
    dcb.fParity = dcb.fOutxCtsFlow = dcb.fOutxDsrFlow = dcb.fDsrSensitivity = FALSE;
    dcb.fOutX = dcb.fInX = dcb.fErrorChar = dcb.fNull = dcb.fAbortOnError = FALSE;
    dcb.fDtrControl = DTR_CONTROL_ENABLE;
    dcb.fRtsControl = RTS_CONTROL_ENABLE;
    dcb.ByteSize = 8;
    dcb.Parity = NOPARITY;
    dcb.StopBits = ONESTOPBIT;
    return SetCommState(port, &dcb);
}

} // namespace

std::vector<PortInfo> ListPorts()
{
    std::vector<PortInfo> ports;
    AddDescribedPorts(ports);
    AddMappedPorts(ports);
    for (PortInfo& info : ports) SetState(info);
    const auto number = [](const PortInfo& info) { return std::atoi(info.port.c_str() + 3); };
    std::sort(ports.begin(), ports.end(),
              [&](const PortInfo& a, const PortInfo& b) { return number(a) < number(b); });
    return ports;
}

std::optional<PortInfo> InspectPort(const std::string& port)
{
    for (const PortInfo& info : ListPorts())
        if (lstrcmpiA(info.port.c_str(), port.c_str()) == 0) return info;
    const HANDLE opened = CreateFileW(DeviceName(port).c_str(), 0, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    const DWORD error = opened == INVALID_HANDLE_VALUE ? GetLastError() : ERROR_SUCCESS;
    if (opened != INVALID_HANDLE_VALUE) CloseHandle(opened);
    if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND) return {};
    PortInfo info;
    info.port = port;
    info.state = error == ERROR_SUCCESS ? "free" : "busy";
    return info;
}

std::string HolderOf(const std::string&)
{
    return {};
}

NativePort OpenPort(const std::string& port, uint32_t rate)
{
    const auto fail = [&](const std::string& reason) { Fail(FailureKind::Port, port + ": " + reason); };
    if (!IsPortName(port)) fail("no such port (missing); ports are called COM1, COM2 and so on");
    const HANDLE opened = CreateFileW(DeviceName(port).c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                      OPEN_EXISTING, FILE_FLAG_OVERLAPPED, nullptr);
    if (opened == INVALID_HANDLE_VALUE) {
        const DWORD error = GetLastError();
        if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND)
            fail("no such port (missing); \"toravanectl ports\" lists those there are");
        if (error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION)
            fail("busy, another program has it open, or no permission; end that program first");
        fail(SystemText(error));
    }
    // A read returns as soon as there is a byte, and waits for the first byte without limit.
    COMMTIMEOUTS timeouts = {};
    timeouts.ReadIntervalTimeout = 1;
    if (!Configure(opened, rate) || !SetCommTimeouts(opened, &timeouts)) {
        const DWORD error = GetLastError();
        CloseHandle(opened);
        fail("not a serial port: " + SystemText(error));
    }
    PurgeComm(opened, PURGE_RXCLEAR);
    return opened;
}

asio::error_code SetPortRate(NativePort port, uint32_t rate)
{
    FlushFileBuffers(port);
    if (!Configure(port, rate)) return {static_cast<int>(GetLastError()), asio::system_category()};
    PurgeComm(port, PURGE_RXCLEAR);
    return {};
}

void ReleasePort(NativePort) {}

bool HasVanished(const asio::error_code& error)
{
    constexpr int Gone[] = {ERROR_DEVICE_REMOVED,       ERROR_GEN_FAILURE,    ERROR_ACCESS_DENIED,
                            ERROR_BAD_COMMAND,          ERROR_INVALID_HANDLE, ERROR_HANDLE_EOF,
                            ERROR_DEVICE_NOT_CONNECTED, ERROR_BROKEN_PIPE,    ERROR_NOT_READY};
    return error == asio::error::eof ||
           std::find(std::begin(Gone), std::end(Gone), error.value()) != std::end(Gone);
}

bool CanReadOn(NativePort port, const asio::error_code& error)
{
    // Wine ends a waiting read so, if SetPortRate discards the bytes that were just about to end it. A port
    // that is no longer there has no state.
    DCB dcb = {};
    dcb.DCBlength = sizeof dcb;
    return error.value() == ERROR_BROKEN_PIPE && GetCommState(port, &dcb);
}

asio::error_code ReserveAddress(asio::ip::tcp::acceptor& acceptor)
{
    // Here SO_REUSEADDR would let two programs listen at one address.
    const BOOL on = TRUE;
    const SOCKET socket = acceptor.native_handle();
    if (setsockopt(socket, SOL_SOCKET, SO_EXCLUSIVEADDRUSE, reinterpret_cast<const char*>(&on), sizeof on) ==
        0)
        return {};
    return {WSAGetLastError(), asio::system_category()};
}

std::filesystem::path StateFolder()
{
    const wchar_t* const local = _wgetenv(L"LOCALAPPDATA");
    return local && *local ? std::filesystem::path(local) / "Toravane" : std::filesystem::path();
}

std::vector<int> EndingSignals()
{
    return {SIGINT, SIGTERM, SIGBREAK}; // the last one is Ctrl+Break
}

void PrepareStandardStreams()
{
    for (std::FILE* stream : {stdin, stdout, stderr}) _setmode(_fileno(stream), _O_BINARY);
}

std::FILE* OpenFile(const std::filesystem::path& file, const char* mode)
{
    return _wfopen(file.c_str(), PathOf(mode).c_str());
}

std::FILE* OpenNewFile(const std::filesystem::path& file, std::filesystem::perms)
{
    const int opened = _wopen(file.c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY, _S_IREAD | _S_IWRITE);
    return opened < 0 ? nullptr : _fdopen(opened, "wb");
}

AnsiTerminal::AnsiTerminal()
{
    const HANDLE console = GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD mode = 0;
    if (!GetConsoleMode(console, &mode)) return;
    if (!SetConsoleMode(console, mode | ENABLE_PROCESSED_OUTPUT | ENABLE_VIRTUAL_TERMINAL_PROCESSING)) return;
    mode_ = mode;
    codePage_ = GetConsoleOutputCP();
    SetConsoleOutputCP(CP_UTF8);
    takesSequences_ = true;
}

AnsiTerminal::~AnsiTerminal()
{
    if (!takesSequences_) return;
    SetConsoleOutputCP(codePage_);
    SetConsoleMode(GetStdHandle(STD_OUTPUT_HANDLE), mode_);
}

bool InputIsTerminal()
{
    return IsConsole(STD_INPUT_HANDLE);
}

bool InputIsWaiting()
{
    return true; // Ctrl+C ends reading from a console
}

bool OutputIsTerminal()
{
    return IsConsole(STD_OUTPUT_HANDLE);
}

bool ErrorIsTerminal()
{
    return IsConsole(STD_ERROR_HANDLE);
}

std::vector<std::string> ProgramArguments(int, char**)
{
    std::vector<std::string> arguments;
    int count = 0;
    wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
    for (int i = 1; i < count; ++i) arguments.push_back(ToUtf8(wide[i]));
    LocalFree(wide);
    return arguments;
}

} // namespace console
