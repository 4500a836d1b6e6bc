// SPDX-License-Identifier: MIT
// Numbers out of text that the receiver or the user wrote; the same on every platform and for any input.
#pragma once

#include <cstdint>

// ---- What a receiver sends: the number at the start of a text ------------------------------------------

// Leading blanks, a sign, digits; 0 where there is no digit. Everything after the digits is ignored. Beyond
// 32 bits it saturates.
template <typename Char> int32_t ParseInteger(const Char* text);

// The same of an entry that says what its number stands for ("41 Geodetic Navigation Data"). False, with
// `value` untouched, when there is no digit or the number does not fit 32 bits.
template <typename Char> bool ParseWholeNumber(const Char* text, int32_t& value);

// Leading blanks, a sign, digits with at most one point; 0, without a sign, where there is no digit. Exactly
// rounded for up to 19 significant digits within 19 decimal places; magnitudes end at 1e15. No exponents, and
// no names of infinities: libraries disagree about them, and no receiver sends them.
template <typename Char> double ParseDecimal(const Char* text);

// ---- What a person writes: the text as a whole, blanks around it allowed ------------------------------
// False, with `value` untouched, for anything else: no digit, or something left over.

// A sign, digits, and for `decimals` above 0 a point with up to that many digits after it. `value` counts in
// the last of them: "7.5" with two decimals is 750. False too beyond 1e15.
template <typename Char> bool ParseFixedPoint(const Char* text, uint32_t decimals, int64_t& value);

// A sign, digits, a point, digits, an exponent ("7.5", ".5", "1e-2"); at least one digit. Magnitudes end at
// 1e15.
template <typename Char> bool ParseDecimalNumber(const Char* text, double& value);
