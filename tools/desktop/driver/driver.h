// A console program that looks at the windows of other programs and works their controls, for tests and for
// the launcher. It reads one command a line, words separated by tabs, and answers with one JSON object a
// line: what was asked for, or {"error": "..."}. Windows and messages are plain numbers.
#pragma once

#include <windows.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

using Words = std::vector<std::wstring>;

// Thrown by a command that cannot do what it was asked for; the text becomes the answer.
struct Refused : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct Command {
    const wchar_t* name;
    size_t words; // that must follow the name
    std::string (*run)(const Words& words);
};

// The command of that name; throws Refused if there is none.
const Command& FindCommand(const std::wstring& name);

// The text that a window's client area shows, read back from the pixels on the screen: the page is drawn with
// a font of fixed pitch, so every cell must be, pixel for pixel, one of the font's characters. A cell that is
// none of them reads as U+FFFD. Trailing blanks are not returned. Throws Refused if another window covers the
// area, or if there are pixels outside the `lines` lines of text that are not background.
std::vector<std::wstring> ReadPage(HWND window, int lines);

// ---- JSON ---------------------------------------------------------------------------------------------

std::string Utf8(const std::wstring& text);
std::wstring Wide(const std::string& utf8);

// `text` as a JSON string, with its quotes.
std::string Quoted(const std::wstring& text);

// One member; the value is taken as it stands.
std::string Member(const char* name, const std::string& value);
std::string Member(const char* name, const wchar_t* value) = delete;
inline std::string Member(const char* name, long long value)
{
    return Member(name, std::to_string(value));
}
inline std::string Flag(const char* name, bool value)
{
    return Member(name, std::string(value ? "true" : "false"));
}

// Members or elements between brackets, separated by commas.
std::string Object(const std::vector<std::string>& members);
std::string Array(const std::vector<std::string>& elements);
