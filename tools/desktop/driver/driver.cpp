#include "driver.h"

#include <algorithm>
#include <cstdio>
#include <iostream>

std::string Utf8(const std::wstring& text)
{
    std::string result(text.size() * 3 + 1, '\0');
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), int(text.size()), result.data(),
                                         int(result.size()), nullptr, nullptr);
    result.resize(size_t(size));
    return result;
}

std::wstring Wide(const std::string& utf8)
{
    std::wstring result(utf8.size() + 1, L'\0');
    const int size =
        MultiByteToWideChar(CP_UTF8, 0, utf8.data(), int(utf8.size()), result.data(), int(result.size()));
    result.resize(size_t(size));
    return result;
}

std::string Quoted(const std::wstring& text)
{
    std::string result = "\"";
    for (const char c : Utf8(text)) {
        char escape[8];
        if (c == '"' || c == '\\') {
            result += '\\';
            result += c;
        } else if (uint8_t(c) < 0x20) {
            std::snprintf(escape, sizeof escape, "\\u%04x", unsigned(uint8_t(c)));
            result += escape;
        } else {
            result += c;
        }
    }
    return result + '"';
}

std::string Member(const char* name, const std::string& value)
{
    return '"' + std::string(name) + "\": " + value;
}

static std::string Joined(char open, const std::vector<std::string>& parts, char close)
{
    std::string result(1, open);
    for (const std::string& part : parts) {
        if (result.size() > 1) result += ", ";
        result += part;
    }
    return result + close;
}

std::string Object(const std::vector<std::string>& members)
{
    return Joined('{', members, '}');
}
std::string Array(const std::vector<std::string>& elements)
{
    return Joined('[', elements, ']');
}

static std::string Answer(const std::string& line)
{
    Words words(1);
    for (const wchar_t c : Wide(line)) {
        if (c == L'\t') {
            words.emplace_back();
        } else if (c != L'\r') {
            words.back() += c;
        }
    }
    try {
        const Command& command = FindCommand(words.front());
        if (words.size() != command.words + 1) throw Refused("wrong number of words");
        return command.run(words);
    } catch (const std::exception& problem) {
        return Object({Member("error", Quoted(Wide(problem.what())))});
    }
}

int main()
{
    std::ios::sync_with_stdio(false);
    for (std::string line; std::getline(std::cin, line);) {
        std::cout << Answer(line) << std::endl;
    }
}
