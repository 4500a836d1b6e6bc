// SPDX-License-Identifier: MIT
#include "imports.h"

#include "import_stubs.h"

#include <map>

namespace device
{

namespace
{

void AppendText(Bytes& bytes, const std::string& text)
{
    for (const char c : text) bytes.push_back(static_cast<uint8_t>(c));
    bytes.push_back(0);
}

// By library, the exported names by the addresses of their slots.
std::map<std::string, std::map<uint32_t, std::string>> FindSlots(const ElfFile& elf)
{
    std::map<std::string, std::map<uint32_t, std::string>> libraries;
    for (const ElfSymbol& symbol : elf.symbols) {
        if (!symbol.name.starts_with(SlotPrefix)) continue;
        const size_t library = SlotPrefix.size(), end = symbol.name.find('!', library);
        if (end == std::string::npos) throw Refusal("bad symbol " + symbol.name);
        libraries[symbol.name.substr(library, end - library)][symbol.value] = symbol.name.substr(end + 1);
    }
    return libraries;
}

} // namespace

ImportSection MakeImportSection(const ElfFile& elf, const ElfSection& section, uint32_t imageBase)
{
    const uint32_t sectionPlace = section.address - imageBase;
    ImportSection result;
    result.bytes.assign(section.bytes.begin(), section.bytes.end());
    result.slots = {sectionPlace, section.size};
    const auto here = [&] { return sectionPlace + static_cast<uint32_t>(result.bytes.size()); };

    Bytes directory;
    uint32_t expected = section.address;
    for (const auto& [library, slots] : FindSlots(elf)) {
        const uint32_t first = expected;
        Bytes names; // address of each call's name, and a zero at the end
        for (const auto& [slot, name] : slots) {
            if (slot != expected) throw Refusal("slot of " + name + " at " + Hex(slot));
            expected += 4;
            Align(result.bytes, 2);
            Append(names, here());
            Put(result.bytes, slot - section.address, here());
            Append(result.bytes, uint16_t{0}); // no hint about the index in the library
            AppendText(result.bytes, name);
            ++result.callCount;
        }
        if (Get<uint32_t>(section.bytes, expected - section.address))
            throw Refusal("slots of " + library + " not ended by zero");
        expected += 4;
        Append(names, uint32_t{0});
        Align(result.bytes, 4);
        Append(directory, here());
        Append(result.bytes, names);
        Append(directory, uint32_t{0}); // not bound, no time
        Append(directory, uint32_t{0});
        Append(directory, here());
        AppendText(result.bytes, library);
        Append(directory, first - imageBase);
        result.libraries.push_back(library);
    }
    if (expected != section.address + section.size) throw Refusal("something else among the import slots");
    directory.resize(directory.size() + 20);
    Align(result.bytes, 4);
    result.directory = {here(), static_cast<uint32_t>(directory.size())};
    Append(result.bytes, directory);
    return result;
}

} // namespace device
