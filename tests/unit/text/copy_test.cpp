// SPDX-License-Identifier: MIT
#include "text/copy.h"

#include <gtest/gtest.h>

namespace
{

TEST(Copy, WidensBytesAboveAsciiWithoutSign)
{
    wchar_t wide[4] = {L'x', L'x', L'x', L'x'};
    WidenAsciiCopy(wide, "\xB0z");
    EXPECT_EQ(wide[0], 0xB0);
    EXPECT_EQ(wide[1], L'z');
    EXPECT_EQ(wide[2], 0);
    EXPECT_EQ(wide[3], L'x');
}

TEST(Copy, NarrowsToTheLowByte)
{
    char narrow[4] = "xyz";
    NarrowWideCopy(narrow, L"A\u0142"); // U+0142 keeps 42 hex
    EXPECT_STREQ(narrow, "AB");
}

TEST(Copy, CharacterWithoutLowByteEndsTheText)
{
    char narrow[4] = "xyz";
    NarrowWideCopy(narrow, L"A\u0100Z");
    EXPECT_STREQ(narrow, "A");
}

TEST(Copy, BoundedCopyCutsAndTerminates)
{
    wchar_t text[5] = {L'?', L'?', L'?', L'?', L'?'};
    CopyText(text, 4, L"abcdef");
    EXPECT_STREQ(text, L"abc");
    EXPECT_EQ(text[4], L'?');
    CopyText(text, 1, L"abc");
    EXPECT_STREQ(text, L"");
}

TEST(Copy, Comparisons)
{
    EXPECT_TRUE(TextEquals(L"On", L"On"));
    EXPECT_FALSE(TextEquals(L"On", L"on"));
    EXPECT_FALSE(TextEquals(L"On", L"Onx"));
    EXPECT_TRUE(StartsWith("Baud rate: 4800", "Baud rate:"));
    EXPECT_FALSE(StartsWith("Baud", "Baud rate:"));
    EXPECT_TRUE(StartsWithIgnoringCase(L"SmartPhone 2003", L"smartphone"));
    EXPECT_FALSE(StartsWithIgnoringCase(L"Smart", L"smartphone"));
    EXPECT_FALSE(StartsWithIgnoringCase(L"[ocketpc", L"{ocketpc")); // letters only
}

} // namespace
