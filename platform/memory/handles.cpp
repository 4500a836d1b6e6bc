// SPDX-License-Identifier: MIT
// Handles of files, ports and threads. Each number is used only once, so that the use of an old handle is
// found.
#include "platform/memory/memory.h"

#include <cwctype>
#include <unordered_map>

namespace memory
{

namespace
{

struct Mutex : Object {
    std::wstring name;
};

constexpr uintptr_t FirstHandle = 0x40;

std::unordered_map<HANDLE, std::shared_ptr<Object>> Objects;
uintptr_t NextHandle = FirstHandle;

} // namespace

bool Fail(DWORD error)
{
    Me().lastError = error;
    return false;
}

bool Object::Read(void*, DWORD, DWORD&)
{
    return Fail(ERROR_INVALID_HANDLE);
}

bool Object::Write(const void*, DWORD, DWORD&)
{
    return Fail(ERROR_INVALID_HANDLE);
}

HANDLE NewHandle(std::shared_ptr<Object> object)
{
    const HANDLE handle = reinterpret_cast<HANDLE>(NextHandle);
    NextHandle += 4;
    Objects[handle] = std::move(object);
    return handle;
}

std::shared_ptr<Object> FindObject(HANDLE handle)
{
    const auto found = Objects.find(handle);
    if (found != Objects.end()) return found->second;
    Fail(ERROR_INVALID_HANDLE);
    return nullptr;
}

uint32_t OpenHandleCount()
{
    return static_cast<uint32_t>(Objects.size());
}

void ResetHandles()
{
    Objects.clear();
    NextHandle = FirstHandle;
}

std::wstring Lower(std::wstring_view text)
{
    std::wstring lower(text);
    for (wchar_t& character : lower)
        if (character >= 0x80 || (character >= L'A' && character <= L'Z'))
            character = static_cast<wchar_t>(std::towlower(static_cast<wint_t>(character)));
    return lower;
}

} // namespace memory

using namespace memory;

HANDLE CreateMutexW(void*, BOOL, const wchar_t* name)
{
    if (Fails(Call::CreateMutexW)) return nullptr;
    bool exists = false;
    for (const auto& [handle, object] : Objects) {
        const auto* const other = dynamic_cast<const Mutex*>(object.get());
        exists |= other && other->name == name;
    }
    auto mutex = std::make_shared<Mutex>();
    mutex->name = name;
    Me().lastError = exists ? ERROR_ALREADY_EXISTS : ERROR_SUCCESS;
    return NewHandle(std::move(mutex));
}

HANDLE CreateFileW(const wchar_t* name, DWORD access, DWORD share, void*, DWORD disposition, DWORD, HANDLE)
{
    if (Fails(Call::CreateFileW)) return INVALID_HANDLE_VALUE;
    uint32_t number = 0;
    if (!ParsePortName(name, number)) return OpenFile(name, access, share, disposition);
    if (share != 0) return Fail(ERROR_INVALID_PARAMETER), INVALID_HANDLE_VALUE; // a port cannot be shared
    return OpenPort(number);
}

BOOL ReadFile(HANDLE file, void* buffer, DWORD count, DWORD* read, void*)
{
    if (Fails(Call::ReadFile)) return FALSE;
    const auto object = FindObject(file);
    DWORD done = 0;
    const bool success = object && object->Read(buffer, count, done);
    if (read) *read = done;
    return success;
}

BOOL WriteFile(HANDLE file, const void* buffer, DWORD count, DWORD* written, void*)
{
    if (Fails(Call::WriteFile)) return FALSE;
    const auto object = FindObject(file);
    DWORD done = 0;
    const bool success = object && object->Write(buffer, count, done);
    if (written) *written = done;
    return success;
}

BOOL CloseHandle(HANDLE handle)
{
    if (Fails(Call::CloseHandle)) return FALSE;
    const auto object = FindObject(handle);
    if (!object) return FALSE;
    Objects.erase(handle);
    object->Close();
    return TRUE;
}

HANDLE ExchangeHandle(std::atomic<HANDLE>& place, HANDLE value)
{
    PlatformCall();
    return place.exchange(value);
}

bool ReplaceHandle(std::atomic<HANDLE>& place, HANDLE expected, HANDLE value)
{
    PlatformCall();
    return place.compare_exchange_strong(expected, value);
}

void CancelThreadIo(HANDLE) {} // reads of ports end with the port
