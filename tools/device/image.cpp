// SPDX-License-Identifier: MIT
#include "image.h"

#include "base_relocations.h"
#include "code_check.h"
#include "imports.h"
#include "resource_tree.h"

#include <algorithm>
#include <string_view>

namespace device
{

namespace
{

constexpr uint32_t ImageBase = 0x10000, PageSize = 0x1000, FileAlignment = 0x200;
constexpr uint32_t Code = 0x20, Data = 0x40, Discardable = 0x02000000, Executable = 0x20000000,
                   Readable = 0x40000000, Writable = 0x80000000;

struct ImageSection {
    std::string_view name;
    uint32_t place, size; // in memory, relative to the image's base
    Bytes bytes;          // the bytes in the file; the rest of `size` is zero
    uint32_t flags;
};

uint32_t FileSize(const ImageSection& section)
{
    return RoundUp(static_cast<uint32_t>(section.bytes.size()), FileAlignment);
}

uint32_t EndInMemory(const ImageSection& section)
{
    return RoundUp(section.place + section.size, PageSize);
}

void CheckSections(const ElfFile& elf)
{
    constexpr std::string_view Known[] = {".text", ".rdata", ".data", ".bss", ".idata"};
    for (const ElfSection& section : elf.sections) {
        if (section.flags & ThreadLocalFlag) throw Refusal("thread-local storage: " + section.name);
        if ((section.flags & AllocatedFlag) && section.size &&
            std::ranges::find(Known, section.name) == std::end(Known))
            throw Refusal("no place for section " + section.name);
    }
}

// `bss`, if any, lies after `section` and is zero.
ImageSection FromElf(std::string_view name, const ElfSection* section, const ElfSection* bss, uint32_t flags)
{
    const ElfSection& first = section ? *section : *bss;
    const ElfSection& last = bss ? *bss : *section;
    if (first.address % PageSize || first.address <= ImageBase)
        throw Refusal("section not on a page: " + first.name);
    Bytes bytes(first.bytes.begin(), first.bytes.end());
    return {name, first.address - ImageBase, last.address + last.size - first.address, bytes, flags};
}

uint32_t SizeOfAll(const std::vector<ImageSection>& sections, uint32_t flag)
{
    uint32_t size = 0;
    for (const ImageSection& section : sections)
        if (section.flags & flag) size += FileSize(section);
    return size;
}

void AppendOldHeader(Bytes& file) // the header that a system older than this format expects
{
    constexpr uint16_t Old[] = {0x5A4D, 0x90, 3, 0, 4, 0, 0xFFFF, 0, 0xB8, 0, 0, 0, 0x40};
    constexpr size_t PlaceOfHeader = 0x3C;
    constexpr uint32_t HeaderPlace = 0x80;
    for (const uint16_t word : Old) Append(file, word);
    file.resize(PlaceOfHeader);
    Append(file, HeaderPlace);
    file.resize(HeaderPlace);
}

// Sum of all 16-bit words with the carries added, plus the length.
uint32_t Checksum(const Bytes& file)
{
    uint32_t sum = 0;
    for (size_t offset = 0; offset < file.size(); offset += 2) {
        sum += Get<uint16_t>(file, offset);
        sum = (sum & 0xFFFF) + (sum >> 16);
    }
    return sum + static_cast<uint32_t>(file.size());
}

struct Directories {
    Range imports, resources, relocations, importSlots;
};

Bytes MakeFile(const std::vector<ImageSection>& sections, uint32_t entry, const Directories& directories)
{
    constexpr uint16_t ArmMachine = 0x01C0, CeSubsystem = 9, CeMajor = 3, CeMinor = 0;
    constexpr uint16_t HeaderSize = 224, DirectoryCount = 16, Pe32 = 0x010B;
    constexpr uint16_t ExecutableWithoutLinesAndLocals32Bit = 0x010E;
    constexpr uint32_t StackSize = 0x10000, HeapSize = 0x100000, Signature = 0x00004550;
    Bytes file;
    AppendOldHeader(file);
    Append(file, Signature);
    Append(file, ArmMachine);
    Append(file, static_cast<uint16_t>(sections.size()));
    for (int i = 0; i < 3; ++i)
        Append(file, uint32_t{0}); // no time, so that equal programs are equal; no symbols
    Append(file, HeaderSize);
    Append(file, ExecutableWithoutLinesAndLocals32Bit);

    const size_t header = file.size();
    const uint32_t headersSize =
        RoundUp(static_cast<uint32_t>(header + HeaderSize + 40 * sections.size()), FileAlignment);
    const auto data = std::ranges::find(sections, ".data", &ImageSection::name);
    Append(file, Pe32);
    Append(file, uint16_t{0}); // the linker's version
    Append(file, SizeOfAll(sections, Code));
    Append(file, SizeOfAll(sections, Data));
    Append(file, uint32_t{0}); // data without bytes in the file is included
    Append(file, entry - ImageBase);
    Append(file, sections.front().place);
    Append(file, (data == sections.end() ? sections.front() : *data).place);
    Append(file, ImageBase);
    Append(file, PageSize);
    Append(file, FileAlignment);
    for (const uint16_t version : {uint16_t{4}, uint16_t{0}, uint16_t{0}, uint16_t{0}, CeMajor, CeMinor})
        Append(file, version); // system, image, subsystem
    Append(file, uint32_t{0});
    Append(file, EndInMemory(sections.back()));
    Append(file, headersSize);
    const size_t checksum = file.size();
    Append(file, uint32_t{0});
    Append(file, CeSubsystem);
    Append(file, uint16_t{0});
    for (const uint32_t size : {StackSize, PageSize, HeapSize, PageSize}) Append(file, size);
    Append(file, uint32_t{0});
    Append(file, uint32_t{DirectoryCount});
    Range table[DirectoryCount] = {};
    table[1] = directories.imports;
    table[2] = directories.resources;
    table[5] = directories.relocations;
    table[12] = directories.importSlots;
    for (const Range& range : table) {
        Append(file, range.place);
        Append(file, range.size);
    }

    uint32_t position = headersSize;
    for (const ImageSection& section : sections) {
        const size_t start = file.size();
        for (const char c : section.name) file.push_back(static_cast<uint8_t>(c));
        file.resize(start + 8);
        Append(file, section.size);
        Append(file, section.place);
        Append(file, FileSize(section));
        Append(file, FileSize(section) ? position : uint32_t{0});
        for (int i = 0; i < 3; ++i) Append(file, uint32_t{0}); // no relocations or line numbers of its own
        Append(file, section.flags);
        position += FileSize(section);
    }
    for (const ImageSection& section : sections) {
        Align(file, FileAlignment);
        Append(file, section.bytes);
    }
    Align(file, FileAlignment);
    Put(file, checksum, Checksum(file));
    return file;
}

} // namespace

Image MakeImage(std::span<const uint8_t> program, std::span<const uint8_t> compiledResources)
{
    const ElfFile elf = ReadElf(program);
    CheckSections(elf);
    CheckCode(elf);
    const std::vector<uint32_t> pointers = FindPointers(elf);

    std::vector<ImageSection> sections;
    sections.push_back(FromElf(".text", elf.Find(".text"), nullptr, Code | Executable | Readable));
    if (const ElfSection* constants = elf.Find(".rdata"))
        sections.push_back(FromElf(".rdata", constants, nullptr, Data | Readable));
    const ElfSection *data = elf.Find(".data"), *zeros = elf.Find(".bss");
    if (data || zeros) sections.push_back(FromElf(".data", data, zeros, Data | Readable | Writable));

    const auto add = [&](std::string_view name, uint32_t place, const Bytes& bytes, uint32_t flags) {
        const Range range{place, static_cast<uint32_t>(bytes.size())};
        sections.push_back({name, place, range.size, bytes, flags});
        return range;
    };
    const ElfSection* slots = elf.Find(".idata");
    if (!slots) throw Refusal("no imports: the program could not even end");
    const ImportSection imports = MakeImportSection(elf, *slots, ImageBase);
    Directories directories;
    directories.imports = imports.directory;
    directories.importSlots = imports.slots;
    add(".idata", slots->address - ImageBase, imports.bytes, Data | Readable | Writable);
    const uint32_t resourcePlace = EndInMemory(sections.back());
    directories.resources =
        add(".rsrc", resourcePlace, MakeResourceSection(compiledResources, resourcePlace), Data | Readable);
    directories.relocations = add(".reloc", EndInMemory(sections.back()),
                                  MakeRelocationSection(pointers, ImageBase), Data | Discardable | Readable);

    for (size_t i = 1; i < sections.size(); ++i)
        if (sections[i].place < EndInMemory(sections[i - 1])) throw Refusal("sections lie over each other");
    return {MakeFile(sections, elf.entry, directories), imports.callCount,
            static_cast<uint32_t>(pointers.size()), imports.libraries};
}

} // namespace device
