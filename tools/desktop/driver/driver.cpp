// SPDX-License-Identifier: MIT
#include "driver.h"

#include <algorithm>
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

static Json Answer(const std::string& line)
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
        return {{"error", problem.what()}};
    }
}

int main()
{
    std::ios::sync_with_stdio(false);
    for (std::string line; std::getline(std::cin, line);) {
        // Invalid text becomes U+FFFD.
        std::cout << Answer(line).dump(-1, ' ', false, Json::error_handler_t::replace) << std::endl;
    }
}
