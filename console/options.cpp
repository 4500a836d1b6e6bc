// SPDX-License-Identifier: MIT
#include "console/options.h"

#include <charconv>
#include <cmath>

#include "console/result.h"
#include "link/link_state.h"

namespace console
{

double ParseSeconds(const std::string& text, const std::string& what)
{
    constexpr double Least = 0.001, Most = 366.0 * 86400;
    double seconds = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, seconds, std::chars_format::fixed);
    if (error != std::errc() || stop != end || !(seconds >= Least && seconds <= Most))
        Fail(FailureKind::Usage, what + ": no number of seconds: \"" + text + "\"");
    return seconds;
}

int64_t ParseWhole(const std::string& text, int64_t low, int64_t high, const std::string& what)
{
    int64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end || number < low || number > high)
        Fail(FailureKind::Usage, what + ": \"" + text + "\" is not a whole number from " +
                                     std::to_string(low) + " to " + std::to_string(high));
    return number;
}

std::vector<std::string> RateTexts()
{
    std::vector<std::string> texts;
    for (const uint32_t rate : BaudTable) texts.push_back(std::to_string(rate));
    return texts;
}

uint32_t ParseRate(const std::string& text, const std::string& what)
{
    const std::vector<std::string> texts = RateTexts();
    std::string rates;
    for (size_t i = 0; i < texts.size(); ++i) {
        if (text == texts[i]) return BaudTable[i];
        rates += (i == 0 ? "" : i + 1 == texts.size() ? " or " : ", ") + texts[i];
    }
    Fail(FailureKind::Usage, what + ": \"" + text + "\" is no rate: " + rates);
}

Assignment ParseAssignment(const std::string& text)
{
    const size_t equals = text.find('=');
    if (equals == text.npos || equals == 0 || equals + 1 == text.size())
        Fail(FailureKind::Usage, "\"" + text + "\" is not of the form NAME=VALUE");
    return {text.substr(0, equals), text.substr(equals + 1)};
}

} // namespace console
