// SPDX-License-Identifier: MIT
// Corrects the dates in a stream of NMEA sentences; all other bytes stay unchanged.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "console/dates.h"

namespace console
{

class DateMender
{
public:
    // `correct` returns the date that replaces the reported one.
    explicit DateMender(std::function<Date(const Date&)> correct) : correct_(std::move(correct)) {}

    // Takes received bytes and returns the bytes to send on. Only a possible RMC or ZDA is held back until
    // its line ends; at most MostHeld bytes.
    std::string Feed(std::span<const uint8_t> bytes);

    // Returns the bytes that are still held back, as received.
    std::string Finish();

    static constexpr size_t MostHeld = 128;

private:
    bool MayBecomeDated() const;

    std::function<Date(const Date&)> correct_;
    std::string held_; // begins with '$'
};

// The sentence, from '$' to LF, with the date of RMC (ddmmyy) or ZDA (day, month, year) corrected and a new
// checksum. The result is the unchanged text if it is not a whole sentence of these two with a date and a
// correct checksum (or none), or if the date is right.
std::string MendSentence(std::string_view sentence, const std::function<Date(const Date&)>& correct);

} // namespace console
