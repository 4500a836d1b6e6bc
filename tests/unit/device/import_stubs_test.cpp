// SPDX-License-Identifier: MIT
#include "device/import_stubs.h"

#include "elf_builder.h"

#include <gtest/gtest.h>

namespace device
{

namespace
{

constexpr const char* List = R"(
; what there is
LIBRARY A.dll
First            ; said once
Second = Second_ ; under another name
)";

bool Has(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

TEST(ImportStubs, EachNameHasAStubAndASlot)
{
    const std::string source = MakeImportStubs(List);
    const std::string first = R"(
  .section .text.import.First, "ax", %progbits
  .global First
  .type First, %function
First:
  ldr ip, 1f
  ldr ip, [ip]
  tst ip, #1
  moveq pc, ip
  .inst 0xe12fff1c @ bx ip
1:
  .word "import!A.dll!First"
  .section ".import.A.dll.First", "aw", %progbits
  .global "import!A.dll!First"
"import!A.dll!First":
  .word 0
  .reloc ., R_ARM_NONE, "import_end!A.dll"
)";
    EXPECT_TRUE(Has(source, first)) << source;
    EXPECT_FALSE(Has(source, "said"));
}

TEST(ImportStubs, ExportedNameMayBeAnother)
{
    const std::string source = MakeImportStubs(List);
    EXPECT_TRUE(Has(source, "\nSecond:\n"));
    EXPECT_FALSE(Has(source, "\nSecond_:\n"));
    EXPECT_TRUE(Has(source, "\n\"import!A.dll!Second_\":\n"));
    EXPECT_FALSE(Has(source, "\n\"import!A.dll!Second\":\n"));
}

TEST(ImportStubs, LibraryEndsWithAZeroThatSortsLast)
{
    EXPECT_TRUE(MakeImportStubs(List).ends_with(
        "  .section \".import.A.dll.~\", \"aw\", %progbits\n  .global \"import_end!A.dll\"\n"
        "\"import_end!A.dll\":\n  .word 0\n"));
}

struct RefusedRow {
    const char *list, *refusal;
};

constexpr RefusedRow RefusedRows[] = {
    {"", "no names in the list"},
    {"LIBRARY A.dll\n; First\n", "no names in the list"},
    {"First\n", "bad line: First"},
    {"LIBRARY\nFirst\n", "bad line: LIBRARY"},
    {"LIBRARY A.dll B.dll\n", "bad line: LIBRARY A.dll B.dll"},
    {"LIBRARY A!dll\n", "bad line: LIBRARY A!dll"},
    {"LIBRARY A.dll\nLIBRARY B.dll\n", "bad line: LIBRARY B.dll"},
    {"LIBRARY A.dll\nFirst @12\n", "bad line: First @12"},
    {"LIBRARY A.dll\nFirst =\n", "bad line: First ="},
    {"LIBRARY A.dll\nFirst = Other more\n", "bad line: First = Other more"},
    {"LIBRARY A.dll\nFirst=Other\n", "bad line: First=Other"},
    {"LIBRARY A.dll\nFir\"st\n", "bad line: Fir\"st"},
    {"LIBRARY A.dll\nFirst\nSecond\nFirst\n", "twice in the list: First"},
};

TEST(ImportStubs, OtherListsAreRefused)
{
    for (const RefusedRow& row : RefusedRows)
        EXPECT_EQ(RefusalOf([&] { MakeImportStubs(row.list); }), row.refusal) << row.list;
}

} // namespace

} // namespace device
