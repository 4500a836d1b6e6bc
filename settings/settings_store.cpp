// SPDX-License-Identifier: MIT
#include "settings/settings_store.h"

#include <cstring>

#include "platform/platform.h"

namespace
{

constexpr const wchar_t* KeyPath = L"Software\\Quenmark\\Toravane";

bool Read(HKEY root, const wchar_t* name, int32_t& value)
{
    HKEY key;
    if (RegOpenKeyExW(root, KeyPath, 0, KEY_READ | SETTINGS_KEY_VIEW, &key) != ERROR_SUCCESS) return false;
    BYTE bytes[sizeof value] = {};
    DWORD size = sizeof bytes;
    const bool found = RegQueryValueExW(key, name, nullptr, nullptr, bytes, &size) == ERROR_SUCCESS;
    RegCloseKey(key);
    if (found) std::memcpy(&value, bytes, sizeof value);
    return found;
}

bool Write(HKEY root, const wchar_t* name, int32_t value)
{
    HKEY key;
    wchar_t noClass[] = L"";
    if (RegCreateKeyExW(root, KeyPath, 0, noClass, REG_OPTION_NON_VOLATILE, KEY_WRITE | SETTINGS_KEY_VIEW,
                        nullptr, &key, nullptr) != ERROR_SUCCESS)
        return false;
    BYTE bytes[sizeof value];
    std::memcpy(bytes, &value, sizeof value);
    const bool stored = RegSetValueExW(key, name, 0, REG_DWORD, bytes, sizeof bytes) == ERROR_SUCCESS;
    RegCloseKey(key);
    return stored;
}

void Forget(HKEY root, const wchar_t* name)
{
    HKEY key;
    if (RegOpenKeyExW(root, KeyPath, 0, KEY_WRITE | SETTINGS_KEY_VIEW, &key) != ERROR_SUCCESS) return;
    RegDeleteValueW(key, name);
    RegCloseKey(key);
}

} // namespace

int32_t SettingsGetDword(const wchar_t* name, int32_t absent)
{
    int32_t value = 0;
    if (SETTINGS_FALLBACK_ROOT && Read(SETTINGS_FALLBACK_ROOT, name, value)) return value;
    return Read(HKEY_LOCAL_MACHINE, name, value) ? value : absent;
}

void SettingsSetDword(const wchar_t* name, int32_t value)
{
    const bool stored = Write(HKEY_LOCAL_MACHINE, name, value);
    if (!SETTINGS_FALLBACK_ROOT) return;
    if (stored)
        Forget(SETTINGS_FALLBACK_ROOT, name); // otherwise an older number there would be read first
    else
        Write(SETTINGS_FALLBACK_ROOT, name, value);
}
