// SPDX-License-Identifier: MIT
#include "text/numbers.h"

#include <cmath>

namespace
{

constexpr double MaxDecimal = 1e15;
constexpr uint32_t MaxSignificantDigits = 19; // fit 64 bits

template <typename Char> bool IsDigit(Char c)
{
    return c >= '0' && c <= '9';
}

template <typename Char> const Char* SkipBlanks(const Char* text)
{
    while (*text == ' ' || (*text >= '\t' && *text <= '\r')) ++text;
    return text;
}

template <typename Char> bool TakeSign(const Char*& text)
{
    const bool negative = *text == '-';
    if (negative || *text == '+') ++text;
    return negative;
}

// Most numbers are this short: their digits fit in 32 bits, and a device calculates with these three times as
// fast.
constexpr uint32_t ShortDigits = 9;

template <typename Char> uint32_t AppendDigit(uint32_t value, Char digit)
{
    return value * 10 + static_cast<uint32_t>(digit - '0');
}

template <typename Char> uint32_t TakeDigits(const Char* text, uint32_t limit)
{
    uint32_t first = 0;
    for (uint32_t i = 0; i < ShortDigits && IsDigit(*text); ++i, ++text) first = AppendDigit(first, *text);
    if (first > limit) return limit;
    uint64_t value = first;
    for (; IsDigit(*text); ++text) {
        value = value * 10 + static_cast<uint64_t>(*text - '0');
        if (value > limit) return limit;
    }
    return static_cast<uint32_t>(value);
}

constexpr double PowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,
                                  1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19};

// The same as TakeDecimal for few digits; false, without taking anything, for more.
template <typename Char> bool TakeShortDecimal(const Char*& text, bool& found, double& value)
{
    const Char* next = text;
    uint32_t digits = 0, places = 0, mantissa = 0;
    for (; digits < ShortDigits && IsDigit(*next); ++digits, ++next) mantissa = AppendDigit(mantissa, *next);
    if (*next == '.') {
        ++next;
        for (; digits < ShortDigits && IsDigit(*next); ++digits, ++places, ++next)
            mantissa = AppendDigit(mantissa, *next);
    }
    if (IsDigit(*next)) return false;
    text = next;
    found = digits > 0;
    value = static_cast<double>(mantissa);
    if (places) value /= PowersOfTen[places];
    return true;
}

// mantissa / 10^places, rounded once. One division if both are exact doubles, otherwise bit by bit.
double Scale(uint64_t mantissa, uint32_t places)
{
    constexpr uint64_t ExactIntegers = uint64_t{1} << 53;
    if (mantissa <= ExactIntegers) return static_cast<double>(mantissa) / PowersOfTen[places];

    uint64_t divisor = 1;
    for (uint32_t i = 0; i < places; ++i) divisor *= 10;
    uint64_t quotient = mantissa / divisor, rest = mantissa % divisor;
    int32_t exponent = 0;
    while (quotient < ExactIntegers) { // 54 bits: one more than a double holds, for the rounding
        const bool carry = rest >= divisor - rest;
        rest = carry ? rest - (divisor - rest) : rest + rest;
        quotient = quotient << 1 | (carry ? 1 : 0);
        --exponent;
    }
    while (quotient >= ExactIntegers << 1) {
        rest |= quotient & 1;
        quotient >>= 1;
        ++exponent;
    }
    const bool half = quotient & 1;
    quotient >>= 1;
    if (half && (rest || (quotient & 1))) ++quotient;
    return std::ldexp(static_cast<double>(quotient), exponent + 1);
}

} // namespace

template <typename Char> int32_t ParseInteger(const Char* text)
{
    text = SkipBlanks(text);
    const bool negative = TakeSign(text);
    const int64_t magnitude = TakeDigits(text, negative ? uint32_t{1} << 31 : INT32_MAX);
    return static_cast<int32_t>(negative ? -magnitude : magnitude);
}

