// SPDX-License-Identifier: MIT
// Corrected dates in a stream. Checksums were calculated by hand.

#include "console/mend_dates.h"

#include <gtest/gtest.h>

#include <utility>

using namespace console;

namespace
{

// The report of a receiver whose date is one epoch too early.
Date OneEpochLater(const Date& date)
{
    return DateOf(DaysOf(date) + 7168);
}

std::string Mended(const std::string& stream, size_t atOnce = 1000)
{
    DateMender mender(OneEpochLater);
    std::string out;
    for (size_t at = 0; at < stream.size(); at += atOnce) {
        const std::string part = stream.substr(at, atOnce);
        out += mender.Feed({reinterpret_cast<const uint8_t*>(part.data()), part.size()});
    }
    return out + mender.Finish();
}

} // namespace

TEST(MendDates, OfRmcAndZda)
{
    const std::pair<const char*, const char*> Rows[] = {
        {"$GPRMC,100001.000,A,4722.6140,N,00832.5020,E,0.00,0.00,070407,,,A*64\r\n",
         "$GPRMC,100001.000,A,4722.6140,N,00832.5020,E,0.00,0.00,211126,,,A*67\r\n"},
        {"$GPZDA,100001.000,07,04,2007,,*50\r\n", "$GPZDA,100001.000,21,11,2026,,*53\r\n"},
        {"$GPRMC,,V,,,,,,,220887,,,N*54\r\n", "$GPRMC,,V,,,,,,,070407,,,N*57\r\n"}, // 1987
        {"$GNZDA,1,07,04,2007,00,00*61\r\n", "$GNZDA,1,21,11,2026,00,00*62\r\n"},
        {"$GPZDA,1,07,04,2007,,\r\n", "$GPZDA,1,21,11,2026,,\r\n"}, // it had no checksum
        {"$GPZDA,1,07,04,2007,,*7f\r\n", "$GPZDA,1,21,11,2026,,*7C\r\n"},
    };
    for (const auto& [raw, mended] : Rows) EXPECT_EQ(Mended(raw), mended);
}

TEST(MendDates, EverythingElsePassesByteForByte)
{
    const std::string Rows[] = {
        "",
        "$GPGGA,100001.000,4722.6140,N,00832.5020,E,1,09,1.1,459.5,M,48.2,M,,0000*00\r\n",
        "$GPRMC,100001.000,A,4722.6140,N,00832.5020,E,0.00,0.00,070407,,,A*00\r\n", // wrong checksum
        "$GPRMC,,V,,,,,,,,,,N*53\r\n",                                              // no date
        "$GPRMC,,V,,,,,,,310407,,,N\r\n",                                           // none of the calendar
        "$GPRMC,,V,,,,,,,07040,,,N\r\n",
        "$GPRMC,,V,,,,,,,07a407,,,N\r\n",
        "$GPRMC,,V\r\n",
        "$GPZDA,1,07,04\r\n",
        "$GPZDA,1,7,4,2007,,\r\n",
        "$GPZDA,1,07,04,2007,,\n",
        "$GPRMCX,,V,,,,,,,070407,,,N\r\n",
        "$PRMC,,V,,,,,,,070407,,,N\r\n",
        "$GPZDA,1,07,04,2007,,", // never ends
        "$GPZDA,1,07,04,20\x80"
        "07,,\r\n",
        "$GP",
        "$$$$\r\n$",
        std::string("\xA0\xA2\x00\x02$G\x00\xB0\xB3", 9),
        "$GPRMC," + std::string(300, '1') + "\r\n",
    };
    for (const std::string& row : Rows) {
        EXPECT_EQ(Mended(row), row);
        EXPECT_EQ(Mended(row, 1), row);
    }
}

TEST(MendDates, WhereverTheBytesAreCut)
{
    const std::string raw =
        "\xA0\xA2$GP$GPZDA,100001.000,07,04,2007,,*50\r\nx$GPZDA,100001.000,07,04,2007,,*50\r\n";
    const std::string mended =
        "\xA0\xA2$GP$GPZDA,100001.000,21,11,2026,,*53\r\nx$GPZDA,100001.000,21,11,2026,,*53\r\n";
    for (size_t atOnce = 1; atOnce < 50; ++atOnce) EXPECT_EQ(Mended(raw, atOnce), mended) << atOnce;
}

TEST(MendDates, HoldsBackNoMoreThanADatedSentence)
{
    DateMender mender(OneEpochLater);
    const auto feed = [&](const std::string& text) {
        return mender.Feed({reinterpret_cast<const uint8_t*>(text.data()), text.size()});
    };
    EXPECT_EQ(feed("abc$GPG"), "abc");
    EXPECT_EQ(feed("GA"), "$GPGGA"); // no longer one that may be dated
    EXPECT_EQ(feed(",1\r\n"), ",1\r\n");
    EXPECT_EQ(feed("$GPRMC," + std::string(DateMender::MostHeld, '1')),
              "$GPRMC," + std::string(DateMender::MostHeld, '1'));
}

TEST(MendDates, ADateThatIsRightStaysAsItWasWritten)
{
    const auto same = [](const Date& date) { return date; };
    EXPECT_EQ(MendSentence("$GPZDA,100001.000,07,04,2007,,*50\r\n", same),
              "$GPZDA,100001.000,07,04,2007,,*50\r\n");
}
