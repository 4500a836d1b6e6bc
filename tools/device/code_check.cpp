// SPDX-License-Identifier: MIT
#include "code_check.h"

#include <map>

namespace device
{

void CheckCode(const ElfFile& elf)
{
    const ElfSection* text = elf.Find(".text");
    if (!text) throw Refusal("no code");

    // Marks of the assembler: from here on ARM code (a), Thumb code (t) or data (d).
    std::map<uint32_t, char> kinds;
    for (const ElfSymbol& symbol : elf.symbols) {
        const bool mark = symbol.name.size() >= 2 && symbol.name[0] == '$';
        if (!mark || symbol.section >= elf.sections.size() || &elf.sections[symbol.section] != text) continue;
        if (symbol.name[1] == 't') throw Refusal("Thumb code at " + Hex(symbol.value));
        kinds[symbol.value] = symbol.name[1];
    }

    for (uint32_t offset = 0; offset + 4 <= text->bytes.size(); offset += 4) {
        constexpr uint32_t Bx = 0x012FFF10, WithoutConditionAndRegister = 0x0FFFFFF0,
                           MoveEqualToPc = 0x01A0F000;
        const uint32_t instruction = Get<uint32_t>(text->bytes, offset);
        if ((instruction & WithoutConditionAndRegister) != Bx) continue;
        const auto behind = kinds.upper_bound(text->address + offset);
        if (behind != kinds.begin() && std::prev(behind)->second == 'd') continue;
        const uint32_t before = offset ? Get<uint32_t>(text->bytes, offset - 4) : 0;
        if (before != (MoveEqualToPc | (instruction & 15)))
            throw Refusal("unguarded BX at " + Hex(text->address + offset));
    }
}

} // namespace device
