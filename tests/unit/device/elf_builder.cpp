// SPDX-License-Identifier: MIT
#include "elf_builder.h"

namespace device
{

namespace
{

// A table of texts; the empty one is at its beginning.
struct TextTable {
    Bytes bytes{0};
    uint32_t Add(const std::string& text)
    {
        const auto offset = static_cast<uint32_t>(bytes.size());
        bytes.insert(bytes.end(), text.begin(), text.end());
        bytes.push_back(0);
        return offset;
    }
};

} // namespace

Bytes Words(std::initializer_list<uint32_t> words)
{
    Bytes bytes;
    for (const uint32_t word : words) Append(bytes, word);
    return bytes;
}

Bytes ElfBuilder::Build() const
{
    TextTable sectionNames, symbolNames;
    Bytes symbolTable, relocationTable;
    for (const ElfSymbol& symbol : symbols) {
        Append(symbolTable, symbolNames.Add(symbol.name));
        Append(symbolTable, symbol.value);
        Append(symbolTable, uint32_t{0});
        Append(symbolTable, static_cast<uint8_t>(symbol.weak ? 0x20 : 0x10));
        Append(symbolTable, uint8_t{0});
        Append(symbolTable, symbol.section);
    }
    for (const ElfRelocation& relocation : relocations) {
        Append(relocationTable, relocation.address);
        Append(relocationTable, static_cast<uint32_t>(relocation.symbol << 8 | relocation.type));
    }

    const auto own = static_cast<uint32_t>(sections.size());
    const uint32_t symbolsIndex = own + 1, namesOfSymbols = own + 2, namesOfSections = own + 4;
    struct Entry {
        std::string name;
        uint32_t type, flags, address;
        Bytes bytes;
        uint32_t size, link, info;
    };
    std::vector<Entry> all{{"", 0, 0, 0, {}, 0, 0, 0}};
    for (const BuiltSection& s : sections)
        all.push_back({s.name, s.type, s.flags, s.address, s.bytes, s.size, 0, 0});
    all.push_back({".symtab", 2, 0, 0, symbolTable, 0, namesOfSymbols, 0});
    all.push_back({".strtab", 3, 0, 0, symbolNames.bytes, 0, 0, 0});
    all.push_back({".rel", 9, 0, 0, relocationTable, 0, symbolsIndex, relocatedSection});
    all.push_back({".shstrtab", 3, 0, 0, {}, 0, 0, 0});
    std::vector<uint32_t> names;
    for (const Entry& entry : all) names.push_back(sectionNames.Add(entry.name));
    all.back().bytes = sectionNames.bytes;

    Bytes file(52);
    std::vector<uint32_t> offsets;
    for (const Entry& entry : all) {
        offsets.push_back(static_cast<uint32_t>(file.size()));
        Append(file, entry.bytes);
        Align(file, 4);
    }
    const auto table = static_cast<uint32_t>(file.size());
    for (size_t i = 0; i < all.size(); ++i) {
        const Entry& entry = all[i];
        const auto size = entry.type == NoBits ? entry.size : static_cast<uint32_t>(entry.bytes.size());
        for (const uint32_t field : {names[i], entry.type, entry.flags, entry.address, offsets[i], size,
                                     entry.link, entry.info, uint32_t{4}, uint32_t{0}})
            Append(file, field);
    }
    const uint8_t identity[] = {0x7F, 'E', 'L', 'F', 1, 1, 1};
    std::copy(std::begin(identity), std::end(identity), file.begin());
    Put(file, 16, uint16_t{2});  // a linked program
    Put(file, 18, uint16_t{40}); // ARM
    Put(file, 24, TextAddress);  // entry
    Put(file, 32, table);
    Put(file, 46, uint16_t{40});
    Put(file, 48, static_cast<uint16_t>(all.size()));
    Put(file, 50, static_cast<uint16_t>(namesOfSections));
    return file;
}

ElfBuilder SmallProgram()
{
    constexpr uint32_t Allocated = 2;
    constexpr uint8_t Absolute32 = 2;
    ElfBuilder elf;
    elf.sections = {
        {".text", ProgramBits, Allocated, TextAddress, Words({0xE1A00000, 0xE1A0F00E, ConstantsAddress}), 0},
        {".rdata", ProgramBits, Allocated, ConstantsAddress, Words({0x12345678}), 0},
        {".data", ProgramBits, Allocated, DataAddress, Words({7, 0}), 0},
        {".bss", NoBits, Allocated, ZerosAddress, {}, 8},
        {".idata", ProgramBits, Allocated, SlotsAddress, Words({0, 0, 0, 0, 0}), 0},
        {".comment", ProgramBits, 0, 0, Words({1}), 0},
    };
    elf.symbols = {
        {"", 0, 0, false},
        {"$a", TextAddress, TextIndex, false},
        {"$d", TextAddress + 8, TextIndex, false},
        {"Constant", ConstantsAddress, ConstantsIndex, false},
        {"import!A.dll!First", SlotsAddress, 5, false},
        {"import!A.dll!Second", SlotsAddress + 4, 5, false},
        {"import!B.dll!Third", SlotsAddress + 12, 5, false},
    };
    elf.relocations = {{TextAddress + 8, Absolute32, 3}};
    return elf;
}

} // namespace device
