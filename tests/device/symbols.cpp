// SPDX-License-Identifier: MIT
#include "tests/device/symbols.h"

#include <cxxabi.h>
#include <elf.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <vector>

#include "tests/device/fault.h"
#include "tests/device/machine.h"

namespace
{

struct Routine {
    uint32_t size;
    std::string name;
};
std::map<GuestAddress, Routine> Routines; // by address
constexpr GuestAddress LinkedBase = 0x10000;

template <typename T> T At(const std::vector<char>& file, size_t place)
{
    T value;
    if (place + sizeof value > file.size()) DeviceFault("the symbols are cut off");
    std::memcpy(&value, file.data() + place, sizeof value);
    return value;
}

std::string Demangled(const char* name)
{
    int status = 0;
    char* const text = abi::__cxa_demangle(name, nullptr, nullptr, &status);
    const std::string result = status == 0 ? text : name;
    std::free(text);
    return result;
}

} // namespace

void LoadSymbols(const std::string& elfPath, GuestAddress base)
{
    std::ifstream stream(elfPath, std::ios::binary);
    const std::vector<char> file(std::istreambuf_iterator<char>(stream), {});
    const auto header = At<Elf32_Ehdr>(file, 0);
    for (uint32_t i = 0; i < header.e_shnum; ++i) {
        const auto section = At<Elf32_Shdr>(file, header.e_shoff + size_t{i} * header.e_shentsize);
        if (section.sh_type != SHT_SYMTAB) continue;
        const auto texts =
            At<Elf32_Shdr>(file, header.e_shoff + size_t{section.sh_link} * header.e_shentsize);
        for (uint32_t place = 0; place < section.sh_size; place += sizeof(Elf32_Sym)) {
            const auto symbol = At<Elf32_Sym>(file, section.sh_offset + place);
            if (ELF32_ST_TYPE(symbol.st_info) == STT_FUNC)
                Routines[symbol.st_value - LinkedBase + base] = {
                    symbol.st_size, Demangled(file.data() + texts.sh_offset + symbol.st_name)};
        }
    }
    SetSymbolizer([](GuestAddress address) {
        const auto after = Routines.upper_bound(address);
        if (after == Routines.begin()) return std::string();
        const auto& [start, routine] = *std::prev(after);
        return address - start < routine.size ? routine.name : std::string();
    });
}
