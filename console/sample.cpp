// SPDX-License-Identifier: MIT
#include "console/sample.h"

#include <cmath>
#include <cstdio>
#include <utility>

#include "graph/channels.h"

namespace console
{

namespace
{

constexpr uint8_t MeasuredNavigation = 2, GeodeticNavigation = 41; // message ids

// The time of day of the latest message that had one; no value if it is not a valid time.
std::optional<int32_t> CurrentSecondOfDay()
{
    if (FixTime.wHour > 23 || FixTime.wMinute > 59 || FixTime.wSecond > 60) return {};
    return FixTime.wHour * 3600 + FixTime.wMinute * 60 + FixTime.wSecond;
}

// GGA has no date, so the date comes from another message. If the date was reported in the evening and the
// sample belongs to the morning, midnight has passed.
std::optional<int64_t> TimeOf(int32_t secondOfDay)
{
    const Date date = {LatestFix.Year, LatestFix.Month, LatestFix.Day};
    if (!IsDate(date)) return {};
    const bool isNextDay = secondOfDay + SecondsPerDay / 2 < LatestFix.DatedSecondOfDay;
    return (DaysOf(date) + (isNextDay ? 1 : 0)) * SecondsPerDay + secondOfDay;
}

} // namespace

bool Sample::IsPoint() const
{
    const bool hasFix = fix.Mode == FixMode::TwoD || fix.Mode == FixMode::ThreeD;
    return hasFix && !std::isnan(fix.LatitudeDegrees) && !std::isnan(fix.LongitudeDegrees);
}

Date DateOfTime(int64_t seconds)
{
    return DateOf(seconds / SecondsPerDay);
}

std::string FormatTime(int64_t seconds)
{
    const int rest = static_cast<int>(seconds % SecondsPerDay);
    char text[32];
    std::snprintf(text, sizeof text, "T%02d:%02d:%02dZ", rest / 3600, rest / 60 % 60, rest % 60);
    return FormatDate(DateOfTime(seconds)) + text;
}

std::optional<Correction> CorrectSample(Sample& sample, const Reference& reference)
{
    if (!sample.time) return {};
    sample.rawTime = sample.time;
    const Correction correction = CorrectDate(DateOfTime(*sample.time), reference, ReleaseDate());
    *sample.time += correction.epochs * DaysPerEpoch * SecondsPerDay;
    return correction;
}

SampleGatherer::SampleGatherer(std::function<void(const Sample&)> give) : give_(std::move(give))
{
    listener_.sentence = [this](const Sentence&) { messageId_ = 0; };
    listener_.message = [this](const Message& message) { messageId_ = message.Id(); };
    listener_.sample = [this] { Take(); };
    listener_.decoded = [this] { Complete(); };
}

void SampleGatherer::Take()
{
    // Until the first message 41 the chart takes message 2. If both come, they are about the same moment.
    if (waitingId_ == MeasuredNavigation && messageId_ == GeodeticNavigation) waiting_.reset();
    Flush();
    Sample sample = {};
    sample.fix = LatestFix;
    if (LatestFix.HasTimeOfDay) sample.secondOfDay = CurrentSecondOfDay();
    if (sample.secondOfDay) sample.time = TimeOf(*sample.secondOfDay);
    waiting_ = sample;
    waitingId_ = messageId_;
    justTaken_ = true;
}

void SampleGatherer::Complete()
{
    if (!waiting_ || std::exchange(justTaken_, false) || waitingId_ == MeasuredNavigation) return;
    if (!waiting_->secondOfDay || waiting_->secondOfDay != CurrentSecondOfDay()) {
        Flush();
        return;
    }
    FixReport& fix = waiting_->fix;
    fix.SpeedMetresPerSecond = LatestFix.SpeedMetresPerSecond;
    fix.CourseDegrees = LatestFix.CourseDegrees;
    fix.Vdop = LatestFix.Vdop;
    waiting_->time = TimeOf(*waiting_->secondOfDay);
}

void SampleGatherer::Flush()
{
    if (!waiting_) return;
    const Sample whole = *waiting_;
    waiting_.reset();
    give_(whole);
}

} // namespace console
