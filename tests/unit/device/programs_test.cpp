// SPDX-License-Identifier: MIT
// The two programs, called as in the build.

#include "device/files.h"
#include "elf_builder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <sys/wait.h>

namespace device
{

namespace
{

struct Programs : testing::Test {
    Programs() { std::filesystem::create_directories(Folder); }
    ~Programs() override { std::filesystem::remove_all(Folder); }

    std::string Path(const std::string& name) const { return (Folder / name).string(); }
    void Write(const std::string& name, const Bytes& bytes) const
    {
        WriteWholeFile(Path(name).c_str(), bytes);
    }
    int Run(const char* program, const std::string& arguments) const
    {
        const std::string there = "cd '" + Folder.string() + "' && ";
        const int status = std::system((there + program + " " + arguments + " >out 2>&1").c_str());
        const Bytes out = ReadWholeFile(Path("out").c_str());
        Output.assign(out.begin(), out.end());
        return WEXITSTATUS(status);
    }

    const std::filesystem::path Folder =
        std::filesystem::path(testing::TempDir()) / ("toravane-device-" + std::to_string(getpid()));
    mutable std::string Output;
};

const Bytes Resources = {1, 0, 0, 0, 32, 0, 0, 0, 0xFF, 0xFF, 2, 0, 0xFF, 0xFF, 7,   0, 0, 0,
                         0, 0, 0, 0, 9,  4, 0, 0, 0,    0,    0, 0, 0,    0,    'n', 0, 0, 0};

TEST_F(Programs, MakeImageWritesTheImageAndItsFigures)
{
    Write("p.elf", SmallProgram().Build());
    Write("p.res", Resources);
    EXPECT_EQ(Run(MAKE_IMAGE, "p.elf p.res p.exe"), 0);
    EXPECT_EQ(Output, "p.exe: 4096 bytes, 1 relocations, 3 imports from A.dll B.dll\n");
    EXPECT_EQ(std::filesystem::file_size(Path("p.exe")), 4096u);
}

TEST_F(Programs, MakeImageWritesNothingWhenItRefuses)
{
    ElfBuilder thumb = SmallProgram();
    thumb.symbols[1].name = "$t";
    Write("p.elf", thumb.Build());
    Write("p.res", Resources);
    EXPECT_EQ(Run(MAKE_IMAGE, "p.elf p.res p.exe"), 1);
    EXPECT_EQ(Output, "p.elf: refused: Thumb code at 0x00011000\n");
    EXPECT_FALSE(std::filesystem::exists(Path("p.exe")));
    EXPECT_EQ(Run(MAKE_IMAGE, "p.elf none.res p.exe"), 1);
    EXPECT_EQ(Output, "p.elf: refused: none.res: No such file or directory\n");
    EXPECT_EQ(Run(MAKE_IMAGE, "p.elf . p.exe"), 1);
    EXPECT_EQ(Output, "p.elf: refused: .: Is a directory\n");
    EXPECT_EQ(Run(MAKE_IMAGE, "p.elf p.res"), 2);
}

TEST_F(Programs, MakeImportsWritesAssemblerSource)
{
    const std::string list = "LIBRARY A.dll\nFirst\n";
    Write("a.exports", Bytes(list.begin(), list.end()));
    EXPECT_EQ(Run(MAKE_IMPORTS, "a.exports a.s"), 0);
    EXPECT_EQ(Output, "");
    EXPECT_TRUE(std::filesystem::exists(Path("a.s")));
    EXPECT_EQ(Run(MAKE_IMPORTS, "a.exports none/a.s"), 1);
    EXPECT_EQ(Output, "a.exports: refused: none/a.s: No such file or directory\n");
    EXPECT_EQ(Run(MAKE_IMPORTS, "a.exports"), 2);
}

TEST_F(Programs, MakeImportsRefusesABadList)
{
    Write("a.exports", {'x', '\n'});
    EXPECT_EQ(Run(MAKE_IMPORTS, "a.exports a.s"), 1);
    EXPECT_EQ(Output, "a.exports: refused: bad line: x\n");
    EXPECT_FALSE(std::filesystem::exists(Path("a.s")));
}

} // namespace

} // namespace device
