// SPDX-License-Identifier: MIT
// Dates that are a multiple of 1024 weeks too early. All days were counted with another calendar.

#include "console/dates.h"

#include <gtest/gtest.h>

using namespace console;

namespace
{

constexpr Date Release = {2026, 11, 1};

Correction Correct(const Date& raw, const Date& reference, ReferenceKind kind = ReferenceKind::Given)
{
    return CorrectDate(raw, {reference, kind}, Release);
}

} // namespace

TEST(Dates, TextAndBack)
{
    EXPECT_EQ(ParseDate("2008-06-21"), (Date{2008, 6, 21}));
    EXPECT_EQ(ParseDate("2024-02-29"), (Date{2024, 2, 29}));
    EXPECT_EQ(FormatDate({1980, 1, 6}), "1980-01-06");
    for (const char* text :
         {"", "2008-6-21", "2008-06-21x", "2023-02-29", "2008-13-01", "2008-00-10", "2008-06-00",
          "1979-12-31", "08-06-2008", "2008/06/21", "+008-06-21", "2008-+6-21"})
        EXPECT_FALSE(ParseDate(text)) << text;
}

TEST(Dates, DaysAreThoseSince1970)
{
    EXPECT_EQ(DaysOf({1970, 1, 1}), 0);
    EXPECT_EQ(DaysOf({1980, 1, 6}), 3657);
    EXPECT_EQ(DaysOf({2026, 11, 21}), 20778);
    EXPECT_EQ(DateOf(20778), (Date{2026, 11, 21}));
    EXPECT_EQ(DateOf(2932896), (Date{9999, 12, 31}));
    EXPECT_FALSE(IsDate(DateOf(INT64_MAX)));
    EXPECT_FALSE(IsDate(DateOf(INT64_MIN)));
}

TEST(CorrectDate, AddsTheEpochsThatLeadToTheReference)
{
    struct Row {
        Date raw, reference, corrected;
        int epochs;
    };
    constexpr Row Rows[] = {
        {{2007, 4, 7}, {2026, 11, 21}, {2026, 11, 21}, 1},
        {{1987, 8, 22}, {2026, 11, 21}, {2026, 11, 21}, 2},
        {{2026, 11, 21}, {2026, 11, 21}, {2026, 11, 21}, 0},
        {{2007, 4, 7}, {2027, 5, 22}, {2026, 11, 21}, 1},   // 182 days apart: still near
        {{2007, 4, 7}, {2026, 5, 23}, {2026, 11, 21}, 1},   // as many the other way
        {{2026, 11, 21}, {2026, 5, 23}, {2026, 11, 21}, 0}, // never back
    };
    for (const Row& row : Rows) {
        const Correction correction = Correct(row.raw, row.reference);
        EXPECT_EQ(correction.corrected, row.corrected) << FormatDate(row.raw);
        EXPECT_EQ(correction.epochs, row.epochs) << FormatDate(row.raw);
        EXPECT_EQ(correction.raw, row.raw);
        EXPECT_EQ(correction.reference, row.reference);
    }
    EXPECT_EQ(Correct({2007, 4, 7}, {2026, 11, 21}).reason,
              "plus 1024 weeks it lies within 26 weeks of the reference, 2026-11-21");
    EXPECT_EQ(Correct({1987, 8, 22}, {2026, 11, 21}, ReferenceKind::File).reason,
              "plus 2 times 1024 weeks it lies within 26 weeks of the file's last change, 2026-11-21");
    EXPECT_EQ(Correct({2026, 11, 21}, {2026, 11, 21}, ReferenceKind::Clock).reason,
              "the date lies within 26 weeks of the computer's clock, 2026-11-21");
}

TEST(CorrectDate, NeverGuesses)
{
    constexpr Date Far[] = {{2027, 5, 23}, {2026, 5, 22}, {2016, 1, 1}, {2007, 10, 7}, {1990, 1, 1}};
    for (const Date& reference : Far) {
        const Correction correction = Correct({2007, 4, 7}, reference);
        EXPECT_EQ(correction.corrected, (Date{2007, 4, 7})) << FormatDate(reference);
        EXPECT_EQ(correction.epochs, 0);
        EXPECT_EQ(correction.reason,
                  "no number of 1024 weeks brings the date within 26 weeks of the reference, " +
                      FormatDate(reference));
    }
}

TEST(CorrectDate, AClockBeforeTheReleaseIsNotSet)
{
    const Correction correction = Correct({2007, 4, 7}, {2026, 10, 31}, ReferenceKind::Clock);
    EXPECT_EQ(correction.corrected, (Date{2026, 11, 21}));
    EXPECT_EQ(correction.epochs, 1);
    EXPECT_EQ(correction.reference, Release);
    EXPECT_EQ(correction.reason,
              "the computer's clock is not set (2026-10-31, before the release); plus 1024 weeks "
              "it is not before the release of the program, 2026-11-01");
    // The smallest number that reaches the release, even if the result is far after it.
    EXPECT_EQ(Correct({2007, 3, 17}, {1970, 1, 1}, ReferenceKind::Clock).corrected, (Date{2046, 6, 16}));
    EXPECT_EQ(Correct({2007, 3, 18}, {1970, 1, 1}, ReferenceKind::Clock).corrected, (Date{2026, 11, 1}));
    EXPECT_EQ(Correct({2030, 1, 1}, {1970, 1, 1}, ReferenceKind::Clock).epochs, 0);
    EXPECT_EQ(Correct({2026, 11, 1}, {1970, 1, 1}, ReferenceKind::Clock).reason,
              "the computer's clock is not set (1970-01-01, before the release); the date is not before the "
              "release "
              "of the program, 2026-11-01");
    // On the day of the release it is set.
    EXPECT_EQ(Correct({2007, 3, 18}, {2026, 11, 1}, ReferenceKind::Clock).reason,
              "plus 1024 weeks it lies within 26 weeks of the computer's clock, 2026-11-01");
    // A file or a given date may be older than the program.
    EXPECT_EQ(Correct({2007, 4, 7}, {2007, 4, 8}, ReferenceKind::File).epochs, 0);
}

TEST(CorrectDate, LeavesTheCalendarNever)
{
    EXPECT_EQ(Correct({9990, 1, 1}, {9999, 12, 31}).epochs, 0);
    EXPECT_EQ(CorrectDate({9990, 1, 1}, {{1970, 1, 1}, ReferenceKind::Clock}, {9999, 12, 31}).corrected,
              (Date{9990, 1, 1}));
}

TEST(Dates, OfReleaseAndClockAreOfTheCalendar)
{
    EXPECT_TRUE(IsDate(ReleaseDate()));
    EXPECT_GE(ReleaseDate(), (Date{2026, 11, 1}));
    EXPECT_TRUE(IsDate(Today()));
}
