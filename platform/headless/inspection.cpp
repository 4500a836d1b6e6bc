// SPDX-License-Identifier: MIT
// Access of tests to the system in memory.
#include "platform/headless/internal.h"

#include <cstring>

using namespace memory;

namespace
{

std::string BytesOf(const void* data, size_t size)
{
    return std::string(static_cast<const char*>(data), size);
}

} // namespace

namespace memory
{

const bool DrawsTexts = true, KeepsInvalidations = true;

std::wstring ErrorText(DWORD error)
{
    return L"Error text " + std::to_wstring(error) + L".\r\n";
}

void ValueStored(const std::wstring&, const StoredValue*) {}
void FileClosed(const std::wstring&) {}

} // namespace memory

// ---- Windows and pictures -----------------------------------------------------------------------------

HWND HeadlessMainWindow()
{
    return MainWindowOf();
}

HWND HeadlessTopDialog()
{
    return TopDialog();
}

std::wstring HeadlessTitle(HWND window)
{
    const Window* found = FindWin(window);
    if (!found) Stop("the title of a window that does not exist");
    return found->text;
}

void HeadlessSetClientSize(int width, int height)
{
    SetMainClientSize({width, height});
}

void HeadlessSetScreenFont(int width, int height)
{
    SetFontCell({width, height});
}

void HeadlessSetDotsPerInch(int dots)
{
    SetDotsPerInch(dots);
}

void HeadlessStartMinimised()
{
    MinimiseAtFirstShow();
}

bool HeadlessIsMinimised(HWND window)
{
    const Window* found = FindWin(window);
    return found && found->minimised;
}

WNDCLASSW HeadlessWindowClass(HWND window)
{
    WNDCLASSW described = {};
    if (const Window* found = FindWin(window)) {
        described.style = found->windowClass.style;
        described.hIcon = found->windowClass.icon;
        described.hbrBackground = found->windowClass.background;
    }
    return described;
}

HWND HeadlessBroughtToFront()
{
    return BroughtToFront();
}

std::pair<UINT, UINT> HeadlessPartingMessages()
{
    return PartingMessages();
}

void HeadlessOtherProgramInFront(bool inFront)
{
    PutOtherProgramInFront(inFront);
}

std::vector<bool> HeadlessInvalidations(HWND window)
{
    const Window* found = FindWin(window);
    return found ? found->invalidations : std::vector<bool>();
}

void HeadlessClearInvalidations(HWND window)
{
    if (Window* found = FindWin(window)) found->invalidations.clear();
}

std::vector<HeadlessTextOut> HeadlessPaintedTexts(HWND window)
{
    const Window* found = FindWin(window);
    return found ? found->texts : std::vector<HeadlessTextOut>();
}

std::vector<std::string> HeadlessPaintedShapes(HWND window)
{
    const Window* found = FindWin(window);
    return found ? found->shapes : std::vector<std::string>();
}

std::vector<uint32_t> HeadlessPixels(HWND window)
{
    return FindWin(window) ? PictureOf(window).pixels : std::vector<uint32_t>();
}

std::vector<std::wstring> HeadlessMenu(HWND window)
{
    std::vector<std::wstring> lines;
    for (const MenuEntry& entry : MenuOf(window))
        lines.push_back(std::to_wstring(entry.depth) + L" " + std::to_wstring(entry.id) + L" " + entry.text);
    return lines;
}

bool HeadlessFindTemplate(uint32_t number, HeadlessTemplate& found)
{
    return FindTemplate(MAKEINTRESOURCEW(number), found);
}

// ---- Registry -----------------------------------------------------------------------------------------

void HeadlessRegistrySetDword(HKEY root, const wchar_t* path, const wchar_t* name, uint32_t value)
{
    SetValue(root, path, name, {REG_DWORD, BytesOf(&value, sizeof value)});
}

void HeadlessRegistrySetText(HKEY root, const wchar_t* path, const wchar_t* name, const wchar_t* text)
{
    SetValue(root, path, name, {REG_SZ, BytesOf(text, (std::wcslen(text) + 1) * sizeof(wchar_t))});
}

void HeadlessRegistrySetBytes(HKEY root, const wchar_t* path, const wchar_t* name, DWORD type,
                              std::string_view bytes)
{
    std::string data(bytes);
    if (type == REG_SZ || type == REG_MULTI_SZ) {
        data.clear();
        for (size_t i = 0; i + 1 < bytes.size(); i += 2) {
            const wchar_t character = static_cast<wchar_t>(static_cast<uint8_t>(bytes[i]) |
                                                           static_cast<uint8_t>(bytes[i + 1]) << 8);
            data += BytesOf(&character, sizeof character);
        }
        if (bytes.size() % 2 != 0) data += bytes.back();
    }
    SetValue(root, path, name, {type, std::move(data)});
}

void HeadlessRegistryCreateKey(HKEY root, const wchar_t* path)
{
    MakeKey(root, path);
}

bool HeadlessRegistryGetDword(HKEY root, const wchar_t* path, const wchar_t* name, uint32_t& value)
{
    const StoredValue* found = FindValue(root, path, name);
    if (!found || found->type != REG_DWORD || found->data.size() != sizeof value) return false;
    std::memcpy(&value, found->data.data(), sizeof value);
    return true;
}

std::vector<std::wstring> HeadlessRegistryValues()
{
    return AllValues();
}

void HeadlessRegistryRefuseWrites(HKEY root, bool refuse)
{
    RefuseWrites(root, refuse);
}

// ---- Files, system, libraries -------------------------------------------------------------------------

bool HeadlessFileExists(const std::wstring& path)
{
    return FindFileBytes(path) != nullptr;
}

std::string HeadlessFileContent(const std::wstring& path)
{
    const std::string* bytes = FindFileBytes(path);
    return bytes ? *bytes : std::string();
}

void HeadlessWriteFile(const std::wstring& path, std::string_view content)
{
    WriteWholeFile(path, content);
}

void HeadlessDiskFullAfter(uint64_t bytes)
{
    SetFreeBytes(bytes);
}

void HeadlessSetFolder(int folder, const std::wstring& path)
{
    SetFolder(folder, path);
}

void HeadlessSetPlatformType(const wchar_t* type, DWORD error)
{
    SetPlatformType(type, error);
}

void HeadlessSetOemInfo(const wchar_t* text, DWORD error)
{
    SetOemInfo(text, error);
}

void HeadlessAddExport(const wchar_t* library, const wchar_t* name, FARPROC procedure)
{
    AddExport(library, name, procedure);
}

void HeadlessAddExport(const wchar_t* library, uint32_t number, FARPROC procedure)
{
    AddExport(library, number, procedure);
}

std::vector<std::wstring> HeadlessLoadedLibraries()
{
    return LoadedLibraries();
}

// ---- Resources that the program has not released ------------------------------------------------------

uint32_t HeadlessOpenHandles()
{
    return OpenHandleCount();
}

uint32_t HeadlessOpenKeys()
{
    return OpenKeyCount();
}

uint32_t HeadlessUnfreedTexts()
{
    return UnfreedTexts();
}

uint32_t HeadlessGdiObjects()
{
    return GdiObjectCount();
}
