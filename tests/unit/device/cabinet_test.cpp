// SPDX-License-Identifier: MIT
// Install packages: refused input, and the few numbers that no reader checks. tests/device reads whole
// packages.
#include "device/cabinet.h"

#include <gtest/gtest.h>

namespace device
{

namespace
{

Package Small()
{
    return {"App", "Maker", {{"%CE1%\\App", "app.exe", {1, 2, 3, 4, 5}}, {"%CE11%", "b.lnk", {6}}}, 0};
}

std::string Text(const Bytes& bytes)
{
    return {bytes.begin(), bytes.end()};
}

TEST(Cabinet, HoldsTheControlFileFirstAndThenTheFilesFromTheLast)
{
    const std::string cabinet = Text(MakeCabinet(Small()));
    const size_t control = cabinet.find("00000App.000"), program = cabinet.find("00000app.001"),
                 link = cabinet.find("0000000b.002");
    ASSERT_NE(control, std::string::npos);
    EXPECT_LT(control, link);
    EXPECT_LT(link, program);
    EXPECT_NE(program, std::string::npos);
    EXPECT_TRUE(cabinet.ends_with("\x06\x01\x02\x03\x04\x05"));
}

// By hand: the words 04030201 and, of the last byte, 05; then the sizes 5 and 5.
TEST(Cabinet, SumsUpItsBlocks)
{
    Package package = Small();
    const Bytes cabinet = MakeCabinet(package);
    uint32_t sum = 0;
    const auto firstBlock = Get<uint32_t>(cabinet, 36);
    const auto size = Get<uint16_t>(cabinet, firstBlock + 4);
    uint32_t word = 0, place = 0;
    for (size_t i = 0; i < size / 4u * 4; ++i) {
        word |= uint32_t{cabinet[firstBlock + 8 + i]} << 8 * (place % 4);
        if (++place % 4 == 0) {
            sum ^= word;
            word = 0;
        }
    }
    uint32_t rest = 0;
    for (size_t i = size / 4u * 4; i < size; ++i) rest = rest * 256 + cabinet[firstBlock + 8 + i];
    EXPECT_EQ(Get<uint32_t>(cabinet, firstBlock), sum ^ rest ^ (uint32_t{size} | uint32_t{size} << 16));
}

TEST(Cabinet, SplitsLongContentIntoBlocks)
{
    Package package = Small();
    package.files[0].content.assign(100000, 0xAB);
    const Bytes cabinet = MakeCabinet(package);
    EXPECT_EQ(Get<uint16_t>(cabinet, 40), 4); // of 32,768 bytes at most
    EXPECT_EQ(Get<uint32_t>(cabinet, 8), cabinet.size());
}

TEST(Cabinet, IsTheSameEveryTime)
{
    EXPECT_EQ(MakeCabinet(Small()), MakeCabinet(Small()));
}

TEST(Cabinet, RefusesWhatAnInstallerCannotTake)
{
    Package package = Small();
    package.files[0].name = "\xE4.exe";
    EXPECT_THROW(MakeCabinet(package), Refusal);
    package = Small();
    package.files[0].folder = "%CE1%\\App\\Deeper";
    EXPECT_THROW(MakeCabinet(package), Refusal);
    package = Small();
    package.files[0].folder = "%CE1%\\";
    EXPECT_THROW(MakeCabinet(package), Refusal);
    package = Small();
    package.programFile = 2;
    EXPECT_THROW(MakeCabinet(package), Refusal);
    package = Small();
    package.files.clear();
    EXPECT_THROW(MakeCabinet(package), Refusal);
    package.files.assign(1000, {"%CE1%", "a", {}});
    EXPECT_THROW(MakeCabinet(package), Refusal);
}

TEST(Cabinet, LinksCountTheirCommand)
{
    EXPECT_EQ(Text(LinkContent("\\A b\\c.exe", "Go")), "15#\"\\A b\\c.exe\" Go");
}

} // namespace

} // namespace device
