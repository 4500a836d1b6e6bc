// SPDX-License-Identifier: MIT
#include "ui/shell_libraries.h"

BOOL(WINAPI* ShellInitDialogEntry)(ShellInitDialog*) = nullptr;
BOOL(WINAPI* ShellCreateMenuBar)(ShellMenuBar*) = nullptr;
BOOL(WINAPI* ShellHandleSettingChange)(HWND, WPARAM, LPARAM, ShellActivateInfo*) = nullptr;
void(WINAPI* ShellSendBackToFocusWindow)(UINT, WPARAM, LPARAM) = nullptr;
FARPROC ShellExport188 = nullptr;
BOOL(WINAPI* ChooseColorEntry)(CHOOSECOLORW*) = nullptr;

namespace
{

HMODULE LoadedColorDialog = nullptr;
HMODULE LoadedShell = nullptr;

template <typename Procedure> void LookUp(Procedure& entry, HMODULE library, const wchar_t* name)
{
    entry = library ? reinterpret_cast<Procedure>(reinterpret_cast<void*>(GetProcAddressW(library, name)))
                    : nullptr;
}

} // namespace

bool HasShellLibrary()
{
    return LoadedShell != nullptr;
}

void LoadShellLibraries()
{
    LoadedColorDialog = LoadLibraryW(COLOR_LIBRARY);
    LookUp(ChooseColorEntry, LoadedColorDialog, COLOR_EXPORT);
    LoadedShell = LoadLibraryW(L"AYGSHELL.DLL");
    LookUp(ShellInitDialogEntry, LoadedShell, L"SHInitDialog");
    LookUp(ShellCreateMenuBar, LoadedShell, L"SHCreateMenuBar");
    LookUp(ShellHandleSettingChange, LoadedShell, MAKEINTRESOURCEW(83));
    LookUp(ShellExport188, LoadedShell, MAKEINTRESOURCEW(188));
    LookUp(ShellSendBackToFocusWindow, LoadedShell, MAKEINTRESOURCEW(97));
}

void FreeShellLibraries()
{
    if (LoadedColorDialog) FreeLibrary(LoadedColorDialog);
    if (LoadedShell) FreeLibrary(LoadedShell);
    LoadedColorDialog = LoadedShell = nullptr;
    ChooseColorEntry = nullptr;
    ShellInitDialogEntry = nullptr;
    ShellCreateMenuBar = nullptr;
    ShellHandleSettingChange = nullptr;
    ShellSendBackToFocusWindow = nullptr;
    ShellExport188 = nullptr;
}
