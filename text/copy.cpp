// SPDX-License-Identifier: MIT
#include "text/copy.h"

void WidenAsciiCopy(wchar_t* to, const char* from)
{
    do *to++ = static_cast<unsigned char>(*from);
    while (*from++);
}

void NarrowWideCopy(char* to, const wchar_t* from)
{
    do *to++ = static_cast<char>(static_cast<unsigned char>(*from));
    while (*from++);
}

uint32_t CopyText(wchar_t* to, uint32_t capacity, const wchar_t* from)
{
    uint32_t length = 0;
    for (; length < capacity - 1 && from[length]; ++length) to[length] = from[length];
    to[length] = 0;
    return length;
}

bool TextEquals(const wchar_t* a, const wchar_t* b)
{
    while (*a && *a == *b) ++a, ++b;
    return *a == *b;
}

bool StartsWith(const char* text, const char* start)
{
    while (*start)
        if (*text++ != *start++) return false;
    return true;
}

bool StartsWithIgnoringCase(const wchar_t* text, const wchar_t* start)
{
    const auto lower = [](wchar_t c) {
        return c >= 'A' && c <= 'Z' ? static_cast<wchar_t>(c + ('a' - 'A')) : c;
    };
    for (; *start; ++text, ++start)
        if (lower(*text) != lower(*start)) return false;
    return true;
}
