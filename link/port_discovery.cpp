// SPDX-License-Identifier: MIT
#include "link/port_discovery.h"

#include <cwchar>

#include "link/link_state.h"
#include "resources/resource_ids.h"
#include "text/copy.h"
#include "text/format.h"
#include "ui/dialog_support.h"

int8_t IrCommPortNumber = -1;

namespace
{

constexpr uint32_t KeyNameCapacity = 256;
constexpr uint32_t TextCapacity = 128;    // of a registry string, in characters
constexpr uint32_t BindingCapacity = 64;  // of the list of bound drivers, in characters
constexpr uint32_t DeepestIrdaSearch = 8; // limit for settings that refer to each other in a circle
constexpr uint32_t UnlabelledLength = 5;  // of "COM0:"

// ---- Registry -----------------------------------------------------------------------------------------

bool OpenKey(HKEY root, const wchar_t* path, HKEY& key)
{
    return RegOpenKeyExW(root, path, 0, KEY_READ, &key) == ERROR_SUCCESS;
}

bool ReadNumberValue(HKEY key, const wchar_t* name, DWORD& value)
{
    DWORD type = 0, size = sizeof value;
    return RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(&value), &size) ==
               ERROR_SUCCESS &&
           type == REG_DWORD && size == sizeof value;
}

// Stored texts may lack the terminator, and their length may be no whole number of characters.
template <uint32_t Capacity>
bool ReadTextValue(HKEY key, const wchar_t* name, DWORD wantedType, wchar_t (&text)[Capacity])
{
    DWORD type = 0, size = (Capacity - 1) * sizeof(wchar_t);
    const LONG result = RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(text), &size);
    if (result != ERROR_SUCCESS || type != wantedType) return false;
    text[size / sizeof(wchar_t)] = 0;
    return true;
}

// ---- Labels -------------------------------------------------------------------------------------------

void ReplacePortLabel(HWND dialog, uint32_t index, const wchar_t* label)
{
    SendDlgItemMessageW(dialog, CONTROL_COM_PORT, ListMessages.deleteString, index, 0);
    SendDlgItemMessageW(dialog, CONTROL_COM_PORT, ListMessages.insertString, index,
                        reinterpret_cast<LPARAM>(label));
}

void LabelDriver(HWND dialog, HKEY driver, const wchar_t* keyName)
{
    wchar_t prefix[TextCapacity + 1], name[TextCapacity + 1];
    if (!ReadTextValue(driver, L"Prefix", REG_SZ, prefix) || !TextEquals(prefix, L"COM")) return;
    DWORD index;
    if (!ReadNumberValue(driver, L"Index", index) || index >= PortCount) return;
    if (TextEquals(keyName, L"IrCOMM")) IrCommPortNumber = static_cast<int8_t>(index);
    const bool named = ReadTextValue(driver, L"FriendlyName", REG_SZ, name);
    wchar_t label[PortNameCapacity + KeyNameCapacity];
    Format(label, L"COM%u: %s", index, named ? name : keyName);
    ReplacePortLabel(dialog, index, label);
}

// ---- Infrared settings --------------------------------------------------------------------------------

void SearchIrdaKey(const wchar_t* keyName, wchar_t (&portName)[PortNameCapacity], uint32_t depth);

void SearchBoundDriver(HKEY key, wchar_t (&portName)[PortNameCapacity], uint32_t depth)
{
    HKEY linkage;
    if (!OpenKey(key, L"linkage", linkage)) return;
    wchar_t drivers[BindingCapacity + 1];
    if (ReadTextValue(linkage, L"Bind", REG_MULTI_SZ, drivers) && *drivers)
        SearchIrdaKey(drivers, portName, depth);
    RegCloseKey(linkage);
}

void SearchIrdaKey(const wchar_t* keyName, wchar_t (&portName)[PortNameCapacity], uint32_t depth)
{
    wchar_t path[KeyNameCapacity];
    HKEY key;
    if (depth == DeepestIrdaSearch || Format(path, L"\\Comm\\%s", keyName) == KeyNameCapacity - 1) return;
    if (!OpenKey(HKEY_LOCAL_MACHINE, path, key)) return;
    DWORD port;
    if (ReadNumberValue(key, L"Port", port)) {
        if (port < PortCount) Format(portName, L"COM%u:", port);
    } else {
        wchar_t parameters[KeyNameCapacity];
        Format(parameters, L"%s\\parms", keyName);
        SearchIrdaKey(parameters, portName, depth + 1);
        if (!*portName) SearchBoundDriver(key, portName, depth + 1);
    }
    RegCloseKey(key);
}

} // namespace

LONG ScanDriverKey(HWND dialog, const wchar_t* keyPath)
{
    HKEY drivers;
    const LONG opened = RegOpenKeyExW(HKEY_LOCAL_MACHINE, keyPath, 0, KEY_READ, &drivers);
    if (opened != ERROR_SUCCESS) return opened;
    wchar_t name[KeyNameCapacity];
    for (DWORD i = 0;; ++i) {
        DWORD length = KeyNameCapacity;
        if (RegEnumKeyExW(drivers, i, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
            break;
        HKEY driver;
        if (!OpenKey(drivers, name, driver)) continue;
        LabelDriver(dialog, driver, name);
        RegCloseKey(driver);
    }
    return RegCloseKey(drivers);
}

uint32_t FindIrdaPort(const wchar_t* keyName, wchar_t (&portName)[PortNameCapacity])
{
    SearchIrdaKey(keyName, portName, 0);
    return static_cast<uint32_t>(std::wcslen(portName));
}

void AddRawIrPort(HWND dialog)
{
    wchar_t portName[PortNameCapacity] = L"";
    if (!FindIrdaPort(L"IrDA", portName)) return;
    const int8_t number = static_cast<int8_t>(portName[3] - L'0');
    IrPortNumber.store(number);
    const WPARAM index = static_cast<WPARAM>(number);
    if (SendDlgItemMessageW(dialog, CONTROL_COM_PORT, ListMessages.getTextLength, index, 0) !=
        UnlabelledLength)
        return; // the driver's name is more useful
    wchar_t label[2 * PortNameCapacity];
    Format(label, L"%s Raw IR", portName);
    ReplacePortLabel(dialog, static_cast<uint32_t>(number), label);
}

void LabelPorts(HWND dialog)
{
    ScanDriverKey(dialog, L"Drivers\\RegisteredDevice");
    ScanDriverKey(dialog, L"Drivers\\BuiltIn"); // for a driver under both keys, this name is used
    AddRawIrPort(dialog);
}
