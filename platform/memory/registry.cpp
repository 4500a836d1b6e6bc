// SPDX-License-Identifier: MIT
// The registry: two roots of keys in memory. Names keep their case, but comparisons ignore it.
#include "platform/memory/memory.h"

#include <algorithm>
#include <cstring>

namespace memory
{

namespace
{

constexpr DWORD QueryRight = 1, SetRight = 2, EnumerateRight = 8, WriteRights = 6, AllRights = ~DWORD{0};
constexpr uintptr_t FirstKey = 0x1000;

struct Key {
    std::wstring name;
    std::map<std::wstring, std::shared_ptr<Key>> keys; // by name in lower case
    std::map<std::wstring, StoredValue> values;
};

struct OpenedKey {
    std::shared_ptr<Key> key;
    DWORD rights;
    HKEY root;
};

struct Root {
    std::shared_ptr<Key> key = std::make_shared<Key>();
    bool refusesWrites = false;
};

std::map<HKEY, Root> Roots;
std::map<HKEY, OpenedKey> OpenedKeys;
uintptr_t NextKey = FirstKey;

// The key at the end of a path, null if there is none; `create` makes all missing keys.
std::shared_ptr<Key> Walk(std::shared_ptr<Key> key, std::wstring_view path, bool create)
{
    while (!path.empty()) {
        const std::wstring_view name = path.substr(0, path.find(L'\\'));
        path.remove_prefix(std::min(name.size() + 1, path.size()));
        if (name.empty()) continue;
        const std::wstring place = Lower(name);
        auto next = key->keys.find(place);
        if (next == key->keys.end()) {
            if (!create) return nullptr;
            next = key->keys.emplace(place, std::make_shared<Key>()).first;
            next->second->name = name;
        }
        key = next->second;
    }
    return key;
}

bool IsRoot(HKEY key)
{
    return key == HKEY_LOCAL_MACHINE || key == HKEY_CURRENT_USER;
}

Root& RootOf(HKEY root)
{
    if (!IsRoot(root)) Stop("a registry root that this system does not have");
    return Roots[root];
}

// The key of a handle if it was opened with the right; otherwise null and the error.
std::shared_ptr<Key> Opened(HKEY handle, DWORD right, LONG& error)
{
    const auto found = OpenedKeys.find(handle);
    if (!IsRoot(handle) && found == OpenedKeys.end()) {
        error = ERROR_INVALID_HANDLE;
        return nullptr;
    }
    const HKEY root = IsRoot(handle) ? handle : found->second.root;
    const DWORD rights = IsRoot(handle) ? AllRights : found->second.rights;
    if ((right & ~rights) || ((right & WriteRights) && Roots[root].refusesWrites)) {
        error = ERROR_ACCESS_DENIED;
        return nullptr;
    }
    error = ERROR_SUCCESS;
    return IsRoot(handle) ? Roots[root].key : found->second.key;
}

HKEY NewKey(std::shared_ptr<Key> key, DWORD rights, HKEY root)
{
    const HKEY handle = reinterpret_cast<HKEY>(NextKey);
    NextKey += 16;
    OpenedKeys.insert({handle, OpenedKey{std::move(key), rights, root}});
    return handle;
}

LONG OpenKey(HKEY root, const wchar_t* path, DWORD access, bool create, HKEY* key, DWORD* disposition)
{
    LONG error = ERROR_SUCCESS;
    const std::shared_ptr<Key> base = Opened(root, 0, error);
    if (!base) return error;
    const HKEY top = IsRoot(root) ? root : OpenedKeys.at(root).root;
    if ((access & WriteRights) && Roots[top].refusesWrites) return ERROR_ACCESS_DENIED;
    std::shared_ptr<Key> found = Walk(base, path ? path : L"", false);
    if (disposition) *disposition = found ? 2 : 1; // opened, created
    if (!found && create) {
        if (Roots[top].refusesWrites) return ERROR_ACCESS_DENIED;
        found = Walk(base, path, true);
    }
    if (!found) return ERROR_FILE_NOT_FOUND;
    *key = NewKey(std::move(found), access, top);
    return ERROR_SUCCESS;
}

void ListValues(const Key& key, const std::wstring& path, std::vector<std::wstring>& lines)
{
    constexpr const wchar_t* Digits = L"0123456789ABCDEF";
    for (const auto& [name, value] : key.values) {
        std::wstring line = path + L"\\" + name + L" " + std::to_wstring(value.type) + L" ";
        for (const char byte : value.data) {
            line += Digits[static_cast<uint8_t>(byte) >> 4];
            line += Digits[static_cast<uint8_t>(byte) & 0xF];
        }
        lines.push_back(std::move(line));
    }
    for (const auto& [name, below] : key.keys) ListValues(*below, path + L"\\" + below->name, lines);
}

std::string BytesOf(const void* data, size_t size)
{
    return data ? std::string(static_cast<const char*>(data), size) : std::string();
}

} // namespace

uint32_t OpenKeyCount()
{
    return static_cast<uint32_t>(OpenedKeys.size());
}

void MakeKey(HKEY root, const wchar_t* path)
{
    Walk(RootOf(root).key, path, true);
}

void SetValue(HKEY root, const wchar_t* path, const wchar_t* name, StoredValue value)
{
    Walk(RootOf(root).key, path, true)->values[Lower(name ? name : L"")] = std::move(value);
}

const StoredValue* FindValue(HKEY root, const wchar_t* path, const wchar_t* name)
{
    const std::shared_ptr<Key> key = Walk(RootOf(root).key, path, false);
    if (!key) return nullptr;
    const auto found = key->values.find(Lower(name));
    return found == key->values.end() ? nullptr : &found->second;
}

std::vector<std::wstring> AllValues()
{
    std::vector<std::wstring> lines;
    ListValues(*RootOf(HKEY_CURRENT_USER).key, L"user", lines);
    ListValues(*RootOf(HKEY_LOCAL_MACHINE).key, L"machine", lines);
    return lines;
}

void RefuseWrites(HKEY root, bool refuse)
{
    RootOf(root).refusesWrites = refuse;
}

void ResetRegistry()
{
    Roots.clear();
    OpenedKeys.clear();
    NextKey = FirstKey;
}

} // namespace memory

