// SPDX-License-Identifier: MIT
#include "device/resource_tree.h"

#include "elf_builder.h"

#include <gtest/gtest.h>

namespace device
{

namespace
{

// The beginning of every compiled resource file.
const Bytes Mark = {0, 0, 0, 0, 32, 0, 0, 0, 0xFF, 0xFF, 0, 0, 0xFF, 0xFF, 0, 0,
                    0, 0, 0, 0, 0,  0, 0, 0, 0,    0,    0, 0, 0,    0,    0, 0};

// Type 2, name "ab", language 0x0409, three bytes.
const Bytes Named = {3, 0, 0, 0, 36, 0, 0, 0, 0xFF, 0xFF, 2, 0, 'a', 0, 'b', 0, 0,   0,   0,   0,
                     0, 0, 0, 0, 0,  0, 9, 4, 0,    0,    0, 0, 0,   0, 0,   0, 'x', 'y', 'z', 0};

// Type 2, name 7, language 0x0409, one byte.
const Bytes Numbered = {1, 0, 0, 0, 32, 0, 0, 0, 0xFF, 0xFF, 2, 0, 0xFF, 0xFF, 7,   0, 0, 0,
                        0, 0, 0, 0, 9,  4, 0, 0, 0,    0,    0, 0, 0,    0,    'n', 0, 0, 0};

Bytes Joined(std::initializer_list<Bytes> parts)
{
    Bytes all;
    for (const Bytes& part : parts) Append(all, part);
    return all;
}

TEST(ResourceTree, TablesAreInTheOrderInWhichTheyAreSearched)
{
    constexpr uint32_t Below = 0x80000000;
    const Bytes expected = Joined({
        Words({0, 0, 0, 0x00010000, 2, Below | 0x18}), // 0x00: one type, a number
        Words(
            {0, 0, 0, 0x00010001, Below | 0x88, Below | 0x38, 7, Below | 0x50}), // 0x18: names, then numbers
        Words({0, 0, 0, 0x00010000, 0x0409, 0x68}),                              // 0x38: languages of "AB"
        Words({0, 0, 0, 0x00010000, 0x0409, 0x78}),                              // 0x50: languages of 7
        Words({0x5090, 3, 0, 0}),                                                // 0x68: where the bytes are
        Words({0x5098, 1, 0, 0}),
        {2, 0, 'A', 0, 'B', 0, 0, 0}, // 0x88: in the upper case in which it is looked up
        {'x', 'y', 'z', 0, 0, 0, 0, 0},
        {'n'},
    });
    EXPECT_EQ(MakeResourceSection(Joined({Mark, Numbered, Named}), 0x5000), expected);
}

TEST(ResourceTree, DialogsArePackedAndOfAnotherType)
{
    // Type 5, name 7, language 0x0409, six bytes.
    const Bytes dialog = {6, 0, 0, 0, 32, 0, 0, 0, 0xFF, 0xFF, 5, 0, 0xFF, 0xFF, 7,   0,   0,   0,   0, 0,
                          0, 0, 9, 4, 0,  0, 0, 0, 0,    0,    0, 0, 'a',  'b',  'c', 'a', 'b', 'c', 0, 0};
    constexpr uint32_t Below = 0x80000000;
    const Bytes expected = Joined({
        Words({0, 0, 0, 0x00010000, 256, Below | 0x18}),
        Words({0, 0, 0, 0x00010000, 7, Below | 0x30}),
        Words({0, 0, 0, 0x00010000, 0x0409, 0x48}),
        Words({0x5058, 8, 0, 0}),
        {6, 0, 0b0111, 'a', 'b', 'c', 2, 0}, // three bytes come again, three back
    });
    EXPECT_EQ(MakeResourceSection(Joined({Mark, dialog}), 0x5000), expected);
}

TEST(ResourceTree, EveryCutIsRefused)
{
    const Bytes whole = Joined({Mark, Named});
    const size_t padding = 1; // after the resource's bytes
    for (size_t size = Mark.size() + 1; size < whole.size() - padding; ++size)
        EXPECT_EQ(RefusalOf([&] { MakeResourceSection(std::span(whole).first(size), 0); }),
                  "input is cut short")
            << size;
}

TEST(ResourceTree, ResourceThatIsThereTwiceIsRefused)
{
    EXPECT_EQ(RefusalOf([] {
                  MakeResourceSection(Joined({Mark, Named, Named}), 0);
              }),
              "a resource is there twice");
}

TEST(ResourceTree, HeaderWithoutRoomForItsNamesIsRefused)
{
    EXPECT_EQ(RefusalOf([] { MakeResourceSection(Bytes(32), 0); }), "a resource's header is too short");
}

TEST(ResourceTree, FileWithoutResourcesIsRefused)
{
    EXPECT_EQ(RefusalOf([] { MakeResourceSection(Mark, 0); }), "no resources");
}

} // namespace

} // namespace device
