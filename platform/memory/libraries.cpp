// SPDX-License-Identifier: MIT
// Run-time libraries, and the system's data about itself.
#include "platform/memory/memory.h"

#include <algorithm>

namespace memory
{

namespace
{

constexpr DWORD InsufficientBuffer = 122;
constexpr uintptr_t FirstModule = 0x10000000;

struct Library {
    std::wstring name;
    std::map<std::wstring, FARPROC> names;
    std::map<uintptr_t, FARPROC> numbers;
    uint32_t loads = 0;
};

std::vector<Library> Libraries;

struct SystemText {
    std::wstring text;
    DWORD error;
};

SystemText NoText()
{
    return {L"", ERROR_INVALID_SPI_VALUE};
}
SystemText PlatformType = NoText(), OemInfo = NoText();

Library& LibraryNamed(const wchar_t* name)
{
    for (Library& library : Libraries)
        if (Lower(library.name) == Lower(name)) return library;
    Libraries.push_back({name, {}, {}, 0});
    return Libraries.back();
}

Library* FindModule(HMODULE module)
{
    const uintptr_t index = reinterpret_cast<uintptr_t>(module) / FirstModule - 1;
    const bool valid = reinterpret_cast<uintptr_t>(module) % FirstModule == 0 && index < Libraries.size() &&
                       Libraries[index].loads != 0;
    if (!valid) Fail(ERROR_INVALID_HANDLE);
    return valid ? &Libraries[index] : nullptr;
}

} // namespace

void ResetLibraries()
{
    Libraries.clear();
    PlatformType = OemInfo = NoText();
}

void SetPlatformType(const wchar_t* type, DWORD error)
{
    PlatformType = {type ? type : L"", error};
}

void SetOemInfo(const wchar_t* text, DWORD error)
{
    OemInfo = {text ? text : L"", error};
}

void AddExport(const wchar_t* library, const wchar_t* name, FARPROC procedure)
{
    LibraryNamed(library).names[name] = procedure;
}

void AddExport(const wchar_t* library, uint32_t number, FARPROC procedure)
{
    LibraryNamed(library).numbers[number] = procedure;
}

std::vector<std::wstring> LoadedLibraries()
{
    std::vector<std::wstring> names;
    for (const Library& library : Libraries)
        if (library.loads != 0) names.push_back(library.name);
    return names;
}

} // namespace memory

using namespace memory;

BOOL GetVersionExW(OSVERSIONINFOW* version)
{
    if (Fails(Call::GetVersionExW)) return FALSE;
    if (version->dwOSVersionInfoSize != sizeof *version) return Fail(InsufficientBuffer);
    *version = {sizeof *version, 5, 2, 1622, 3, L"Virtual"};
    return TRUE;
}

BOOL SystemParametersInfoW(UINT action, UINT size, void* data, UINT)
{
    if (Fails(Call::SystemParametersInfoW)) return FALSE;
    if (action != SPI_GETPLATFORMTYPE && action != SPI_GETOEMINFO) return Fail(ERROR_INVALID_SPI_VALUE);
    const SystemText& answer = action == SPI_GETPLATFORMTYPE ? PlatformType : OemInfo;
    if (answer.error != 0) return Fail(answer.error);
    if (size <= answer.text.size()) return Fail(InsufficientBuffer);
    std::copy_n(answer.text.c_str(), answer.text.size() + 1, static_cast<wchar_t*>(data));
    return TRUE;
}

HMODULE LoadLibraryW(const wchar_t* name)
{
    if (Fails(Call::LoadLibraryW)) return nullptr;
    for (size_t i = 0; i < Libraries.size(); ++i) {
        if (Lower(Libraries[i].name) != Lower(name)) continue;
        ++Libraries[i].loads;
        return reinterpret_cast<HMODULE>((i + 1) * FirstModule);
    }
    return Fail(ERROR_MOD_NOT_FOUND), nullptr;
}

FARPROC GetProcAddressW(HMODULE library, const wchar_t* name)
{
    if (Fails(Call::GetProcAddressW)) return nullptr;
    const Library* module = FindModule(library);
    if (!module) return nullptr;
    FARPROC found = nullptr;
    if (IsNumber(name)) {
        const auto entry = module->numbers.find(reinterpret_cast<uintptr_t>(name));
        if (entry != module->numbers.end()) found = entry->second;
    } else {
        const auto entry = module->names.find(name);
        if (entry != module->names.end()) found = entry->second;
    }
    if (!found) Fail(ERROR_PROC_NOT_FOUND);
    return found;
}

BOOL FreeLibrary(HMODULE library)
{
    if (Fails(Call::FreeLibrary)) return FALSE;
    Library* module = FindModule(library);
    if (!module) return FALSE;
    --module->loads;
    return TRUE;
}

int WideCharToMultiByte(UINT codePage, DWORD, const wchar_t* wide, int count, char* narrow, int capacity,
                        const char* unknown, BOOL* usedUnknown)
{
    if (codePage != CP_ACP || count != -1) return Fail(ERROR_INVALID_PARAMETER);
    const std::wstring text(wide);
    if (text.size() >= static_cast<size_t>(capacity)) return Fail(InsufficientBuffer);
    bool used = false;
    for (const wchar_t character : text) {
        const bool known = static_cast<uint32_t>(character) < 0x100;
        *narrow++ = known ? static_cast<char>(character) : unknown ? *unknown : '?';
        used |= !known;
    }
    *narrow = 0;
    if (usedUnknown) *usedUnknown = used;
    return static_cast<int>(text.size()) + 1;
}
