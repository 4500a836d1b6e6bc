// SPDX-License-Identifier: MIT
// Stored settings and files, which the page keeps; and the platform's texts for errors.
#include "platform/web/web.h"

#include <cstring>
#include <cwchar>

#include "messages.h"

namespace memory
{

// No call can be made to fail here, and no thread is interrupted.
bool FaultsArmed = false, Interleaving = false;
bool FaultHit(Call)
{
    return false;
}
void SwitchAtRandom() {}

const bool RealThreads = false, DrawsTexts = false, KeepsInvalidations = false;
void EnterPlatform() {}
void LeavePlatform() {}
void PauseReally() {}
void HandOver(const void*) {}
void TakeOver(const void*) {}
InProgram::InProgram() : depth(0) {}
InProgram::~InProgram() = default;

void ValueStored(const std::wstring& name, const StoredValue* value)
{
    int32_t number = 0;
    if (!web::Keeps(name)) return;
    if (!value) return web::ToPageSettingGone(name);
    if (value->data.size() != sizeof number) return; // the program stores numbers only
    std::memcpy(&number, value->data.data(), sizeof number);
    web::ToPageSetting(name, number);
}

// From now on the browser owns the file.
void FileClosed(const std::wstring& path)
{
    const std::string* bytes = FindFileBytes(path);
    if (!bytes) return;
    web::ToPageDownload(path.substr(path.find_last_of(L'\\') + 1), *bytes);
    DeleteWholeFile(path);
}

std::wstring ErrorText(DWORD error)
{
    struct Row {
        DWORD error;
        const wchar_t* text;
    };
    static constexpr Row Rows[] = {
        {ERROR_FILE_NOT_FOUND, L"The system cannot find the file specified."},
        {ERROR_ACCESS_DENIED, L"Access is denied."},
        {ERROR_INVALID_HANDLE, L"The handle is invalid."},
        {31, L"A device attached to the system is not functioning."},
        {ERROR_DISK_FULL, L"There is not enough space on the disk."},
    };
    for (const Row& row : Rows)
        if (row.error == error) return std::wstring(row.text) + L"\r\n";
    return L"Error " + std::to_wstring(error) + L".\r\n";
}

} // namespace memory

namespace web
{

constexpr const wchar_t* SettingsPath = L"Software\\Quenmark\\Toravane";

void OnSetting(const std::wstring& name, int32_t value)
{
    memory::SetValue(HKEY_LOCAL_MACHINE, SettingsPath, name.c_str(),
                     {REG_DWORD, std::string(reinterpret_cast<const char*>(&value), sizeof value)});
}

} // namespace web

// A page does not ask for a name: the browser stores the file in its folder for downloads.
BOOL GetSaveFileNameW(OPENFILENAMEW* dialog)
{
    const wchar_t* pattern = dialog->lpstrFilter; // pairs: a text for the user, a pattern of the names
    for (DWORD i = 0; i + 1 < 2 * dialog->nFilterIndex && *pattern; ++i) pattern += std::wcslen(pattern) + 1;
    std::wstring name = dialog->lpstrFile, extension = pattern;
    extension.erase(0, extension.find(L'.'));
    if (extension == L".*") extension = L".txt";
    if (name.size() + extension.size() >= dialog->nMaxFile) return FALSE;
    name += extension;
    std::copy_n(name.c_str(), name.size() + 1, dialog->lpstrFile);
    return TRUE;
}
