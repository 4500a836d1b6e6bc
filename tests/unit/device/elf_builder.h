// SPDX-License-Identifier: MIT
// Linked ARM programs for the tests, written field by field from the format's description.
#pragma once

#include "device/elf_file.h"

namespace device
{

constexpr uint32_t ProgramBits = 1, NoBits = 8; // section types
constexpr uint32_t TextAddress = 0x11000, ConstantsAddress = 0x12000, DataAddress = 0x13000,
                   ZerosAddress = 0x13008, SlotsAddress = 0x14000;
constexpr uint16_t TextIndex = 1, ConstantsIndex = 2, DataIndex = 3; // of a small program's sections

struct BuiltSection {
    std::string name;
    uint32_t type, flags, address;
    Bytes bytes;
    uint32_t size; // of sections without bytes
};

struct ElfBuilder {
    std::vector<BuiltSection> sections; // numbered from 1
    std::vector<ElfSymbol> symbols;     // numbered from 0; the empty one in front is not added
    std::vector<ElfRelocation> relocations;
    uint16_t relocatedSection = TextIndex;

    Bytes Build() const;
};

Bytes Words(std::initializer_list<uint32_t> words);

// Two instructions, a constant, a variable with 8 bytes of zeros after it, and imports of two calls of
// "A.dll" and one of "B.dll"; a pointer in the code and one among the constants.
ElfBuilder SmallProgram();

// The text with which a call refuses its input; empty if it accepts it.
template <typename Call> std::string RefusalOf(Call call)
{
    try {
        call();
    } catch (const Refusal& refusal) {
        return refusal.what();
    }
    return "";
}

} // namespace device
