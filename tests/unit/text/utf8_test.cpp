// SPDX-License-Identifier: MIT
#include "text/utf8.h"

#include <gtest/gtest.h>

namespace
{

TEST(Utf8, EachLengthAtItsEnds)
{
    EXPECT_EQ(ToUtf8(L""), "");
    EXPECT_EQ(ToUtf8(L"a\x7F"), "a\x7F");
    EXPECT_EQ(ToUtf8(L"\u0080\u00B0\u07FF"), "\xC2\x80\xC2\xB0\xDF\xBF");
    EXPECT_EQ(ToUtf8(L"\u0800\u2212\uFFFF"), "\xE0\xA0\x80\xE2\x88\x92\xEF\xBF\xBF");
}

} // namespace
