// SPDX-License-Identifier: MIT
// Reads numbers from text of the receiver or the user; with the same result on every platform, for any input.
#pragma once

#include <cstdint>

// ---- Text of a receiver: the number at the start of the text --------------------------------------------

// Leading blanks, a sign, digits; 0 if there is no digit. Everything after the digits is ignored. Numbers
// that do not fit 32 bits become the largest or smallest one.
template <typename Char> int32_t ParseInteger(const Char* text);

// The same for an entry with a name after its number ("41 Geodetic Navigation Data"). False, with `value`
// unchanged, when there is no digit or the number does not fit 32 bits.
template <typename Char> bool ParseWholeNumber(const Char* text, int32_t& value);

// Leading blanks, a sign, digits with at most one point; 0, without a sign, if there is no digit. Exactly
// rounded for up to 19 significant digits within 19 decimal places; the largest magnitude is 1e15. Exponents
// and names of infinities are not read: libraries disagree about them, and no receiver sends them.
template <typename Char> double ParseDecimal(const Char* text);

// ---- Text of a person: the whole text must be the number, with blanks around it allowed -----------------
// False, with `value` unchanged, for any other text: without a digit, or with something left over.

// A sign, digits, and for `decimals` above 0 a point with up to that many digits after it. `value` is in
// units of the last decimal: "7.5" with two decimals is 750. False also above 1e15.
template <typename Char> bool ParseFixedPoint(const Char* text, uint32_t decimals, int64_t& value);

// A sign, digits, a point, digits, an exponent ("7.5", ".5", "1e-2"); at least one digit. The largest
// magnitude is 1e15.
template <typename Char> bool ParseDecimalNumber(const Char* text, double& value);
