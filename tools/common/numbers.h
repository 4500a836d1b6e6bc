// SPDX-License-Identifier: MIT
// Reads numbers from options and files. The whole text must be a number, without spaces and without a sign
// '+'.
#pragma once

#include <charconv>
#include <optional>
#include <string_view>

template <typename Number> std::optional<Number> NumberWithin(std::string_view text, Number low, Number high)
{
    Number value{};
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || rest != end || !(value >= low && value <= high)) return std::nullopt;
    return value;
}

inline std::optional<double> NumberBetween(std::string_view text, double low, double high)
{
    return NumberWithin(text, low, high);
}

inline std::optional<int> WholeNumberBetween(std::string_view text, int low, int high)
{
    return NumberWithin(text, low, high);
}
