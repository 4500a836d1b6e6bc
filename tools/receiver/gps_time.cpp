#include "gps_time.h"

#include <charconv>

namespace receiver
{

namespace
{

// Days since 1970-01-01 of a date of the Gregorian calendar, and back. Years begin in March here, so
// that the leap day is the last day of a year.
int64_t DaysFromDate(int32_t year, int32_t month, int32_t day)
{
    const int64_t y = year - (month <= 2 ? 1 : 0);
    const int64_t era = y / 400, yearOfEra = y % 400;
    const int64_t dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    return era * 146097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - 719468;
}

void DateFromDays(int64_t days, UtcDate& date)
{
    days += 719468;
    const int64_t era = days / 146097, dayOfEra = days % 146097;
    const int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const int64_t monthFromMarch = (5 * dayOfYear + 2) / 153;
    date.day = static_cast<int32_t>(dayOfYear - (153 * monthFromMarch + 2) / 5 + 1);
    date.month = static_cast<int32_t>(monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9);
    date.year = static_cast<int32_t>(yearOfEra + era * 400 + (date.month <= 2 ? 1 : 0));
}

constexpr int64_t GpsEpochDays = 3657; // 1980-01-06

struct LeapStep {
    int32_t year, month; // the offset holds from the first of this month
    int32_t seconds;
};
constexpr LeapStep LeapSteps[] = {
    {1981, 7, 1},  {1982, 7, 2},  {1983, 7, 3},  {1985, 7, 4},  {1988, 1, 5},  {1990, 1, 6},
    {1991, 1, 7},  {1992, 7, 8},  {1993, 7, 9},  {1994, 7, 10}, {1996, 1, 11}, {1997, 7, 12},
    {1999, 1, 13}, {2006, 1, 14}, {2009, 1, 15}, {2012, 7, 16}, {2015, 7, 17}, {2017, 1, 18},
};

int32_t LeapSecondsOfUtcMs(int64_t utcMsSinceGpsEpoch)
{
    int32_t leap = 0;
    for (const LeapStep& step : LeapSteps) {
        const int64_t from = (DaysFromDate(step.year, step.month, 1) - GpsEpochDays) * 86400000;
        if (utcMsSinceGpsEpoch >= from) leap = step.seconds;
    }
    return leap;
}

bool ParseNumber(std::string_view text, size_t at, size_t digits, int32_t& value)
{
    const char* begin = text.data() + at;
    const auto [end, error] = std::from_chars(begin, begin + digits, value);
    return error == std::errc() && end == begin + digits && value >= 0;
}

} // namespace

int32_t LeapSeconds(GpsTime time)
{
    const int32_t guess = LeapSecondsOfUtcMs(time.ms);
    return LeapSecondsOfUtcMs(time.ms - guess * 1000);
}

UtcDate ToUtc(GpsTime time)
{
    int64_t ms = time.ms - static_cast<int64_t>(LeapSeconds(time)) * 1000;
    if (ms < 0) ms = 0;
    UtcDate date;
    DateFromDays(GpsEpochDays + ms / 86400000, date);
    ms %= 86400000;
    date.hour = static_cast<int32_t>(ms / 3600000);
    date.minute = static_cast<int32_t>(ms / 60000 % 60);
    date.second = static_cast<int32_t>(ms / 1000 % 60);
    date.ms = static_cast<int32_t>(ms % 1000);
    return date;
}

GpsTime FromUtc(const UtcDate& date)
{
    const int64_t days = DaysFromDate(date.year, date.month, date.day) - GpsEpochDays;
    const int64_t seconds = date.hour * 3600 + date.minute * 60 + date.second;
    const int64_t ms = days * 86400000 + seconds * 1000 + date.ms;
    return {ms + static_cast<int64_t>(LeapSecondsOfUtcMs(ms)) * 1000};
}

UtcDate DaysEarlier(const UtcDate& date, int32_t days)
{
    UtcDate earlier = date;
    DateFromDays(DaysFromDate(date.year, date.month, date.day) - days, earlier);
    return earlier;
}

int32_t EpochsBehind(int32_t week, int32_t pivotWeek)
{
    const int32_t beyond = week - pivotWeek;
    return beyond >= 0 ? beyond / WeeksPerEpoch : -((WeeksPerEpoch - 1 - beyond) / WeeksPerEpoch);
}

std::optional<GpsTime> ParseDate(std::string_view text)
{
    UtcDate date;
    if (text.size() != 19 || text[4] != '-' || text[7] != '-' || text[10] != 'T' || text[13] != ':' ||
        text[16] != ':' || !ParseNumber(text, 0, 4, date.year) || !ParseNumber(text, 5, 2, date.month) ||
        !ParseNumber(text, 8, 2, date.day) || !ParseNumber(text, 11, 2, date.hour) ||
        !ParseNumber(text, 14, 2, date.minute) || !ParseNumber(text, 17, 2, date.second)) {
        return std::nullopt;
    }
    if (date.month < 1 || date.month > 12 || date.day < 1 || date.day > 31 || date.hour > 23 ||
        date.minute > 59 || date.second > 59) {
        return std::nullopt;
    }
    const GpsTime time = FromUtc(date);
    if (date.year < 1980 || time.ms < 0) return std::nullopt;
    const UtcDate back = ToUtc(time); // refuses 31 April and the like
    if (back.month != date.month || back.day != date.day) return std::nullopt;
    return time;
}

} // namespace receiver
