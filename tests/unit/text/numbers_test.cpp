// SPDX-License-Identifier: MIT
#include "text/numbers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <random>
#include <string>

namespace
{

struct IntegerRow {
    const char *name, *text;
    int32_t value;
};

TEST(Numbers, Integers)
{
    constexpr IntegerRow Rows[] = {
        {"plain", "42", 42},
        {"empty", "", 0},
        {"no number", "abc", 0},
        {"leading blanks and sign", "  -17x", -17},
        {"plus sign", "+5", 5},
        {"fraction ignored", "59.999", 59},
        {"blank after the sign", "- 5", 0},
        {"largest", "2147483647", 2147483647},
        {"one more saturates", "2147483648", 2147483647},
        {"smallest", "-2147483648", -2147483647 - 1},
        {"one less saturates", "-2147483649", -2147483647 - 1},
        {"far beyond 64 bits", "99999999999999999999999999", 2147483647},
    };
    for (const IntegerRow& row : Rows) EXPECT_EQ(ParseInteger(row.text), row.value) << row.name;
    EXPECT_EQ(ParseInteger(L" -12 "), -12);
}

TEST(Numbers, WholeNumbersOrNone)
{
    struct Row {
        const wchar_t* text;
        bool found;
        int32_t value;
    };
    for (const Row& row : {Row{L"12", true, 12},
                           {L" -5 m", true, -5},
                           {L"+0", true, 0},
                           {L"41 Geodetic", true, 41},
                           {L"2147483647", true, 2147483647},
                           {L"2147483648", false, 77},
                           {L"-2147483648", true, -2147483647 - 1},
                           {L"-2147483649", false, 77},
                           {L"99999999999", false, 77},
                           {L"", false, 77},
                           {L"-", false, 77},
                           {L"x1", false, 77}}) {
        int32_t value = 77;
        EXPECT_EQ(ParseWholeNumber(row.text, value), row.found);
        EXPECT_EQ(value, row.value);
    }
}

TEST(Numbers, FixedPointTextsAsAWhole)
{
    const struct {
        const char* text;
        uint32_t decimals;
        bool found;
        int64_t value;
    } rows[] = {
        {"12", 0, true, 12},
        {" \t-12 ", 0, true, -12},
        {"7.5", 1, true, 75},
        {"+7.5", 2, true, 750},
        {"-.5", 1, true, -5},
        {"5.", 1, true, 50},
        {"7", 1, true, 70},
        {"7.55", 1, false, 0},
        {"7.", 0, false, 0},
        {"7.5", 0, false, 0},
        {"7,5", 1, false, 0},
        {"1.2.3", 2, false, 0},
        {"5x", 0, false, 0},
        {"1e2", 1, false, 0},
        {"- 5", 0, false, 0},
        {"1 2", 0, false, 0},
        {"", 0, false, 0},
        {"-", 0, false, 0},
        {".", 1, false, 0},
        {"1000000000000000", 0, true, 1000000000000000},
        {"1000000000000001", 0, false, 0},
        {"99999999999999999999999999", 0, false, 0},
    };
    for (const auto& row : rows) {
        int64_t value = 77;
        EXPECT_EQ(ParseFixedPoint(row.text, row.decimals, value), row.found) << row.text;
        EXPECT_EQ(value, row.found ? row.value : 77) << row.text;
    }
    int64_t value = 0;
    EXPECT_FALSE(ParseFixedPoint(L"\u22125", 0, value)); // the minus sign of typography
}

struct DecimalRow {
    const char *name, *text;
    double value;
};

TEST(Numbers, Decimals)
{
    constexpr DecimalRow Rows[] = {
        {"plain", "16.4500", 16.45},
        {"empty", "", 0},
        {"no leading digit", ".5", 0.5},
        {"no digit after the point", "5.", 5},
        {"negative", "-0.1", -0.1},
        {"second point ends it", "1.2.3", 1.2},
        {"second point ends a long one", "1234567890.5.5", 1234567890.5},
        {"nine digits", "12345.6789", 12345.6789},
        {"nine digits and a point", "123456789.", 123456789},
        {"ten digits", "12345.67891", 12345.67891},
        {"ten digits before the point", "9876543210.25", 9876543210.25},
        {"nine places", "0.00000001", 0.00000001},
        {"no exponent", "99.9e300", 99.9},
        {"no infinity", "inf", 0},
        {"no hexadecimal", "0x10", 0},
        {"limit", "1000000000000000", 1e15},
        {"beyond the limit", "99999999999999999999999999", 1e15},
        {"beyond it below zero", "-1e99", -1},
        {"twenty digits keep their size", "-12345678901234567890", -1e15},
        {"nineteen digits round once", "1.234567890123456789", 1.234567890123456789},
        // Halfway between two numbers of 53 bits: the even one.
        {"half to even, down", "562949953421312.0625", 562949953421312.0},
        {"half to even, up", "562949953421312.1875", 562949953421312.25},
        {"more than half", "562949953421312.0626", 562949953421312.125},
        {"many leading zeros", "000000000000000000000000012.5", 12.5},
        {"a sign alone", "-", 0},
        {"a sign and a point", "-.", 0},
        {"many zeros after the point", "0.00000000000000000000000000001", 0},
    };
    for (const DecimalRow& row : Rows) EXPECT_EQ(ParseDecimal(row.text), row.value) << row.name;
    EXPECT_EQ(ParseDecimal(L"12.34 %"), 12.34);
    EXPECT_FALSE(std::signbit(ParseDecimal("-")));
    EXPECT_FALSE(std::signbit(ParseDecimal("-x1")));
    EXPECT_TRUE(std::signbit(ParseDecimal("-0")));
}

TEST(Numbers, DecimalTextsAsAWhole)
{
    constexpr double Refused = 4711;
    const struct {
        const char* text;
        double value;
    } rows[] = {
        {"7.5", 7.5},       {" \t-7.5\r\n", -7.5},
        {"+.5", 0.5},       {"5.", 5},
        {"1e2", 100},       {"75E-1", 7.5},
        {"1e+2 ", 100},     {"1e0000000000000000000001", 10},
        {"1e99", 1e15},     {"-1e999999999999", -1e15},
        {"1e-99", 1e-60},   {"0e99", 0},
        {"", Refused},      {"-", Refused},
        {".", Refused},     {"e5", Refused},
        {"1e", Refused},    {"1e+", Refused},
        {"1e1.5", Refused}, {"7,5", Refused},
        {"7.5x", Refused},  {"1 2", Refused},
        {"1.2.3", Refused}, {"- 5", Refused},
        {"nan", Refused},   {"inf", Refused},
        {"0x10", Refused},
    };
    for (const auto& row : rows) {
        double value = Refused;
        EXPECT_EQ(ParseDecimalNumber(row.text, value), row.value != Refused) << row.text;
        EXPECT_NEAR(value, row.value, std::fabs(row.value) * 1e-12) << row.text;
    }
    double value = Refused;
    EXPECT_FALSE(ParseDecimalNumber(L"\u22125", value)); // the minus sign of typography
}

TEST(Numbers, DecimalsAgreeWithTheLibrary)
{
    std::mt19937_64 random(2);
    for (int i = 0; i < 200000; ++i) {
        std::string text = std::to_string(random() >> random() % 64);
        if (text.size() > 19) text.resize(19);
        text.insert(random() % (text.size() + 1), ".");
        double expected = std::strtod(text.c_str(), nullptr);
        if (expected > 1e15) expected = 1e15;
        ASSERT_EQ(ParseDecimal(text.c_str()), expected) << text;
    }
}

} // namespace
