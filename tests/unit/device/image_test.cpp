// SPDX-License-Identifier: MIT
#include "device/image.h"

#include "elf_builder.h"

#include <gtest/gtest.h>

namespace device
{

namespace
{

// One resource of type 2, name 7, language 0x0409, one byte.
const Bytes Resources = {1, 0, 0, 0, 32, 0, 0, 0, 0xFF, 0xFF, 2, 0, 0xFF, 0xFF, 7,   0, 0, 0,
                         0, 0, 0, 0, 9,  4, 0, 0, 0,    0,    0, 0, 0,    0,    'n', 0, 0, 0};

Image Make(const ElfBuilder& program)
{
    return MakeImage(program.Build(), Resources);
}

struct FieldRow {
    const char* name;
    size_t offset;
    uint32_t size, value;
};

constexpr size_t Header = 0x80, Optional = Header + 24, Directories = Optional + 96,
                 Sections = Optional + 224;
constexpr FieldRow FieldRows[] = {
    {"MZ", 0, 2, 0x5A4D},
    {"place of the header", 0x3C, 4, 0x80},
    {"PE", Header, 4, 0x4550},
    {"machine", Header + 4, 2, 0x01C0},
    {"sections", Header + 6, 2, 6},
    {"time", Header + 8, 4, 0},
    {"optional header", Header + 20, 2, 224},
    {"flags", Header + 22, 2, 0x010E},
    {"PE32", Optional, 2, 0x010B},
    {"code", Optional + 4, 4, 0x200},
    {"data", Optional + 8, 4, 0xA00},
    {"entry", Optional + 16, 4, 0x1000},
    {"base of code", Optional + 20, 4, 0x1000},
    {"base of data", Optional + 24, 4, 0x3000},
    {"image base", Optional + 28, 4, 0x10000},
    {"page", Optional + 32, 4, 0x1000},
    {"file alignment", Optional + 36, 4, 0x200},
    {"subsystem's version", Optional + 48, 4, 3},
    {"size in memory", Optional + 56, 4, 0x7000},
    {"headers", Optional + 60, 4, 0x400},
    {"subsystem", Optional + 68, 2, 9},
    {"stack", Optional + 72, 4, 0x10000},
    {"directories", Optional + 92, 4, 16},
    {"exports", Directories, 4, 0},
    {"resources", Directories + 16, 4, 0x5000},
    {"relocations", Directories + 40, 4, 0x6000},
    {"relocations' size", Directories + 44, 4, 12},
    {"import slots", Directories + 96, 4, 0x4000},
    {"import slots' size", Directories + 100, 4, 20},
    // size and place in memory, size and place in the file, flags
    {".text size", Sections + 8, 4, 12},
    {".text place", Sections + 12, 4, 0x1000},
    {".text in the file", Sections + 16, 4, 0x200},
    {".text where in the file", Sections + 20, 4, 0x400},
    {".text flags", Sections + 36, 4, 0x60000020},
    {".rdata flags", Sections + 40 + 36, 4, 0x40000040},
    {".data size, zeros included", Sections + 80 + 8, 4, 16},
    {".data place", Sections + 80 + 12, 4, 0x3000},
    {".data in the file", Sections + 80 + 16, 4, 0x200},
    {".data where in the file", Sections + 80 + 20, 4, 0x800},
    {".data flags", Sections + 80 + 36, 4, 0xC0000040},
    {".idata flags", Sections + 120 + 36, 4, 0xC0000040},
    {".rsrc flags", Sections + 160 + 36, 4, 0x40000040},
    {".reloc flags", Sections + 200 + 36, 4, 0x42000040},
    {"first instruction", 0x400, 4, 0xE1A00000},
    {"constant", 0x600, 4, 0x12345678},
    {"variable", 0x800, 4, 7},
};

TEST(Image, FieldsSayWhatTheSystemNeeds)
{
    const Image image = Make(SmallProgram());
    for (const FieldRow& row : FieldRows)
        EXPECT_EQ(row.size == 2 ? Get<uint16_t>(image.file, row.offset)
                                : Get<uint32_t>(image.file, row.offset),
                  row.value)
            << row.name;
    EXPECT_EQ(image.file.size(), 0x400 + 6 * 0x200u);
    EXPECT_EQ(image.importCount, 3u);
    EXPECT_EQ(image.pointerCount, 1u);
}

TEST(Image, ChecksumIsTheFoldedSumOfTheRest)
{
    Bytes file = Make(SmallProgram()).file;
    const uint32_t checksum = Get<uint32_t>(file, Optional + 64);
    Put(file, Optional + 64, uint32_t{0});
    uint64_t sum = 0;
    for (size_t i = 0; i < file.size(); ++i) sum += uint64_t{file[i]} << (i % 2 * 8);
    while (sum >> 16) sum = (sum & 0xFFFF) + (sum >> 16);
    EXPECT_EQ(checksum, sum + file.size());
}

TEST(Image, SameProgramGivesSameBytes)
{
    EXPECT_EQ(Make(SmallProgram()).file, Make(SmallProgram()).file);
}

TEST(Image, ProgramMayHaveOnlyZerosAsData)
{
    ElfBuilder program = SmallProgram();
    program.sections[2].bytes.clear();
    program.sections[3].address = DataAddress;
    const Image image = Make(program);
    EXPECT_EQ(Get<uint32_t>(image.file, Sections + 80 + 8), 8u);
    EXPECT_EQ(Get<uint32_t>(image.file, Sections + 80 + 16), 0u) << "nothing in the file";
    EXPECT_EQ(Get<uint32_t>(image.file, Sections + 80 + 20), 0u);
}

struct RefusedRow {
    const char* name;
    void (*spoil)(ElfBuilder&);
    const char* refusal;
};

const RefusedRow RefusedRows[] = {
    {"Thumb code", [](ElfBuilder& e) { e.symbols[1].name = "$t"; }, "Thumb code at 0x00011000"},
    {"unknown relocation", [](ElfBuilder& e) { e.relocations[0].type = 43; },
     "relocation of type 43 at 0x00011008 (Constant)"},
    {"unaligned pointer", [](ElfBuilder& e) { e.relocations[0].address = 0x11006; },
     "unaligned pointer at 0x00011006 (Constant)"},
    {"thread-local storage", [](ElfBuilder& e) { e.sections[3].flags = 0x402; },
     "thread-local storage: .bss"},
    {"section of another name", [](ElfBuilder& e) { e.sections[1].name = ".ctors"; },
     "no place for section .ctors"},
    {"section not on a page", [](ElfBuilder& e) { e.sections[1].address += 4; },
     "section not on a page: .rdata"},
    {"section below the image", [](ElfBuilder& e) { e.sections[1].address = 0x10000; },
     "section not on a page: .rdata"},
    {"sections over each other", [](ElfBuilder& e) { e.sections[0].bytes.resize(0x1004); },
     "sections lie over each other"},
    {"no imports", [](ElfBuilder& e) { e.sections[4].bytes.clear(); },
     "no imports: the program could not even end"},
};

TEST(Image, OtherProgramsAreRefused)
{
    for (const RefusedRow& row : RefusedRows) {
        ElfBuilder program = SmallProgram();
        row.spoil(program);
        EXPECT_EQ(RefusalOf([&] { Make(program); }), row.refusal) << row.name;
    }
}

} // namespace

} // namespace device
