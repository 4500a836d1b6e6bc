// SPDX-License-Identifier: MIT
#include "device/base_relocations.h"

#include "elf_builder.h"

#include <gtest/gtest.h>

namespace device
{

namespace
{

constexpr size_t Constant = 3; // symbol of the small program

std::vector<uint32_t> PointersOf(const std::vector<ElfRelocation>& relocations,
                                 const std::vector<ElfSymbol>& more = {})
{
    ElfBuilder program = SmallProgram();
    program.relocations = relocations;
    program.symbols.insert(program.symbols.end(), more.begin(), more.end());
    const Bytes file = program.Build();
    return FindPointers(ReadElf(file));
}

TEST(BaseRelocations, PointersAreFoundOnceAndInOrder)
{
    EXPECT_EQ(PointersOf({{0x11008, 2, Constant}, {0x11004, 38, Constant}, {0x11008, 2, Constant}}),
              (std::vector<uint32_t>{0x11004, 0x11008}));
}

TEST(BaseRelocations, WhatMovesWithTheImageNeedsNone)
{
    for (const uint8_t relative : Bytes{0, 1, 3, 28, 29, 40, 42})
        EXPECT_TRUE(PointersOf({{0x11001, relative, Constant}}).empty()) << int{relative};
}

TEST(BaseRelocations, NumbersAndMissingWeakSymbolsNeedNone)
{
    EXPECT_TRUE(PointersOf({{0x11008, 2, 7}}, {{"Number", 42, 0xFFF1, false}}).empty());
    EXPECT_TRUE(PointersOf({{0x11008, 2, 7}}, {{"Missing", 0, 0, true}}).empty());
    EXPECT_EQ(PointersOf({{0x11008, 2, 7}}, {{"Weak", 0x12000, ConstantsIndex, true}}).size(), 1u);
}

TEST(BaseRelocations, UnknownKindIsRefused)
{
    for (const uint8_t unknown : Bytes{5, 8, 10, 43, 44, 104})
        EXPECT_EQ(RefusalOf([&] {
                      PointersOf({{0x11004, unknown, Constant}});
                  }),
                  "relocation of type " + std::to_string(unknown) + " at 0x00011004 (Constant)");
}

TEST(BaseRelocations, UnalignedPointerIsRefused)
{
    for (const uint32_t address : {0x11005u, 0x11006u, 0x11007u})
        EXPECT_EQ(RefusalOf([&] {
                      PointersOf({{address, 2, Constant}});
                  }),
                  "unaligned pointer at " + Hex(address) + " (Constant)");
}

TEST(BaseRelocations, SectionHasABlockForEachPage)
{
    const Bytes expected = {
        0x00, 0x10, 0x00, 0x00, 12, 0, 0, 0, 0x04, 0x30, 0xFC, 0x3F, // two pointers
        0x00, 0x30, 0x00, 0x00, 12, 0, 0, 0, 0x00, 0x30, 0x00, 0x00, // one and a filler
    };
    EXPECT_EQ(MakeRelocationSection({0x11004, 0x11FFC, 0x13000}, 0x10000), expected);
    EXPECT_TRUE(MakeRelocationSection({}, 0x10000).empty());
}

} // namespace

} // namespace device