template <typename Char> bool ParseWholeNumber(const Char* text, int32_t& value)
{
    text = SkipBlanks(text);
    const bool negative = TakeSign(text);
    if (!IsDigit(*text)) return false;
    const uint32_t limit = negative ? uint32_t{1} << 31 : INT32_MAX;
    const uint32_t magnitude = TakeDigits(text, UINT32_MAX);
    if (magnitude > limit) return false;
    value = static_cast<int32_t>(negative ? -static_cast<int64_t>(magnitude) : magnitude);
    return true;
}

// Digits with at most one point; `found` is true if there is any digit. At most MaxDecimal.
template <typename Char> double TakeDecimal(const Char*& text, bool& found)
{
    double shortValue;
    if (TakeShortDecimal(text, found, shortValue)) return shortValue;
    uint64_t mantissa = 0;
    uint32_t digits = 0, places = 0;
    bool point = false, huge = false;
    found = false;
    for (;; ++text) {
        if (*text == '.' && !point) {
            point = true;
            continue;
        }
        if (!IsDigit(*text)) break;
        found = true;
        if (digits ==
            MaxSignificantDigits) { // further decimals are ignored, further integer digits are too many
            if (!point) huge = true;
            continue;
        }
        if (point && places == MaxSignificantDigits) continue;
        mantissa = mantissa * 10 + static_cast<uint64_t>(*text - '0');
        if (mantissa) ++digits;
        if (point) ++places;
    }
    const double value = huge ? MaxDecimal : Scale(mantissa, places);
    return value > MaxDecimal ? MaxDecimal : value;
}

template <typename Char> double ParseDecimal(const Char* text)
{
    text = SkipBlanks(text);
    const bool negative = TakeSign(text);
    bool found;
    const double value = TakeDecimal(text, found);
    return negative && found ? -value : value;
}

template <typename Char> bool ParseDecimalNumber(const Char* text, double& value)
{
    constexpr uint32_t MaxExponent = 60; // beyond it every number is 0 or too large
    text = SkipBlanks(text);
    const bool negative = TakeSign(text);
    bool found;
    double number = TakeDecimal(text, found);
    if (!found) return false;
    if (*text == 'e' || *text == 'E') {
        ++text;
        const bool shrinks = TakeSign(text);
        if (!IsDigit(*text)) return false;
        for (uint32_t i = TakeDigits(text, MaxExponent); i > 0; --i)
            number = shrinks ? number / 10 : number * 10;
        while (IsDigit(*text)) ++text;
    }
    if (*SkipBlanks(text)) return false;
    if (number > MaxDecimal) number = MaxDecimal;
    value = negative ? -number : number;
    return true;
}

template <typename Char> bool ParseFixedPoint(const Char* text, uint32_t decimals, int64_t& value)
{
    constexpr int64_t Limit = static_cast<int64_t>(MaxDecimal);
    text = SkipBlanks(text);
    const bool negative = TakeSign(text);
    int64_t magnitude = 0;
    uint32_t digits = 0, places = 0;
    bool point = false;
    for (;; ++text) {
        if (*text == '.' && !point && decimals) {
            point = true;
            continue;
        }
        if (!IsDigit(*text)) break;
        if (point && places == decimals) return false;
        magnitude = magnitude * 10 + static_cast<int64_t>(*text - '0');
        if (magnitude > Limit) return false;
        ++digits;
        if (point) ++places;
    }
    if (!digits || *SkipBlanks(text)) return false;
    for (; places < decimals; ++places) magnitude *= 10;
    value = negative ? -magnitude : magnitude;
    return true;
}

template int32_t ParseInteger(const char*);
template int32_t ParseInteger(const wchar_t*);
template bool ParseWholeNumber(const char*, int32_t&);
template bool ParseWholeNumber(const wchar_t*, int32_t&);
template double ParseDecimal(const char*);
template double ParseDecimal(const wchar_t*);
template bool ParseDecimalNumber(const char*, double&);
template bool ParseDecimalNumber(const wchar_t*, double&);
template bool ParseFixedPoint(const char*, uint32_t, int64_t&);
template bool ParseFixedPoint(const wchar_t*, uint32_t, int64_t&);
