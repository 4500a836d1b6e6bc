// SPDX-License-Identifier: MIT
// An ARM program from the linker: sections, symbols, and the relocations that were applied.
#pragma once

#include "little_endian.h"

#include <string>

namespace device
{

constexpr uint32_t AllocatedFlag = 2, ThreadLocalFlag = 0x400; // of sections

struct ElfSection {
    std::string name;
    uint32_t type, flags, address, size, link, info;
    std::span<const uint8_t> bytes; // empty if the file contains none
};

struct ElfSymbol {
    std::string name;
    uint32_t value;
    uint16_t section;
    bool weak;
};

struct ElfRelocation {
    uint32_t address;
    uint8_t type;
    size_t symbol; // index
};

struct ElfFile {
    uint32_t entry;
    std::vector<ElfSection> sections;
    std::vector<ElfSymbol> symbols;
    std::vector<ElfRelocation> relocations; // true if it is a part of the program in memory

    const ElfSection* Find(const std::string& name) const; // null if there is none, or if it is empty
};

// Refuses anything but a linked 32-bit ARM program with its symbols. `file` must outlive the result.
ElfFile ReadElf(std::span<const uint8_t> file);

} // namespace device
