// SPDX-License-Identifier: MIT
// Dates, and their correction: old receivers report dates that are too early by a multiple of 1024 weeks.
//
// The satellites send the week modulo 1024. Firmware assumes one period of 1024 weeks; after its end,
// reported dates are 1024 weeks too early.
#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace console
{

struct Date {
    int32_t year = 0, month = 0, day = 0;
    auto operator<=>(const Date&) const = default;
};

constexpr int64_t DaysPerEpoch = 1024 * 7;

// True for a day of the calendar in the years 1980 to 9999.
bool IsDate(const Date& date);

// Days since 1 January 1970, and back.
int64_t DaysOf(const Date& date);
Date DateOf(int64_t days);

// Reads "2008-06-21"; no value for any other text.
std::optional<Date> ParseDate(std::string_view text);
std::string FormatDate(const Date& date);

// The computer's clock, in UTC.
Date Today();

// Release date of this version of the program.
Date ReleaseDate();

// The date with which a reported date is compared, and its source.
enum class ReferenceKind { Given, File, Clock };
struct Reference {
    Date date;
    ReferenceKind kind = ReferenceKind::Given;
};

struct Correction {
    Date raw, corrected; // equal if nothing is corrected
    int32_t epochs = 0;  // number of added periods of 1024 weeks
    Date reference;      // the date that was used: the release, if the clock is not set
    std::string reason;  // a sentence without full stop
};

// Adds the number of epochs, 0 or more, with which the date is nearest to the reference, if the result is
// within 26 weeks of the reference; otherwise adds nothing. If the clock is before the release, it has not
// been set: then the smallest number of epochs is added that makes the date not earlier than the release. A
// date whose correction is outside the calendar stays unchanged.
Correction CorrectDate(const Date& raw, const Reference& reference, const Date& release);

} // namespace console
