// SPDX-License-Identifier: MIT
// Where the program keeps its settings, typed apart from the program.
#pragma once

constexpr const wchar_t* SettingsKey = L"Software\\Quenmark\\Toravane"; // under HKEY_LOCAL_MACHINE
