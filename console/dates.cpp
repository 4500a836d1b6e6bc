// SPDX-License-Identifier: MIT
#include "console/dates.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>

namespace console
{

namespace
{

using namespace std::chrono;

constexpr int64_t NearDays = 26 * 7;

year_month_day CalendarDay(const Date& date)
{
    return year(date.year) / static_cast<int>(date.month) / static_cast<int>(date.day);
}

bool ReadDigits(std::string_view text, size_t at, size_t count, int32_t& value)
{
    if (text[at] == '-' || text[at] == '+') return false;
    const auto [end, error] = std::from_chars(text.data() + at, text.data() + at + count, value);
    return error == std::errc() && end == text.data() + at + count;
}

const char* NameOf(ReferenceKind kind)
{
    switch (kind) {
    case ReferenceKind::Given: return "the reference";
    case ReferenceKind::File: return "the file's last change";
    case ReferenceKind::Clock: return "the computer's clock";
    }
    return "";
}

std::string Epochs(int64_t count)
{
    return count == 1 ? "1024 weeks" : std::to_string(count) + " times 1024 weeks";
}

Correction Corrected(Correction correction, int64_t epochs)
{
    const Date later = DateOf(DaysOf(correction.raw) + epochs * DaysPerEpoch);
    if (!IsDate(later)) return correction;
    correction.corrected = later;
    correction.epochs = static_cast<int32_t>(epochs);
    return correction;
}

Correction CorrectByRelease(Correction correction, const Date& release)
{
    const std::string clock =
        "the computer's clock is not set (" + FormatDate(correction.reference) + ", before the release)";
    correction.reference = release;
    const int64_t behind = DaysOf(release) - DaysOf(correction.raw);
    const int64_t epochs = behind <= 0 ? 0 : (behind + DaysPerEpoch - 1) / DaysPerEpoch;
    correction = Corrected(std::move(correction), epochs);
    correction.reason =
        clock + "; " +
        (epochs == 0 ? "the date is not before the release of the program, " + FormatDate(release)
                     : "plus " + Epochs(epochs) + " it is not before the release of the program, " +
                           FormatDate(release));
    return correction;
}

} // namespace

bool IsDate(const Date& date)
{
    return date.year >= 1980 && date.year <= 9999 && date.month >= 1 && date.month <= 12 && date.day >= 1 &&
           date.day <= 31 && CalendarDay(date).ok();
}

int64_t DaysOf(const Date& date)
{
    return sys_days(CalendarDay(date)).time_since_epoch().count();
}

Date DateOf(int64_t number)
{
    // A receiver cannot report a date before 1970 or after 9999.
    constexpr int64_t First = 0, Last = 2932896;
    const year_month_day day(sys_days(days(std::clamp(number, First, Last + 1))));
    return {static_cast<int>(day.year()), static_cast<int32_t>(static_cast<unsigned>(day.month())),
            static_cast<int32_t>(static_cast<unsigned>(day.day()))};
}

std::optional<Date> ParseDate(std::string_view text)
{
    Date date;
    if (text.size() != 10 || text[4] != '-' || text[7] != '-' || !ReadDigits(text, 0, 4, date.year) ||
        !ReadDigits(text, 5, 2, date.month) || !ReadDigits(text, 8, 2, date.day) || !IsDate(date))
        return {};
    return date;
}

std::string FormatDate(const Date& date)
{
    char text[48];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d", date.year, date.month, date.day);
    return text;
}

Date Today()
{
    return DateOf(floor<days>(system_clock::now()).time_since_epoch().count());
}

Date ReleaseDate()
{
    return ParseDate(TORAVANE_RELEASE_DATE).value_or(Date{2026, 11, 1});
}

Correction CorrectDate(const Date& raw, const Reference& reference, const Date& release)
{
    Correction correction{raw, raw, 0, reference.date, {}};
    if (reference.kind == ReferenceKind::Clock && reference.date < release)
        return CorrectByRelease(std::move(correction), release);

    const int64_t behind = DaysOf(reference.date) - DaysOf(raw);
    const int64_t epochs = std::max<int64_t>(0, (behind + DaysPerEpoch / 2) / DaysPerEpoch);
    const int64_t apart = behind - epochs * DaysPerEpoch;
    const std::string against = std::string(NameOf(reference.kind)) + ", " + FormatDate(reference.date);
    if (apart > NearDays || apart < -NearDays) {
        correction.reason = "no number of 1024 weeks brings the date within 26 weeks of " + against;
        return correction;
    }
    correction = Corrected(std::move(correction), epochs);
    correction.reason = epochs == 0 ? "the date lies within 26 weeks of " + against
                                    : "plus " + Epochs(epochs) + " it lies within 26 weeks of " + against;
    return correction;
}

} // namespace console
