// SPDX-License-Identifier: MIT
#include "ui/page_lines.h"

#include "tests/unit/support/product_test.h"

namespace
{

class TextViewTest : public ProductTest
{
};

TEST_F(TextViewTest, StartsWithTheHintHowToConnect)
{
    EXPECT_EQ(Line(0), L" Menu Com. Open a port.");
    for (uint32_t i = 1; i < TextLineCount; ++i) EXPECT_EQ(Line(i), L"") << i;
}

TEST_F(TextViewTest, LineIsCutAt255CharactersAndTheLastOneStaysZero)
{
    const std::wstring text(300, L'x');
    SetTextLine(7, text.c_str());
    EXPECT_EQ(Line(7), std::wstring(255, L'x'));
    EXPECT_EQ(Line(8), L"");
}

TEST_F(TextViewTest, ShorterTextEndsWhereItEnds)
{
    SetTextLine(3, L"a long line");
    SetTextLine(3, L"short");
    EXPECT_EQ(Line(3), L"short");
}

TEST_F(TextViewTest, ClearingLeavesTheHintOnKeys)
{
    for (uint32_t i = 0; i < TextLineCount; ++i) SetTextLine(i, L"x");
    ClearTextView();
    for (uint32_t i = 0; i < LastTextLine; ++i) EXPECT_EQ(Line(i), L"") << i;
    EXPECT_EQ(Line(LastTextLine), L" Use joystick to toggle graph/text.");
}

} // namespace
