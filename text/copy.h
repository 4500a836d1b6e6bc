// SPDX-License-Identifier: MIT
// Copies between 8-bit and wide text, and comparisons, without the system's locale.
#pragma once

#include <cstdint>

// Each byte becomes one wide character, terminator included; `to` has room for all of them.
void WidenAsciiCopy(wchar_t* to, const char* from);

// The low byte of each character, terminator included; `to` has room for all of them.
void NarrowWideCopy(char* to, const wchar_t* from);

// Copies at most `capacity` - 1 characters, terminates, and returns how many. `capacity` is at least 1.
uint32_t CopyText(wchar_t* to, uint32_t capacity, const wchar_t* from);

// True if two texts are equal; upper and lower case differ.
bool TextEquals(const wchar_t* a, const wchar_t* b);

// True if `text` begins with `start`. The second form ignores the case of the letters A to Z.
bool StartsWith(const char* text, const char* start);
bool StartsWithIgnoringCase(const wchar_t* text, const wchar_t* start);
