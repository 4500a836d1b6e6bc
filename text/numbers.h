// Numbers out of text that the receiver or the user wrote; the same on every platform and for any input.
#pragma once

#include <cstdint>

// Leading blanks, a sign, digits: the number at the start of the text, 0 where there is none. Everything
// behind the digits is ignored. Beyond 32 bits it saturates.
template <typename Char> int32_t ParseInteger(const Char* text);

// The whole number at the start of the text, leading blanks and a sign included. False, with `value`
// untouched, when there is no digit or the number does not fit 32 bits.
bool ParseWholeNumber(const wchar_t* text, int32_t& value);

// Leading blanks, a sign, digits with at most one point: the decimal number at the start of the text, 0 where
// there is none. Exactly rounded for up to 19 significant digits within 19 decimal places; magnitudes end at
// 1e15. No exponents, and no names of infinities: libraries disagree about them, and no receiver sends them.
template <typename Char> double ParseDecimal(const Char* text);
