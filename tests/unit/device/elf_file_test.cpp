// SPDX-License-Identifier: MIT
#include "elf_builder.h"

#include <gtest/gtest.h>

namespace device
{

namespace
{

TEST(ElfFile, SectionsSymbolsAndRelocationsAreRead)
{
    const Bytes file = SmallProgram().Build();
    const ElfFile elf = ReadElf(file);
    EXPECT_EQ(elf.entry, 0x11000u);
    ASSERT_NE(elf.Find(".data"), nullptr);
    EXPECT_EQ(elf.Find(".data")->address, 0x13000u);
    EXPECT_EQ(Bytes(elf.Find(".data")->bytes.begin(), elf.Find(".data")->bytes.end()),
              (Bytes{7, 0, 0, 0, 0, 0, 0, 0}));
    ASSERT_NE(elf.Find(".bss"), nullptr);
    EXPECT_EQ(elf.Find(".bss")->size, 8u);
    EXPECT_TRUE(elf.Find(".bss")->bytes.empty());
    EXPECT_EQ(elf.Find(".none"), nullptr);
    ASSERT_EQ(elf.symbols.size(), 7u);
    EXPECT_EQ(elf.symbols[3].name, "Constant");
    EXPECT_EQ(elf.symbols[3].value, 0x12000u);
    EXPECT_EQ(elf.symbols[3].section, 2u);
    ASSERT_EQ(elf.relocations.size(), 1u);
    EXPECT_EQ(elf.relocations[0].address, 0x11008u);
    EXPECT_EQ(elf.relocations[0].type, 2u);
    EXPECT_EQ(elf.relocations[0].symbol, 3u);
}

TEST(ElfFile, RelocationsOfWhatIsNotLoadedAreLeftOut)
{
    ElfBuilder program = SmallProgram();
    program.relocatedSection = 6; // .comment
    const Bytes file = program.Build();
    EXPECT_TRUE(ReadElf(file).relocations.empty());
}

TEST(ElfFile, EveryCutIsRefused)
{
    const Bytes file = SmallProgram().Build();
    for (size_t size = 0; size < file.size(); ++size)
        EXPECT_NE(RefusalOf([&] { ReadElf(std::span(file).first(size)); }), "") << size;
}

struct HeaderRow {
    const char* name;
    size_t offset;
    uint8_t value;
    const char* refusal;
};

constexpr HeaderRow HeaderRows[] = {
    {"other file", 0, 'M', "not a linked 32-bit ARM program"},
    {"64 bits", 4, 2, "not a linked 32-bit ARM program"},
    {"big-endian", 5, 2, "not a linked 32-bit ARM program"},
    {"not linked", 16, 1, "not a linked 32-bit ARM program"},
    {"another processor", 18, 3, "not a linked 32-bit ARM program"},
    {"names in a section that is not there", 50, 99, "no section names"},
};

TEST(ElfFile, OtherFilesAreRefused)
{
    for (const HeaderRow& row : HeaderRows) {
        Bytes file = SmallProgram().Build();
        file[row.offset] = row.value;
        EXPECT_EQ(RefusalOf([&] { ReadElf(file); }), row.refusal) << row.name;
    }
}

TEST(ElfFile, StrippedProgramIsRefused)
{
    ElfBuilder program = SmallProgram();
    program.symbols.clear();
    program.relocations.clear();
    const Bytes file = program.Build();
    EXPECT_EQ(RefusalOf([&] { ReadElf(file); }), "no symbols: the program was stripped");
}

TEST(ElfFile, RelocationByAnUnknownSymbolIsRefused)
{
    ElfBuilder program = SmallProgram();
    program.relocations[0].symbol = 7;
    const Bytes file = program.Build();
    EXPECT_EQ(RefusalOf([&] { ReadElf(file); }), "a symbol that does not exist");
}

} // namespace

} // namespace device
