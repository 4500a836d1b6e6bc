// SPDX-License-Identifier: MIT
// The registry key of the program's settings, typed independently of the program.
#pragma once

constexpr const wchar_t* SettingsKey = L"Software\\Quenmark\\Toravane"; // under HKEY_LOCAL_MACHINE
