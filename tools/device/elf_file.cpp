// SPDX-License-Identifier: MIT
#include "elf_file.h"

namespace device
{

namespace
{

constexpr uint32_t SymbolTable = 2, NoBits = 8, Relocations = 9; // section types

std::string TextAt(std::span<const uint8_t> table, size_t offset)
{
    std::string text;
    while (const uint8_t c = Get<uint8_t>(table, offset++)) text.push_back(static_cast<char>(c));
    return text;
}

std::vector<ElfSection> ReadSections(std::span<const uint8_t> file)
{
    constexpr size_t EntrySize = 40;
    const uint32_t table = Get<uint32_t>(file, 32);
    const uint16_t count = Get<uint16_t>(file, 48), namesIndex = Get<uint16_t>(file, 50);
    std::vector<ElfSection> sections;
    std::vector<uint32_t> nameOffsets;
    for (size_t i = 0; i < count; ++i) {
        const auto entry = Part(file, table + i * EntrySize, EntrySize);
        ElfSection section;
        nameOffsets.push_back(Get<uint32_t>(entry, 0));
        section.type = Get<uint32_t>(entry, 4);
        section.flags = Get<uint32_t>(entry, 8);
        section.address = Get<uint32_t>(entry, 12);
        section.size = Get<uint32_t>(entry, 20);
        section.link = Get<uint32_t>(entry, 24);
        section.info = Get<uint32_t>(entry, 28);
        if (section.type != NoBits) section.bytes = Part(file, Get<uint32_t>(entry, 16), section.size);
        sections.push_back(section);
    }
    if (namesIndex >= count) throw Refusal("no section names");
    for (size_t i = 0; i < count; ++i) sections[i].name = TextAt(sections[namesIndex].bytes, nameOffsets[i]);
    return sections;
}

const ElfSection& SectionAt(const std::vector<ElfSection>& sections, size_t index)
{
    if (index >= sections.size()) throw Refusal("a section that does not exist");
    return sections[index];
}

std::vector<ElfSymbol> ReadSymbols(const std::vector<ElfSection>& sections)
{
    constexpr size_t EntrySize = 16;
    std::vector<ElfSymbol> symbols;
    for (const ElfSection& section : sections) {
        if (section.type != SymbolTable) continue;
        const auto names = SectionAt(sections, section.link).bytes;
        for (size_t offset = 0; offset < section.bytes.size(); offset += EntrySize) {
            const auto entry = Part(section.bytes, offset, EntrySize);
            constexpr uint8_t Weak = 2;
            symbols.push_back({TextAt(names, Get<uint32_t>(entry, 0)), Get<uint32_t>(entry, 4),
                               Get<uint16_t>(entry, 14), Get<uint8_t>(entry, 12) >> 4 == Weak});
        }
    }
    if (symbols.empty()) throw Refusal("no symbols: the program was stripped");
    return symbols;
}

std::vector<ElfRelocation> ReadRelocations(const ElfFile& elf)
{
    constexpr size_t EntrySize = 8;
    std::vector<ElfRelocation> relocations;
    for (const ElfSection& section : elf.sections) {
        if (section.type != Relocations || !(SectionAt(elf.sections, section.info).flags & AllocatedFlag))
            continue;
        for (size_t offset = 0; offset < section.bytes.size(); offset += EntrySize) {
            const auto entry = Part(section.bytes, offset, EntrySize);
            const uint32_t info = Get<uint32_t>(entry, 4);
            relocations.push_back({Get<uint32_t>(entry, 0), static_cast<uint8_t>(info), info >> 8});
            if (info >> 8 >= elf.symbols.size()) throw Refusal("a symbol that does not exist");
        }
    }
    return relocations;
}

} // namespace

const ElfSection* ElfFile::Find(const std::string& name) const
{
    for (const ElfSection& section : sections)
        if (section.name == name && section.size) return &section;
    return nullptr;
}

ElfFile ReadElf(std::span<const uint8_t> file)
{
    constexpr uint32_t Magic = 0x464C457F;
    constexpr uint16_t Bits32LittleEndian = 0x0101, Executable = 2, Arm = 40;
    if (Get<uint32_t>(file, 0) != Magic || Get<uint16_t>(file, 4) != Bits32LittleEndian ||
        Get<uint16_t>(file, 16) != Executable || Get<uint16_t>(file, 18) != Arm)
        throw Refusal("not a linked 32-bit ARM program");
    ElfFile elf;
    elf.entry = Get<uint32_t>(file, 24);
    elf.sections = ReadSections(file);
    elf.symbols = ReadSymbols(elf.sections);
    elf.relocations = ReadRelocations(elf);
    return elf;
}

} // namespace device
