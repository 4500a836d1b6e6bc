// SPDX-License-Identifier: MIT
#include "device/code_check.h"

#include "elf_builder.h"

#include <gtest/gtest.h>

namespace device
{

namespace
{

constexpr uint32_t BxLr = 0xE12FFF1E, BxR3 = 0xE12FFF13, BxneR3 = 0x112FFF13;
constexpr uint32_t TstR3 = 0xE3130001, MoveqPcR3 = 0x01A0F003, MoveqPcR4 = 0x01A0F004, Nop = 0xE1A00000;

std::string Check(const Bytes& code, const std::vector<ElfSymbol>& marks = {})
{
    ElfBuilder program = SmallProgram();
    program.sections[0].bytes = code;
    program.symbols[1] = {"$a", TextAddress, TextIndex, false};
    program.symbols[2] = {"Code", TextAddress, TextIndex, false};
    program.symbols.insert(program.symbols.end(), marks.begin(), marks.end());
    const Bytes file = program.Build();
    const ElfFile elf = ReadElf(file);
    return RefusalOf([&] { CheckCode(elf); });
}

TEST(CodeCheck, CodeWithoutBxPasses)
{
    EXPECT_EQ(Check(Words({Nop, Nop})), "");
}

TEST(CodeCheck, BxBehindItsGuardPasses)
{
    EXPECT_EQ(Check(Words({TstR3, MoveqPcR3, BxR3})), "");
}

TEST(CodeCheck, BxWithoutItsGuardIsRefused)
{
    EXPECT_EQ(Check(Words({BxLr})), "unguarded BX at 0x00011000");
    EXPECT_EQ(Check(Words({Nop, BxLr})), "unguarded BX at 0x00011004");
    EXPECT_EQ(Check(Words({Nop, BxneR3})), "unguarded BX at 0x00011004");
    EXPECT_EQ(Check(Words({TstR3, MoveqPcR4, BxR3})), "unguarded BX at 0x00011008")
        << "guards another register";
}

TEST(CodeCheck, DataThatLooksLikeBxPasses)
{
    const ElfSymbol data{"$d", TextAddress + 4, TextIndex, false};
    EXPECT_EQ(Check(Words({Nop, BxLr}), {data}), "");
    const ElfSymbol codeAgain{"$a.1", TextAddress + 8, TextIndex, false};
    EXPECT_EQ(Check(Words({Nop, BxLr, BxLr}), {data, codeAgain}), "unguarded BX at 0x00011008");
}

TEST(CodeCheck, ThumbCodeIsRefused)
{
    EXPECT_EQ(Check(Words({Nop, Nop}), {{"$t", TextAddress + 4, TextIndex, false}}),
              "Thumb code at 0x00011004");
}

TEST(CodeCheck, ProgramWithoutCodeIsRefused)
{
    EXPECT_EQ(Check({}), "no code");
}

} // namespace

} // namespace device
