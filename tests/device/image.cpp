// SPDX-License-Identifier: MIT
#include "tests/device/image.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <vector>

#include "tests/device/fault.h"

namespace
{

constexpr uint16_t MachineArm = 0x1C0, RelocationsStripped = 1, SubsystemCe = 9;
constexpr uint32_t SectionExecutes = 0x20000000, SectionWritable = 0x80000000, ImportByNumber = 0x80000000;
constexpr uint32_t SubdirectoryFlag = 0x80000000;
constexpr uint32_t OptionalHeaderBytes = 24, SectionHeaderBytes = 40, ImportEntryBytes = 20;
enum Directory : uint32_t { Imports = 1, Resources = 2, Relocations = 5 };
constexpr uint16_t NoRelocation = 0, RelocationHighLow = 3;

class File
{
public:
    explicit File(const std::string& path)
    {
        std::ifstream file(path, std::ios::binary);
        if (!file) DeviceFault("the image cannot be read: " + path);
        Bytes.assign(std::istreambuf_iterator<char>(file), {});
    }
    template <typename T> T At(size_t place) const
    {
        if (place + sizeof(T) > Bytes.size()) DeviceFault("the image is cut off");
        T value;
        std::memcpy(&value, Bytes.data() + place, sizeof value);
        return value;
    }
    std::span<const uint8_t> Part(size_t place, size_t size) const
    {
        if (place > Bytes.size() || size > Bytes.size() - place) DeviceFault("a section is cut off");
        return {Bytes.data() + place, size};
    }

private:
    std::vector<uint8_t> Bytes;
};

struct Headers {
    const File& file;
    size_t pe = file.At<uint32_t>(0x3C), optional = pe + OptionalHeaderBytes;

