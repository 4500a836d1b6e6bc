// SPDX-License-Identifier: MIT
// A console program that reads the windows of other programs and operates their controls, for tests and for
// the launcher. It reads one command per line, words separated by tabs, and answers with one JSON object per
// line: the result, or {"error": "..."}. Windows and messages are plain numbers.
#pragma once

#include <windows.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

using Json = nlohmann::ordered_json;
using Words = std::vector<std::wstring>;

// Thrown by a command that cannot be carried out; the text becomes the answer.
struct Refused : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct Command {
    const wchar_t* name;
    size_t words; // words that must follow the name
    Json (*run)(const Words& words);
};

// The command with this name; throws Refused if there is none.
const Command& FindCommand(const std::wstring& name);

// The text that a window's client area shows, read back from the pixels on the screen: the page is drawn with
// a font of fixed pitch, so every cell must be, pixel for pixel, one of the font's characters. A cell with no
// such character reads as U+FFFD. Trailing blanks are not returned. Throws Refused if another window covers
// the area, or if there are pixels outside the `lines` lines of text that are not background.
std::vector<std::wstring> ReadPage(HWND window, int lines);

std::string Utf8(const std::wstring& text);
std::wstring Wide(const std::string& utf8);
