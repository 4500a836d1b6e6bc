// SPDX-License-Identifier: MIT
#include "base_relocations.h"

#include <algorithm>
#include <map>

namespace device
{

namespace
{

bool IsAbsolute(uint8_t type)
{
    constexpr uint8_t Absolute32 = 2, Target1 = 38;
    return type == Absolute32 || type == Target1;
}

// True for every address of the whole image.
bool IsRelative(uint8_t type)
{
    constexpr uint8_t None = 0, Pc24 = 1, Relative32 = 3, Call = 28, Jump24 = 29, V4Bx = 40, Relative31 = 42;
    constexpr uint8_t Known[] = {None, Pc24, Relative32, Call, Jump24, V4Bx, Relative31};
    return std::ranges::find(Known, type) != std::end(Known);
}

// True for a symbol that is no address: an absolute one, or a weak one without definition.
bool PointsNowhere(const ElfSymbol& symbol)
{
    constexpr uint16_t Undefined = 0, Absolute = 0xFFF1;
    return symbol.section == Absolute || (symbol.section == Undefined && symbol.weak);
}

} // namespace

std::vector<uint32_t> FindPointers(const ElfFile& elf)
{
    std::vector<uint32_t> pointers;
    for (const ElfRelocation& relocation : elf.relocations) {
        if (IsRelative(relocation.type)) continue;
        const ElfSymbol& symbol = elf.symbols[relocation.symbol];
        const std::string where = " at " + Hex(relocation.address) + " (" + symbol.name + ")";
        if (!IsAbsolute(relocation.type))
            throw Refusal("relocation of type " + std::to_string(relocation.type) + where);
        if (PointsNowhere(symbol)) continue;
        if (relocation.address % 4) throw Refusal("unaligned pointer" + where);
        pointers.push_back(relocation.address);
    }
    std::ranges::sort(pointers);
    const auto doubles = std::ranges::unique(pointers);
    pointers.erase(doubles.begin(), doubles.end());
    return pointers;
}

Bytes MakeRelocationSection(const std::vector<uint32_t>& pointers, uint32_t imageBase)
{
    constexpr uint32_t PageSize = 0x1000;
    constexpr uint16_t HighLow = 3 << 12, Filler = 0;
    std::map<uint32_t, std::vector<uint16_t>> pages;
    for (const uint32_t pointer : pointers) {
        const uint32_t place = pointer - imageBase, inPage = place % PageSize;
        pages[place - inPage].push_back(static_cast<uint16_t>(HighLow | inPage));
    }
    Bytes section;
    for (auto& [page, entries] : pages) {
        if (entries.size() % 2) entries.push_back(Filler); // blocks begin at multiples of 4
        Append(section, page);
        Append(section, static_cast<uint32_t>(8 + 2 * entries.size()));
        for (const uint16_t entry : entries) Append(section, entry);
    }
    return section;
}

} // namespace device
