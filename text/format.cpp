// SPDX-License-Identifier: MIT
#include "text/format.h"

#include <bit>

namespace
{

constexpr uint32_t MantissaBits = 52;
constexpr int32_t ExponentBias = 1075; // of a mantissa read as an integer

constexpr uint32_t MaxPrecision = 9;
constexpr uint32_t MaxIntegerDigits = 309; // of the largest double
constexpr uint32_t MaxRealCharacters = 1 + MaxIntegerDigits + 1 + MaxPrecision;

struct Conversion {
    bool zeros = false, blank = false;
    uint32_t width = 0, precision = 6;
};

// Bounded output: characters that do not fit are neither counted nor written.
template <typename Char> struct Output {
    Char *next, *end;
    void Put(Char c)
    {
        if (next < end) *next++ = c;
    }
};

// Unsigned integer of up to 1,088 bits, enough for every double with its fraction shifted out.
struct BigNumber {
    static constexpr uint32_t Limbs = 34;
    uint32_t limb[Limbs] = {};

    void SetShifted(uint64_t value, uint32_t shift)
    {
        const uint32_t first = shift / 32, rest = shift % 32;
        const uint32_t parts[3] = {static_cast<uint32_t>(value << rest),
                                   static_cast<uint32_t>(value << rest >> 32),
                                   rest ? static_cast<uint32_t>(value >> 32 >> (32 - rest)) : 0};
        for (uint32_t i = 0; i < 3; ++i)
            if (first + i < Limbs) limb[first + i] = parts[i];
    }

    uint32_t DivideBy(uint32_t divisor) // returns the remainder
    {
        uint64_t rest = 0;
        for (uint32_t i = Limbs; i-- > 0;) {
            rest = rest << 32 | limb[i];
            limb[i] = static_cast<uint32_t>(rest / divisor);
            rest %= divisor;
        }
        return static_cast<uint32_t>(rest);
    }

    uint32_t MultiplyBy(uint32_t factor) // returns the carry out of the top limb
    {
        uint64_t carry = 0;
        for (uint32_t& part : limb) {
            carry += static_cast<uint64_t>(part) * factor;
            part = static_cast<uint32_t>(carry);
            carry >>= 32;
        }
        return static_cast<uint32_t>(carry);
    }

