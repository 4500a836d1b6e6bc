// Numbers out of text that the receiver or the user wrote; the same on every platform and for any input.
#pragma once

#include <cstdint>

// Leading blanks, a sign, digits: the number at the start of the text, 0 where there is none. Everything
// behind the digits is ignored. Beyond 32 bits it saturates.
template <typename Char> int32_t ParseInteger(const Char* text);

// The whole number at the start of the text, leading blanks and a sign included. False, with `value`
// untouched, when there is no digit or the number does not fit 32 bits.
template <typename Char> bool ParseWholeNumber(const Char* text, int32_t& value);

// Leading blanks, a sign, digits with at most one point: the decimal number at the start of the text, 0 where
// there is none. Exactly rounded for up to 19 significant digits within 19 decimal places; magnitudes end at
// 1e15. No exponents, and no names of infinities: libraries disagree about them, and no receiver sends them.
template <typename Char> double ParseDecimal(const Char* text);

// A number as a person writes one: the text as a whole, blanks around it allowed. A sign, digits, and for
// `decimals` above 0 a point with up to that many digits after it; at least one digit. `value` counts in the
// last of them: "7.5" with two decimals is 750. False, with `value` untouched, for anything else and beyond
// 1e15.
template <typename Char> bool ParseFixedPoint(const Char* text, uint32_t decimals, int64_t& value);
