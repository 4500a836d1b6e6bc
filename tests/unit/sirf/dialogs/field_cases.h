// SPDX-License-Identifier: MIT
// The values that each field of the SiRF dialogs accepts, as tables, for the tests of the dialogs and for the
// tests of other forms of the whole program. Nothing here is part of the program.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "headless.h"

// The user's entry in a control.
struct Entry {
    int control;
    enum class Kind : uint8_t { Text, Choice, Box } kind;
    std::wstring text; // typed, or on keypads the beginning of the entry that is chosen
    int number = 0;    // index of the entry, -1 none; or BST_...
};
inline Entry Typed(int control, const std::wstring& text)
{
    return {control, Entry::Kind::Text, text};
}
inline Entry Chosen(int control, int index)
{
    return {control, Entry::Kind::Choice, {}, index};
}
inline Entry Ticked(int control, UINT state)
{
    return {control, Entry::Kind::Box, {}, static_cast<int>(state)};
}

struct Accepted {
    Entry entry;
    size_t offset;     // of its bytes in the payload
    const char* bytes; // at this offset, for all values of the other fields
};

struct FieldCase {
    Entry usual; // an acceptable entry
    std::vector<Accepted> accepted;
    std::vector<Entry> refused;
    std::wstring caption, text;
};

struct DialogCase {
    const char* name;
    int command; // of the menu, which opens the dialog
    int set;
    const char* frame;             // sent when every field holds its usual entry
    std::vector<FieldCase> fields; // in the order in which they are checked
};

// Every dialog that is made from its command's fields.
const std::vector<DialogCase>& FieldCases();