    uint16_t Sections() const { return file.At<uint16_t>(pe + 6); }
    uint16_t Characteristics() const { return file.At<uint16_t>(pe + 22); }
    size_t Section(uint32_t index) const
    {
        return optional + file.At<uint16_t>(pe + 20) + size_t{index} * SectionHeaderBytes;
    }
    uint32_t Optional(uint32_t offset) const { return file.At<uint32_t>(optional + offset); }
    uint32_t DirectoryStart(uint32_t directory) const { return Optional(96 + 8 * directory); }
    uint32_t DirectorySize(uint32_t directory) const { return Optional(100 + 8 * directory); }
};

uint32_t PageRound(uint32_t size)
{
    return (size + PageBytes - 1) & ~(PageBytes - 1);
}

// Loading writes to sections that the program may only read.
template <typename T> void Patch(GuestAddress address, T value)
{
    std::memcpy(GuestBytes(address, sizeof value, Access::Read), &value, sizeof value);
}

void CheckHeaders(const Headers& headers)
{
    const File& file = headers.file;
    if (file.At<uint16_t>(0) != 0x5A4D || file.At<uint32_t>(headers.pe) != 0x4550)
        DeviceFault("the image is no PE file");
    if (file.At<uint16_t>(headers.pe + 4) != MachineArm) DeviceFault("the image is not for ARM");
    if (file.At<uint16_t>(headers.optional + 68) != SubsystemCe)
        DeviceFault("the image is not for Windows CE");
}

void MapSections(const Headers& headers, GuestAddress base)
{
    const File& file = headers.file;
    const uint32_t headerBytes = headers.Optional(60);
    const auto copy = [&](uint8_t* to, size_t place, uint32_t size) {
        const std::span<const uint8_t> part = file.Part(place, size);
        std::copy(part.begin(), part.end(), to);
    };
    copy(MapMemory(base, PageRound(headerBytes), Access::Read), 0, headerBytes);
    for (uint32_t i = 0; i < headers.Sections(); ++i) {
        const size_t section = headers.Section(i);
        const uint32_t size = file.At<uint32_t>(section + 8), address = file.At<uint32_t>(section + 12),
                       stored = std::min(size, file.At<uint32_t>(section + 16)),
                       rights = file.At<uint32_t>(section + 36);
        const Access access = rights & SectionWritable   ? Access::ReadWrite
                              : rights & SectionExecutes ? Access::ReadExecute
                                                         : Access::Read;
        copy(MapMemory(base + address, PageRound(size), access), file.At<uint32_t>(section + 20), stored);
    }
}

void Relocate(const Headers& headers, GuestAddress base)
{
    const uint32_t difference = base - headers.Optional(28);
    if (difference == 0) return;
    if (headers.Characteristics() & RelocationsStripped) DeviceFault("the image cannot be moved");
    GuestAddress block = base + headers.DirectoryStart(Relocations);
    const GuestAddress end = block + headers.DirectorySize(Relocations);
    while (block < end) {
        const uint32_t page = LoadGuest<uint32_t>(block), size = LoadGuest<uint32_t>(block + 4);
        if (size < 8) DeviceFault("a relocation block is too short");
        for (uint32_t i = 8; i < size; i += 2) {
            const uint16_t entry = LoadGuest<uint16_t>(block + i);
            if (entry >> 12 == NoRelocation) continue;
            if (entry >> 12 != RelocationHighLow) DeviceFault("the loader does not know a relocation's type");
            const GuestAddress place = base + page + (entry & 0xFFF);
            Patch(place, LoadGuest<uint32_t>(place) + difference);
        }
        block += size;
    }
}

void Import(const Headers& headers, GuestAddress base, const ImportResolver& resolve)
{
    if (headers.DirectorySize(Imports) == 0) return;
    for (GuestAddress entry = base + headers.DirectoryStart(Imports);; entry += ImportEntryBytes) {
        const uint32_t name = LoadGuest<uint32_t>(entry + 12);
        if (name == 0) return;
        const std::string library = LoadGuestNarrowText(base + name);
        GuestAddress names = base + LoadGuest<uint32_t>(entry),
                     places = base + LoadGuest<uint32_t>(entry + 16);
        for (;; names += 4, places += 4) {
            const uint32_t thunk = LoadGuest<uint32_t>(names);
            if (thunk == 0) break;
            Patch(places, resolve(library, thunk & ImportByNumber ? "#" + std::to_string(thunk & 0xFFFF)
                                                                  : LoadGuestNarrowText(base + thunk + 2)));
        }
    }
}

// Offset of a directory's entry, without the flag of a subdirectory; 0 if there is none. `number` -1: the
// first.
uint32_t FindEntry(GuestAddress directory, int64_t number)
{
    const uint32_t named = LoadGuest<uint16_t>(directory + 12),
                   numbered = LoadGuest<uint16_t>(directory + 14);
    for (uint32_t i = number < 0 ? 0 : named; i < named + numbered; ++i) {
        const GuestAddress entry = directory + 16 + 8 * i;
        if (number < 0 || LoadGuest<uint32_t>(entry) == number)
            return LoadGuest<uint32_t>(entry + 4) & ~SubdirectoryFlag;
    }
    return 0;
}

GuestAddress ResourceRoot;

} // namespace

LoadedImage LoadImage(const std::string& path, GuestAddress base, const ImportResolver& resolve)
{
    const File file(path);
    const Headers headers{file};
    CheckHeaders(headers);
    if (base == 0) base = headers.Optional(28);
    MapSections(headers, base);
    Relocate(headers, base);
    Import(headers, base, resolve);
    ResourceRoot =
        headers.DirectorySize(Resources) != 0 ? base + headers.DirectoryStart(Resources) : GuestAddress{0};
    return {base, base + headers.Optional(16), headers.Optional(56)};
}

ImageResource FindImageResource(const LoadedImage& image, uint32_t type, uint32_t name)
{
    GuestAddress directory = ResourceRoot;
    if (directory == 0) return {0, 0};
    uint32_t offset = 0;
    for (const int64_t number : {int64_t{type}, int64_t{name}, int64_t{-1}}) {
        offset = FindEntry(directory, number);
        if (offset == 0) return {0, 0};
        directory = ResourceRoot + offset;
    }
    return {image.base + LoadGuest<uint32_t>(directory), LoadGuest<uint32_t>(directory + 4)};
}