using namespace memory;

LONG RegOpenKeyExW(HKEY root, const wchar_t* path, DWORD, DWORD access, HKEY* key)
{
    if (Fails(Call::RegOpenKeyExW)) return static_cast<LONG>(Me().lastError);
    return OpenKey(root, path, access, false, key, nullptr);
}

LONG RegCreateKeyExW(HKEY root, const wchar_t* path, DWORD, wchar_t*, DWORD, DWORD access, void*, HKEY* key,
                     DWORD* disposition)
{
    if (Fails(Call::RegCreateKeyExW)) return static_cast<LONG>(Me().lastError);
    return OpenKey(root, path, access, true, key, disposition);
}

LONG RegQueryValueExW(HKEY key, const wchar_t* name, DWORD*, DWORD* type, BYTE* data, DWORD* size)
{
    if (Fails(Call::RegQueryValueExW)) return static_cast<LONG>(Me().lastError);
    LONG error = ERROR_SUCCESS;
    const std::shared_ptr<Key> opened = Opened(key, QueryRight, error);
    if (!opened) return error;
    if (data && !size) return ERROR_INVALID_PARAMETER;
    const auto found = opened->values.find(Lower(name ? name : L""));
    if (found == opened->values.end()) return ERROR_FILE_NOT_FOUND;
    const StoredValue& value = found->second;
    if (type) *type = value.type;
    if (!size) return ERROR_SUCCESS;
    const DWORD capacity = *size;
    *size = static_cast<DWORD>(value.data.size());
    if (!data) return ERROR_SUCCESS;
    if (capacity < *size) return ERROR_MORE_DATA;
    std::copy(value.data.begin(), value.data.end(), data);
    return ERROR_SUCCESS;
}

LONG RegSetValueExW(HKEY key, const wchar_t* name, DWORD, DWORD type, const BYTE* data, DWORD size)
{
    if (Fails(Call::RegSetValueExW)) return static_cast<LONG>(Me().lastError);
    LONG error = ERROR_SUCCESS;
    const std::shared_ptr<Key> opened = Opened(key, SetRight, error);
    if (!opened) return error;
    StoredValue& value = opened->values[Lower(name ? name : L"")];
    value = {type, BytesOf(data, size)};
    ValueStored(name ? name : L"", &value);
    return ERROR_SUCCESS;
}

LONG RegDeleteValueW(HKEY key, const wchar_t* name)
{
    if (Fails(Call::RegDeleteValueW)) return static_cast<LONG>(Me().lastError);
    LONG error = ERROR_SUCCESS;
    const std::shared_ptr<Key> opened = Opened(key, SetRight, error);
    if (!opened) return error;
    if (opened->values.erase(Lower(name ? name : L"")) == 0) return ERROR_FILE_NOT_FOUND;
    ValueStored(name ? name : L"", nullptr);
    return ERROR_SUCCESS;
}

LONG RegEnumKeyExW(HKEY key, DWORD index, wchar_t* name, DWORD* nameCount, DWORD*, wchar_t*, DWORD*, void*)
{
    if (Fails(Call::RegEnumKeyExW)) return static_cast<LONG>(Me().lastError);
    LONG error = ERROR_SUCCESS;
    const std::shared_ptr<Key> opened = Opened(key, EnumerateRight, error);
    if (!opened) return error;
    if (index >= opened->keys.size()) return ERROR_NO_MORE_ITEMS;
    const std::wstring& found = std::next(opened->keys.begin(), static_cast<ptrdiff_t>(index))->second->name;
    if (*nameCount <= found.size()) return ERROR_MORE_DATA;
    std::copy_n(found.c_str(), found.size() + 1, name);
    *nameCount = static_cast<DWORD>(found.size());
    return ERROR_SUCCESS;
}

LONG RegCloseKey(HKEY key)
{
    if (Fails(Call::RegCloseKey)) return static_cast<LONG>(Me().lastError);
    if (IsRoot(key)) return ERROR_SUCCESS;
    return OpenedKeys.erase(key) != 0 ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
}