    bool IsZero() const
    {
        for (const uint32_t part : limb)
            if (part) return false;
        return true;
    }
};

// Writes the digits of the integer part backwards from `end`; returns their number (at least one).
uint32_t PutDigitsBackwards(uint64_t value, char* end)
{
    const char* const start = end;
    for (; value > UINT32_MAX; value /= 10) *--end = static_cast<char>('0' + value % 10);
    uint32_t rest = static_cast<uint32_t>(value); // 32-bit divisions: the device has none in hardware
    do {
        *--end = static_cast<char>('0' + rest % 10);
    } while (rest /= 10);
    return static_cast<uint32_t>(start - end);
}

uint32_t PutDigitsBackwards(BigNumber& value, char* end)
{
    uint32_t count = 0;
    do {
        *--end = static_cast<char>('0' + value.DivideBy(10));
        ++count;
    } while (!value.IsZero());
    return count;
}

enum class Rest { BelowHalf, Half, AboveHalf };

// Digits of mantissa x 2^-shift, a value below 1, all of whose bits are among the first 60 after the point.
Rest PutSmallFraction(uint64_t fraction60, uint32_t precision, char* out)
{
    constexpr uint32_t Point = 60;
    constexpr uint64_t Mask = (uint64_t{1} << Point) - 1;
    for (uint32_t i = 0; i < precision; ++i) {
        fraction60 *= 10;
        out[i] = static_cast<char>('0' + (fraction60 >> Point));
        fraction60 &= Mask;
    }
    constexpr uint64_t Half = uint64_t{1} << (Point - 1);
    return fraction60 > Half ? Rest::AboveHalf : fraction60 == Half ? Rest::Half : Rest::BelowHalf;
}

// The same for fractions of any length; the point is above the top limb.
Rest PutLongFraction(BigNumber& fraction, uint32_t precision, char* out)
{
    for (uint32_t i = 0; i < precision; ++i) out[i] = static_cast<char>('0' + fraction.MultiplyBy(10));
    const uint32_t carry = fraction.MultiplyBy(2);
    if (!carry) return Rest::BelowHalf;
    return fraction.IsZero() ? Rest::Half : Rest::AboveHalf;
}

// Digits of a finite value that is not negative, point included, rounded half to even.
// `text` has room for MaxRealCharacters; the digits are at its end. Returns the number of characters.
uint32_t PutReal(double value, uint32_t precision, char* text)
{
    const uint64_t bits = std::bit_cast<uint64_t>(value);
    uint64_t mantissa = bits & ((uint64_t{1} << MantissaBits) - 1);
    int32_t exponent = static_cast<int32_t>(bits >> MantissaBits & 0x7FF);
    if (exponent)
        mantissa |= uint64_t{1} << MantissaBits;
    else
        exponent = 1;
    exponent -= ExponentBias; // value = mantissa * 2^exponent

    char* const fraction = text + MaxRealCharacters - precision;
    char* const integerEnd = precision ? fraction - 1 : fraction;
    uint32_t integerDigits;
    Rest rest = Rest::BelowHalf;
    if (exponent >= 0) {
        for (uint32_t i = 0; i < precision; ++i) fraction[i] = '0';
        if (exponent <= 11) {
            integerDigits = PutDigitsBackwards(mantissa << exponent, integerEnd);
        } else {
            BigNumber big;
            big.SetShifted(mantissa, static_cast<uint32_t>(exponent));
            integerDigits = PutDigitsBackwards(big, integerEnd);
        }
    } else {
        const uint32_t shift = static_cast<uint32_t>(-exponent);
        const uint64_t integer = shift < 64 ? mantissa >> shift : 0;
        integerDigits = PutDigitsBackwards(integer, integerEnd);
        const uint64_t below = shift < 64 ? mantissa & ((uint64_t{1} << shift) - 1) : mantissa;
        if (shift <= 60) {
            rest = PutSmallFraction(below << (60 - shift), precision, fraction);
        } else {
            BigNumber big;
            big.SetShifted(below, BigNumber::Limbs * 32 - shift);
            rest = PutLongFraction(big, precision, fraction);
        }
    }
    if (precision) fraction[-1] = '.';

    char* const last = precision ? fraction + precision - 1 : integerEnd - 1;
    if (rest == Rest::AboveHalf || (rest == Rest::Half && (*last - '0') % 2)) {
        char* digit = last;
        char* const first = integerEnd - integerDigits;
        for (;; --digit) {
            if (digit < first) {
                *digit = '1';
                ++integerDigits;
                break;
            }
            if (*digit == '.') continue;
            if (*digit != '9') {
                ++*digit;
                break;
            }
            *digit = '0';
        }
    }
    return integerDigits + (precision ? precision + 1 : 0);
}

// `count` characters with their sign, padded to the width.
template <typename Char>
void PutPadded(Output<Char>& out, const Conversion& conversion, bool negative, const char* digits,
               uint32_t count)
{
    const char sign = negative ? '-' : conversion.blank ? ' ' : '\0';
    const uint32_t used = count + (sign ? 1 : 0);
    const uint32_t padding = conversion.width > used ? conversion.width - used : 0;
    if (!conversion.zeros)
        for (uint32_t i = 0; i < padding; ++i) out.Put(' ');
    if (sign) out.Put(static_cast<Char>(sign));
    if (conversion.zeros)
        for (uint32_t i = 0; i < padding; ++i) out.Put('0');
    for (uint32_t i = 0; i < count; ++i) out.Put(static_cast<Char>(digits[i]));
}

template <typename Char> void PutInteger(Output<Char>& out, const Conversion& conversion, int64_t value)
{
    char digits[20];
    char* const end = digits + sizeof digits;
    const uint64_t magnitude =
        value < 0 ? uint64_t{0} - static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
    const uint32_t count = magnitude <= UINT32_MAX ? PutDigitsBackwards(magnitude, end) : 0;
    PutPadded(out, conversion, value < 0, end - count, count);
}

template <typename Char> void PutHexadecimal(Output<Char>& out, const Conversion& conversion, uint32_t value)
{
    char digits[8];
    uint32_t count = 0;
    do {
        digits[sizeof digits - ++count] = "0123456789ABCDEF"[value % 16];
    } while (value /= 16);
    PutPadded(out, conversion, false, digits + sizeof digits - count, count);
}

template <typename Char> void PutFloating(Output<Char>& out, Conversion conversion, double value)
{
    const bool negative = std::bit_cast<uint64_t>(value) >> 63;
    const double magnitude = negative ? -value : value;
    if (!(magnitude <= 1.7976931348623157e308)) {
        conversion.zeros = false;
        const bool infinite = magnitude > 0;
        PutPadded(out, conversion, negative && infinite, infinite ? "inf" : "nan", 3);
        return;
    }
    char text[MaxRealCharacters];
    const uint32_t count = PutReal(magnitude, conversion.precision, text);
    PutPadded(out, conversion, negative, text + MaxRealCharacters - count, count);
}

} // namespace

template <typename Char>
uint32_t FormatValues(Char* out, uint32_t capacity, const Char* format, const FormatValue<Char>* values)
{
    Output<Char> output{out, out + capacity - 1};
    while (*format) {
        if (*format != '%') {
            output.Put(*format++);
            continue;
        }
        ++format;
        Conversion conversion;
        for (; *format == '0' || *format == ' '; ++format)
            (*format == '0' ? conversion.zeros : conversion.blank) = true;
        for (; *format >= '0' && *format <= '9'; ++format)
            conversion.width = conversion.width * 10 + static_cast<uint32_t>(*format - '0');
        if (*format == '.') {
            conversion.precision = 0;
            for (++format; *format >= '0' && *format <= '9'; ++format)
                conversion.precision = conversion.precision * 10 + static_cast<uint32_t>(*format - '0');
            if (conversion.precision > MaxPrecision) conversion.precision = MaxPrecision;
        }
        switch (*format++) {
        case 'u':
        case 'd': PutInteger(output, conversion, values++->number); break;
        case 'X': PutHexadecimal(output, conversion, static_cast<uint32_t>(values++->number)); break;
        case 'c': output.Put(static_cast<Char>(values++->number)); break;
        case 'f': PutFloating(output, conversion, values++->real); break;
        case 's':
            for (const Char* text = values++->text; *text; ++text) output.Put(*text);
            break;
        default: output.Put('%'); break; // "%%"; nothing else passes the check
        }
    }
    *output.next = 0;
    return static_cast<uint32_t>(output.next - out);
}

template uint32_t FormatValues(char*, uint32_t, const char*, const FormatValue<char>*);
template uint32_t FormatValues(wchar_t*, uint32_t, const wchar_t*, const FormatValue<wchar_t>*);
