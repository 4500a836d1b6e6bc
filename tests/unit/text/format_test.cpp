// SPDX-License-Identifier: MIT
#include "text/format.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>

namespace
{

struct RealRow {
    const char* name;
    double value;
    const char *shortest, *angle; // "%03.01f" and "%09.07f"
};

constexpr RealRow RealRows[] = {
    {"zero", 0.0, "0.0", "0.0000000"},
    {"negative zero keeps its sign", -0.0, "-0.0", "-0.0000000"},
    {"one decimal", 1.2, "1.2", "1.2000000"},
    {"wider than the width", 12.5, "12.5", "12.5000000"},
    {"half to even downwards", 0.25, "0.2", "0.2500000"},
    {"half to even upwards", 0.75, "0.8", "0.7500000"},
    {"carry through the point", 9.96, "10.0", "9.9600000"},
    {"carry through all digits", 999.99, "1000.0", "999.9900000"},
    {"negative", -4.04, "-4.0", "-4.0400000"},
    {"far below the last digit", 1e-300, "0.0", "0.0000000"},
    {"largest exact integer", 9007199254740992.0, "9007199254740992.0", "9007199254740992.0000000"},
    {"beyond 64 bits", 1e22, "10000000000000000000000.0", "10000000000000000000000.0000000"},
    {"infinity", std::numeric_limits<double>::infinity(), "inf", "      inf"},
    {"negative infinity", -std::numeric_limits<double>::infinity(), "-inf", "     -inf"},
};

TEST(Format, RealNumbers)
{
    for (const RealRow& row : RealRows) {
        char text[128];
        Format(text, "%03.01f", row.value);
        EXPECT_STREQ(text, row.shortest) << row.name;
        Format(text, "%09.07f", row.value);
        EXPECT_STREQ(text, row.angle) << row.name;
    }
}

TEST(Format, NotANumberHasNoSign)
{
    char text[16];
    Format(text, "%.0f|%03.01f", std::nan(""), -std::nan(""));
    EXPECT_STREQ(text, "nan|nan");
}

TEST(Format, FloatsPrintTheirExactValue)
{
    char text[64];
    Format(text, "%0.2f %04.02f", 5485446.5f, 0.1f);
    EXPECT_STREQ(text, "5485446.50 0.10");
}

TEST(Format, Integers)
{
    char text[128];
    Format(text, "%u %d %02u %03u %04u %X %02X", 4294967295u, -2147483647 - 1, 7u, 7u, 12345u, 0xBEEFu, 0xAu);
    EXPECT_STREQ(text, "4294967295 -2147483648 07 007 12345 BEEF 0A");
}

TEST(Format, SmallIntegersAreTakenAtTheirOwnWidth)
{
    char text[64];
    Format(text, "%u %u %d", uint8_t{255}, uint16_t{65535}, int16_t{-1});
    EXPECT_STREQ(text, "255 65535 -1");
}

TEST(Format, BlankFlagAndZeroPaddingWithSign)
{
    char text[64];
    Format(text, "%03.0f,% 4.0f,% 4.0f,%05d", -7.0, 12.0, -12.0, -42);
    EXPECT_STREQ(text, "-07,  12, -12,-0042");
}

TEST(Format, TextsCharactersAndPercent)
{
    wchar_t text[64];
    Format(text, L"%s%c 100%% %s", L"ab", L'\u00B0', L"");
    EXPECT_STREQ(text, L"ab\u00B0 100% ");
}

TEST(Format, ZeroCharacterEndsTheText)
{
    wchar_t text[32];
    Format(text, L"x%c tail", L'\0');
    EXPECT_STREQ(text, L"x");
}

TEST(Format, CutsAtTheCapacityAndTerminates)
{
    struct {
        char text[8];
        char guard[8];
    } out;
    std::memset(&out, '?', sizeof out);
    EXPECT_EQ(Format(out.text, "%s", "0123456789"), 7u);
    EXPECT_STREQ(out.text, "0123456");
    EXPECT_EQ(out.guard[0], '?');
    EXPECT_EQ(Format(out.text, "%0.2f", 1e300), 7u);
    EXPECT_STREQ(out.text, "1000000");
    EXPECT_EQ(out.guard[0], '?');
}

TEST(Format, LargestRealNumberFitsItsBuffer)
{
    char text[400], expected[400];
    const double largest = std::numeric_limits<double>::max();
    Format(text, "%09.09f", -largest);
    std::snprintf(expected, sizeof expected, "%09.09f", -largest);
    EXPECT_STREQ(text, expected);
}

TEST(Format, AppendGoesOnBehindTheText)
{
    char text[12] = "ab";
    EXPECT_EQ(AppendFormat(text, "%u", 12u), 4u);
    EXPECT_STREQ(text, "ab12");
    EXPECT_EQ(AppendFormat(text, "%s", "0123456789"), 11u);
    EXPECT_STREQ(text, "ab120123456");
}

// The C library of the development machine also rounds exactly.
TEST(Format, AgreesWithTheLibraryOnRandomNumbers)
{
    std::mt19937_64 random(1);
    const auto draw = [&](int kind) {
        const uint64_t bits = random();
        switch (kind % 5) {
        case 0: return std::bit_cast<double>(bits);
        case 1:
            return static_cast<double>(static_cast<int64_t>(bits)) /
                   std::ldexp(1.0, static_cast<int>(random() % 64));
        case 2:
            return static_cast<double>(bits % 100000000) /
                   static_cast<double>(1u << random() % 12); // many halves
        case 3: return static_cast<double>(std::bit_cast<float>(static_cast<uint32_t>(bits)));
        default: return static_cast<double>(static_cast<float>(static_cast<double>(bits % 1000000) / 1000.0));
        }
    };
    for (int i = 0; i < 200000; ++i) {
        const double value = draw(i);
        if (std::isnan(value)) continue;
        char ours[2048], theirs[2048];
        Format(ours, "%03.01f|%09.07f|%04.02f|% 4.0f|%.0f|%0.0f|%03.0f", value, value, value, value, value,
               value, value);
        std::snprintf(theirs, sizeof theirs, "%03.01f|%09.07f|%04.02f|% 4.0f|%.0f|%0.0f|%03.0f", value, value,
                      value, value, value, value, value);
        ASSERT_STREQ(ours, theirs);
    }
}

} // namespace
