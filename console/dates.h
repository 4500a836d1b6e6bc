// SPDX-License-Identifier: MIT
// Dates, and the whole 1024 weeks by which old receivers report them too early.
//
// The satellites send the week modulo 1024. Firmware takes it for one of the 1024 weeks that its makers
// thought of; after those it reports dates of 1024 weeks before.
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

// "2008-06-21"; nothing for any other text.
std::optional<Date> ParseDate(std::string_view text);
std::string FormatDate(const Date& date);

// The computer's clock, in UTC.
Date Today();

// When this version of the program was released.
Date ReleaseDate();

// The date that a reported one is held against, and where it comes from.
enum class ReferenceKind { Given, File, Clock };
struct Reference {
    Date date;
    ReferenceKind kind = ReferenceKind::Given;
};

struct Correction {
    Date raw, corrected; // equal if nothing is corrected
    int32_t epochs = 0;  // of 1024 weeks that were added
    Date reference;      // the one that counted: for a clock that is not set, the release
    std::string reason;  // a sentence without full stop
};

// Adds the number of epochs, 0 or more, that brings the date nearest to the reference, if it then lies within
// 26 weeks of it; otherwise nothing. A clock before the release is not set: then the smallest number of
// epochs that makes the date no earlier than the release. A date that would leave the calendar stays as it
// is.
Correction CorrectDate(const Date& raw, const Reference& reference, const Date& release);

} // namespace console
