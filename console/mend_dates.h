// SPDX-License-Identifier: MIT
// Mends the dates in a stream of NMEA sentences; everything else passes byte for byte.
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
    // `correct` gives the date to send on for the reported one.
    explicit DateMender(std::function<Date(const Date&)> correct) : correct_(std::move(correct)) {}

    // Takes bytes as received and returns those to send on. Only what may become an RMC or a ZDA is held back
    // until its line ends; at most MostHeld bytes.
    std::string Feed(std::span<const uint8_t> bytes);

    // The rest: what was held back, as it was received.
    std::string Finish();

    static constexpr size_t MostHeld = 128;

private:
    bool MayBecomeDated() const;

    std::function<Date(const Date&)> correct_;
    std::string held_; // from '$' on
};

// The sentence, from '$' to LF, with the date of RMC (ddmmyy) or ZDA (day, month, year) mended and its
// checksum made anew. Anything that is not a whole sentence of these with a right checksum (or with none) and
// a date comes back as it is, and so does one whose date is right.
std::string MendSentence(std::string_view sentence, const std::function<Date(const Date&)>& correct);

} // namespace console
