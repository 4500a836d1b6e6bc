// SPDX-License-Identifier: MIT
// Last error and error texts.
#include "platform/memory/memory.h"

#include <algorithm>
#include <set>

namespace memory
{

namespace
{

std::map<void*, std::unique_ptr<wchar_t[]>> Texts; // allocated and not freed

} // namespace

uint32_t UnfreedTexts()
{
    return static_cast<uint32_t>(Texts.size());
}

void ResetErrors()
{
    Texts.clear();
}

} // namespace memory

using namespace memory;

DWORD GetLastError()
{
    return Me().lastError;
}

void SetLastError(DWORD error)
{
    Me().lastError = error;
}

DWORD FormatMessageW(DWORD flags, const void*, DWORD error, DWORD, wchar_t* buffer, DWORD size, void*)
{
    if (Fails(Call::FormatMessageW)) return 0;
    if (!(flags & FORMAT_MESSAGE_FROM_SYSTEM) || !buffer) return Fail(ERROR_INVALID_PARAMETER);
    const std::wstring text = ErrorText(error);
    const DWORD length = static_cast<DWORD>(text.size());
    if (flags & FORMAT_MESSAGE_ALLOCATE_BUFFER) {
        auto copy = std::make_unique<wchar_t[]>(length + 1);
        std::copy_n(text.c_str(), length + 1, copy.get());
        wchar_t* const place = copy.get();
        *reinterpret_cast<wchar_t**>(buffer) = place; // with this flag the buffer is a pointer's place
        Texts[place] = std::move(copy);
        return length;
    }
    if (size <= length) return Fail(ERROR_MORE_DATA);
    std::copy_n(text.c_str(), length + 1, buffer);
    return length;
}

HANDLE LocalFree(HANDLE memory)
{
    if (Fails(Call::LocalFree)) return memory;
    if (memory && Texts.erase(memory) == 0) return Fail(ERROR_INVALID_HANDLE), memory;
    return nullptr;
}
