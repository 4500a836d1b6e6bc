// SPDX-License-Identifier: MIT
// Wide text as UTF-8, for the tools that print it. The program itself shows wide text as it is.
#pragma once

#include <cstdint>
#include <string>

// Characters up to U+FFFF, the only ones that the program's texts have; the terminator ends the text.
inline std::string ToUtf8(const wchar_t* text)
{
    std::string out;
    for (; *text; ++text) {
        const uint32_t c = static_cast<uint32_t>(*text);
        if (c < 0x80) {
            out += static_cast<char>(c);
        } else if (c < 0x800) {
            out += static_cast<char>(0xC0 | c >> 6);
            out += static_cast<char>(0x80 | (c & 0x3F));
        } else {
            out += static_cast<char>(0xE0 | (c >> 12 & 0x0F));
            out += static_cast<char>(0x80 | (c >> 6 & 0x3F));
            out += static_cast<char>(0x80 | (c & 0x3F));
        }
    }
    return out;
}
