// SPDX-License-Identifier: MIT
// Routines that the compiler and its libraries call besides the system.

#include <cstring>

extern "C" {

// Loops here must not be recognised as calls of themselves.
[[gnu::optimize("no-tree-loop-distribute-patterns")]] size_t strlen(const char* text)
{
    const char* end = text;
    while (*end) ++end;
    return static_cast<size_t>(end - text);
}

int strcmp(const char* left, const char* right)
{
    while (*left && *left == *right) {
        ++left;
        ++right;
    }
    return static_cast<unsigned char>(*left) - static_cast<unsigned char>(*right);
}

[[gnu::optimize("no-tree-loop-distribute-patterns")]] void* memchr(const void* memory, int value,
                                                                   size_t count)
{
    const unsigned char* byte = static_cast<const unsigned char*>(memory);
    for (; count; --count, ++byte)
        if (*byte == static_cast<unsigned char>(value)) return const_cast<unsigned char*>(byte);
    return nullptr;
}

// Where the mathematics leaves errors, which nobody reads.
int* __errno()
{
    static int unread;
    return &unread;
}

} // extern "C"
