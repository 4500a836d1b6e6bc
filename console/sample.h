// SPDX-License-Identifier: MIT
// A sample is the receiver's report for one moment, collected from all messages that belong to it.
#pragma once

#include <functional>
#include <optional>

#include "console/dates.h"
#include "console/reception.h"
#include "graph/latest_fix.h"

namespace console
{

constexpr int64_t SecondsPerDay = 86400;

struct Sample {
    FixReport fix;
    std::optional<int64_t> time;        // seconds since 1 January 1970, UTC; no value while no date is known
    std::optional<int64_t> rawTime;     // as reported, when dates are corrected
    std::optional<int32_t> secondOfDay; // UTC; may be known without a date

    // True for a point of a track: its message had a position and a fix.
    bool IsPoint() const;
};

// "2008-06-21T10:00:35Z"
std::string FormatTime(int64_t seconds);

// The date of a time.
Date DateOfTime(int64_t seconds);

// Corrects the sample's date by whole epochs, and keeps the reported time. Returns the correction; no value
// for a sample without a date.
std::optional<Correction> CorrectSample(Sample& sample, const Reference& reference);

// Collects samples as long as it exists: one for each sample that the chart records, with speed, course and
// date from the following messages of the same second.
class SampleGatherer
{
public:
    explicit SampleGatherer(std::function<void(const Sample&)> give);

    // Delivers the sample that is still waiting for more messages of its second.
    void Flush();

    bool IsWaiting() const { return waiting_.has_value(); }

private:
    void Take();
    void Complete();

    std::function<void(const Sample&)> give_;
    std::optional<Sample> waiting_;
    bool justTaken_ = false;
    uint8_t messageId_ = 0, waitingId_ = 0; // of the latest message, and of the waiting sample; 0: a sentence
    Listener listener_;
};

} // namespace console
