// SPDX-License-Identifier: MIT
#include "gps_time.h"

#include "common/numbers.h"

#include <algorithm>
#include <chrono>

namespace receiver
{

namespace
{

using namespace std::chrono;

constexpr sys_days GpsEpoch = 1980y / January / 6;

// From the first day of this month on, GPS time is ahead of UTC by this number of seconds.
struct LeapStep {
    year_month from;
    int32_t seconds;
};
constexpr LeapStep LeapSteps[] = {
    {1981y / July, 1},     {1982y / July, 2},     {1983y / July, 3},     {1985y / July, 4},
    {1988y / January, 5},  {1990y / January, 6},  {1991y / January, 7},  {1992y / July, 8},
    {1993y / July, 9},     {1994y / July, 10},    {1996y / January, 11}, {1997y / July, 12},
    {1999y / January, 13}, {2006y / January, 14}, {2009y / January, 15}, {2012y / July, 16},
    {2015y / July, 17},    {2017y / January, 18},
};

int32_t LeapSecondsOfUtcMs(int64_t utcMsSinceGpsEpoch)
{
    int32_t leap = 0;
    for (const LeapStep& step : LeapSteps) {
        if (milliseconds(utcMsSinceGpsEpoch) >= sys_days(step.from / 1) - GpsEpoch) leap = step.seconds;
    }
    return leap;
}

year_month_day DayOf(const UtcDate& date)
{
    return year(date.year) / month(static_cast<unsigned>(date.month)) / day(static_cast<unsigned>(date.day));
}

void SetDay(UtcDate& date, sys_days day)
{
    const year_month_day parts(day);
    date.year = static_cast<int>(parts.year());
    date.month = static_cast<int32_t>(static_cast<unsigned>(parts.month()));
    date.day = static_cast<int32_t>(static_cast<unsigned>(parts.day()));
}

} // namespace

int32_t LeapSeconds(GpsTime time)
{
    const int32_t guess = LeapSecondsOfUtcMs(time.ms);
    return LeapSecondsOfUtcMs(time.ms - guess * 1000);
}

UtcDate ToUtc(GpsTime time)
{
    const auto utc = std::max(milliseconds(time.ms) - seconds(LeapSeconds(time)), milliseconds(0));
    const auto wholeDays = floor<days>(utc);
    const hh_mm_ss clock(utc - wholeDays);
    UtcDate date;
    SetDay(date, GpsEpoch + wholeDays);
    date.hour = static_cast<int32_t>(clock.hours().count());
    date.minute = static_cast<int32_t>(clock.minutes().count());
    date.second = static_cast<int32_t>(clock.seconds().count());
    date.ms = static_cast<int32_t>(clock.subseconds().count());
    return date;
}

GpsTime FromUtc(const UtcDate& date)
{
    const milliseconds utc = sys_days(DayOf(date)) - GpsEpoch + hours(date.hour) + minutes(date.minute) +
                             seconds(date.second) + milliseconds(date.ms);
    return {utc.count() + static_cast<int64_t>(LeapSecondsOfUtcMs(utc.count())) * 1000};
}

UtcDate DaysEarlier(const UtcDate& date, int32_t count)
{
    UtcDate earlier = date;
    SetDay(earlier, sys_days(DayOf(date)) - days(count));
    return earlier;
}

GpsTime TimeOfThisMachine()
{
    const GpsTime utc{duration_cast<milliseconds>(system_clock::now() - GpsEpoch).count()};
    return {utc.ms + LeapSecondsOfUtcMs(utc.ms) * 1000};
}

int32_t EpochsBehind(int32_t week, int32_t pivotWeek)
{
    const int32_t beyond = week - pivotWeek;
    return beyond >= 0 ? beyond / WeeksPerEpoch : -((WeeksPerEpoch - 1 - beyond) / WeeksPerEpoch);
}

std::optional<GpsTime> ParseDate(std::string_view text)
{
    constexpr std::string_view Form = "YYYY-MM-DDThh:mm:ss";
    UtcDate date;
    struct Part {
        size_t at, digits;
        int32_t UtcDate::*member;
        int32_t most;
    };
    constexpr Part Parts[] = {{0, 4, &UtcDate::year, 9999},  {5, 2, &UtcDate::month, 12},
                              {8, 2, &UtcDate::day, 31},     {11, 2, &UtcDate::hour, 23},
                              {14, 2, &UtcDate::minute, 59}, {17, 2, &UtcDate::second, 59}};
    if (text.size() != Form.size()) return std::nullopt;
    for (const size_t at : {4u, 7u, 10u, 13u, 16u})
        if (text[at] != Form[at]) return std::nullopt;
    for (const Part& part : Parts) {
        const auto number = WholeNumberBetween(text.substr(part.at, part.digits), 0, part.most);
        if (!number) return std::nullopt;
        date.*part.member = *number;
    }
    if (!DayOf(date).ok() || sys_days(DayOf(date)) < GpsEpoch) return std::nullopt;
    return FromUtc(date);
}

} // namespace receiver
