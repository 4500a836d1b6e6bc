// SPDX-License-Identifier: MIT
// Files in memory and the special folders.
#include "platform/memory/memory.h"

#include <algorithm>

namespace memory
{

namespace
{

constexpr DWORD SharingViolation = 32, InvalidName = 123, FileExists = 80;
constexpr std::wstring_view ForbiddenInNames = L"<>\"|?*:";

struct Contents {
    std::string bytes;
    uint32_t opens = 0;
};

std::map<std::wstring, std::shared_ptr<Contents>> Files; // by path in lower case
uint64_t FreeBytes = Never;

const std::map<int, std::wstring> UsualFolders = {{CSIDL_PERSONAL, L"\\My Documents"},
                                                  {CSIDL_APPDATA, L"\\Application Data"}};
std::map<int, std::wstring> Folders = UsualFolders;

struct FileObject : Object {
    std::shared_ptr<Contents> contents;
    std::wstring path;
    DWORD access = 0;
    size_t position = 0;

    bool Read(void* buffer, DWORD count, DWORD& read) override
    {
        if (!(access & GENERIC_READ)) return Fail(ERROR_ACCESS_DENIED);
        const size_t left = contents->bytes.size() - std::min(position, contents->bytes.size());
        read = static_cast<DWORD>(std::min<size_t>(count, left));
        if (read != 0) std::copy_n(contents->bytes.data() + position, read, static_cast<char*>(buffer));
        position += read;
        return true;
    }

    bool Write(const void* buffer, DWORD count, DWORD& written) override
    {
        if (!(access & GENERIC_WRITE)) return Fail(ERROR_ACCESS_DENIED);
        if (count > FreeBytes) return Fail(ERROR_DISK_FULL);
        if (FreeBytes != Never) FreeBytes -= count;
        const std::string_view bytes(static_cast<const char*>(buffer), count);
        if (contents->bytes.size() < position) contents->bytes.resize(position); // emptied by another handle
        const size_t over = std::min<size_t>(count, contents->bytes.size() - position);
        contents->bytes.replace(position, over, bytes);
        position += count;
        written = count;
        return true;
    }

    void Close() override
    {
        --contents->opens;
        if (access & GENERIC_WRITE) FileClosed(path);
    }
};

std::shared_ptr<Contents> FindFile(const std::wstring& path)
{
    const auto found = Files.find(Lower(path));
    return found == Files.end() ? nullptr : found->second;
}

bool IsFileName(std::wstring_view name)
{
    if (name.size() > 2 && name[1] == L':') name.remove_prefix(2); // drive
    return !name.empty() && name.back() != L'\\' && name.find_first_of(ForbiddenInNames) == name.npos;
}

} // namespace

HANDLE OpenFile(const std::wstring& name, DWORD access, DWORD share, DWORD disposition)
{
    if (!IsFileName(name)) return Fail(InvalidName), INVALID_HANDLE_VALUE;
    std::shared_ptr<Contents> contents = FindFile(name);
    if (contents && contents->opens != 0 && share == 0) return Fail(SharingViolation), INVALID_HANDLE_VALUE;
    if (contents && disposition == CREATE_NEW) return Fail(FileExists), INVALID_HANDLE_VALUE;
    if (!contents && disposition == OPEN_EXISTING) return Fail(ERROR_FILE_NOT_FOUND), INVALID_HANDLE_VALUE;
    if (!contents) contents = Files[Lower(name)] = std::make_shared<Contents>();
    if (disposition == CREATE_ALWAYS) contents->bytes.clear();
    ++contents->opens;
    auto object = std::make_shared<FileObject>();
    object->contents = contents;
    object->path = name;
    object->access = access;
    return NewHandle(object);
}

std::string* FindFileBytes(const std::wstring& path)
{
    const std::shared_ptr<Contents> contents = FindFile(path);
    return contents ? &contents->bytes : nullptr;
}

void WriteWholeFile(const std::wstring& path, std::string_view bytes)
{
    std::shared_ptr<Contents>& contents = Files[Lower(path)];
    if (!contents) contents = std::make_shared<Contents>();
    contents->bytes = bytes;
}

void DeleteWholeFile(const std::wstring& path)
{
    Files.erase(Lower(path));
}

void SetFreeBytes(uint64_t bytes)
{
    FreeBytes = bytes;
}

void SetFolder(int folder, const std::wstring& path)
{
    Folders[folder] = path;
    if (path.empty()) Folders.erase(folder);
}

void ResetFiles()
{
    Files.clear();
    FreeBytes = Never;
    Folders = UsualFolders;
}

} // namespace memory

using namespace memory;

BOOL SHGetSpecialFolderPathW(HWND, wchar_t* path, int folder, BOOL)
{
    if (Fails(Call::SHGetSpecialFolderPathW)) return FALSE;
    const auto found = Folders.find(folder);
    if (found == Folders.end() || found->second.size() >= MAX_PATH) return Fail(ERROR_FILE_NOT_FOUND);
    std::copy_n(found->second.c_str(), found->second.size() + 1, path);
    return TRUE;
}
