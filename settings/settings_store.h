// Every persistent setting of the program: 32-bit numbers in the registry under Software\Quenmark\Toravane of
// the machine-wide root. Where the system refuses that root to ordinary users they live under the user's own,
// which is read first. Any thread; no handle is kept between calls.
#pragma once

#include <cstdint>

// The stored number, or `absent` when the value is not stored, cannot be read or is longer than 4 bytes. Its
// type is not looked at. Callers pass a number that cannot be a stored value.
int32_t SettingsGetDword(const wchar_t* name, int32_t absent);

// Stores the number; silently leaves the old one when the system refuses.
void SettingsSetDword(const wchar_t* name, int32_t value);
