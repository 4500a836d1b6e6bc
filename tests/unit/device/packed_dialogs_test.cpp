// SPDX-License-Identifier: MIT
// Packed dialog templates: bytes by hand, and back.
#include "device/packed_dialogs.h"

#include "elf_builder.h"
#include "platform/device/packed_template.h"

#include <gtest/gtest.h>

namespace device
{

namespace
{

uint8_t Unpacked[LargestTemplate];

// The unpacked bytes, made by the program's routine.
Bytes Unpack(const Bytes& packed)
{
    const size_t size = UnpackTemplate(packed.data(), Unpacked);
    return {Unpacked, Unpacked + size};
}

Bytes Text(std::string_view text)
{
    return {text.begin(), text.end()};
}

struct PackedRow {
    const char* what;
    Bytes whole, packed;
};

const PackedRow Rows[] = {
    {"nothing", {}, {0, 0}},
    {"nothing comes again", Text("abc"), {3, 0, 0b111, 'a', 'b', 'c'}},
    {"two bytes are too few", Text("abab"), {4, 0, 0b1111, 'a', 'b', 'a', 'b'}},
    // Distance 3, 3 bytes: 2 and 0.
    {"three bytes come again", Text("abcabc"), {6, 0, 0b0111, 'a', 'b', 'c', 2, 0}},
    // Distance 1, 5 bytes: 0 and 2 << 11.
    {"a byte that repeats itself", Text("xxxxxx"), {6, 0, 0b01, 'x', 0, 0x10}},
    {"the nearest of equal ones", Text("abcdabcdabcd"), {12, 0, 0b01111, 'a', 'b', 'c', 'd', 3, 5 << 3}},
    {"a group of eight and a ninth",
     Text("abcdefghi"),
     {9, 0, 0xFF, 'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h', 1, 'i'}},
};

TEST(PackedDialogs, BytesByHand)
{
    for (const PackedRow& row : Rows) {
        EXPECT_EQ(PackTemplate(row.whole), row.packed) << row.what;
        EXPECT_EQ(Unpack(row.packed), row.whole) << row.what;
    }
}

TEST(PackedDialogs, LongestRepeatAndLargestDistance)
{
    // At most 34 bytes are repeated; the 35th is a single byte.
    EXPECT_EQ(PackTemplate(Bytes(36, 'x')), (Bytes{36, 0, 0b101, 'x', 0, 31 << 3, 'x'}));
    EXPECT_EQ(Unpack({36, 0, 0b101, 'x', 0, 31 << 3, 'x'}), Bytes(36, 'x'));

    // "abc" 2048 bytes back is found, 2049 back is not; nothing in between is like it.
    for (const size_t distance : {size_t{2048}, size_t{2049}}) {
        Bytes whole = Text("abc");
        while (whole.size() < distance) whole.push_back(static_cast<uint8_t>(0xFE + whole.size() % 2));
        Append(whole, Text("abc"));
        const Bytes packed = PackTemplate(whole);
        const Bytes last{packed.end() - 2, packed.end()};
        EXPECT_EQ(last, distance == 2048 ? (Bytes{0xFF, 0x07}) : (Bytes{'b', 'c'}));
        EXPECT_EQ(Unpack(packed), whole);
    }
}

TEST(PackedDialogs, BackFromEverySizeAndPattern)
{
    uint32_t seed = 1;
    for (size_t size = 0; size <= LargestTemplate; size += 1 + size / 3) {
        Bytes whole(size);
        for (uint8_t& byte : whole) byte = static_cast<uint8_t>((seed = seed * 1664525 + 1013904223) >> 30);
        EXPECT_EQ(Unpack(PackTemplate(whole)), whole) << size;
    }
    const Bytes largest(LargestTemplate, 7);
    EXPECT_EQ(Unpack(PackTemplate(largest)), largest);
}

TEST(PackedDialogs, TooLargeIsRefused)
{
    EXPECT_EQ(RefusalOf([] { PackTemplate(Bytes(LargestTemplate + 1)); }),
              "a dialog's template is too large");
    EXPECT_EQ(UnpackTemplate(Bytes{0x01, 0x20}.data(), Unpacked), 0u); // 8193
}

TEST(PackedDialogs, WhatIsNotThereIsNotRepeated)
{
    EXPECT_EQ(Unpack({4, 0, 0b01, 'x', 1, 0}), Bytes{});       // two bytes back, where one is
    EXPECT_EQ(Unpack({3, 0, 0b00, 0, 0}), Bytes{});            // before the first
    EXPECT_EQ(Unpack({3, 0, 0b01, 'x', 0, 0}), Bytes{});       // one byte more than the template has
    EXPECT_EQ(Unpack({4, 0, 0b01, 'x', 0, 0}), Bytes(4, 'x')); // exactly as many
}

} // namespace

} // namespace device
