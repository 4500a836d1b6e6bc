// SPDX-License-Identifier: MIT
#include "device/imports.h"

#include "elf_builder.h"

#include <gtest/gtest.h>

namespace device
{

namespace
{

ImportSection Make(const ElfBuilder& program)
{
    const Bytes file = program.Build();
    const ElfFile elf = ReadElf(file);
    return MakeImportSection(elf, *elf.Find(".idata"), 0x10000);
}

// The slots lie at 0x4000 from the image's base.
TEST(Imports, DirectoryNamesWhatEachSlotWants)
{
    const ImportSection section = Make(SmallProgram());
    EXPECT_EQ(section.callCount, 3u);
    EXPECT_EQ(section.libraries, (std::vector<std::string>{"A.dll", "B.dll"}));
    EXPECT_EQ(section.slots.place, 0x4000u);
    EXPECT_EQ(section.slots.size, 20u);
    EXPECT_EQ(section.directory.size, 60u); // two libraries and the end

    const std::string_view text(reinterpret_cast<const char*>(section.bytes.data()), section.bytes.size());
    const auto textAt = [&](uint32_t place) { return std::string(text.substr(place - 0x4000).data()); };
    const auto wordAt = [&](uint32_t place) { return Get<uint32_t>(section.bytes, place - 0x4000); };
    const uint32_t directory = section.directory.place;

    struct Row {
        const char* library;
        uint32_t slots;
        std::vector<std::string> names;
    };
    const Row rows[] = {{"A.dll", 0x4000, {"First", "Second"}}, {"B.dll", 0x400C, {"Third"}}};
    uint32_t entry = directory;
    for (const Row& row : rows) {
        EXPECT_EQ(wordAt(entry + 4), 0u);
        EXPECT_EQ(wordAt(entry + 8), 0u);
        EXPECT_EQ(textAt(wordAt(entry + 12)), row.library);
        EXPECT_EQ(wordAt(entry + 16), row.slots);
        uint32_t name = wordAt(entry), slot = row.slots;
        for (const std::string& expected : row.names) {
            EXPECT_EQ(wordAt(name), wordAt(slot));
            EXPECT_EQ(wordAt(name) % 2, 0u);
            EXPECT_EQ(textAt(wordAt(name) + 2), expected);
            name += 4;
            slot += 4;
        }
        EXPECT_EQ(wordAt(name), 0u);
        EXPECT_EQ(wordAt(slot), 0u);
        entry += 20;
    }
    for (uint32_t i = 0; i < 20; i += 4) EXPECT_EQ(wordAt(entry + i), 0u);
    EXPECT_EQ(directory + 60, 0x4000 + section.bytes.size());
}

struct RefusedRow {
    const char* name;
    void (*spoil)(ElfBuilder&);
    const char* refusal;
};

const RefusedRow RefusedRows[] = {
    {"gap between slots", [](ElfBuilder& e) { e.symbols[5].value += 4; }, "slot of Second at 0x00014008"},
    {"no zero at the end", [](ElfBuilder& e) { e.sections[4].bytes[8] = 1; },
     "slots of A.dll not ended by zero"},
    {"more than slots", [](ElfBuilder& e) { e.sections[4].bytes.resize(24); },
     "something else among the import slots"},
    {"less than slots", [](ElfBuilder& e) { e.sections[4].bytes.resize(16); }, "input is cut short"},
    {"symbol without a name", [](ElfBuilder& e) { e.symbols[5].name = "import!A.dll"; },
     "bad symbol import!A.dll"},
};

TEST(Imports, OtherSlotsAreRefused)
{
    for (const RefusedRow& row : RefusedRows) {
        ElfBuilder program = SmallProgram();
        row.spoil(program);
        EXPECT_EQ(RefusalOf([&] { Make(program); }), row.refusal) << row.name;
    }
}

} // namespace

} // namespace device
