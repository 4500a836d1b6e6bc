// SPDX-License-Identifier: MIT
// Text from the printf formats of the program's text tables, bounded, and the same on every platform.
//
// Conversions: %u (unsigned), %d (signed), %X (unsigned, upper-case), %c (one character), %s (text of the
// same width as the format), %f (float or double) and %%. Numbers take flag '0' and a width, %d and %f flag
// ' ' as well, and %f a precision of at most 9; all with the meaning that they have for printf. The compiler
// checks each format, and the types of its values.
//
// %f rounds the exact value half to even; infinities and not-a-numbers read "inf", "-inf" and "nan".
#pragma once

#include <concepts>
#include <cstdint>
#include <type_traits>

// One value of a format, in the type that its conversion needs.
template <typename Char> struct FormatValue {
    FormatValue(std::unsigned_integral auto value) requires(sizeof(value) <= 4) : number(value) {}
    FormatValue(std::signed_integral auto value) requires(sizeof(value) <= 4) : number(value) {}
    FormatValue(std::floating_point auto value) : real(static_cast<double>(value)) {}
    FormatValue(const Char* value) : text(value) {}

    union {
        int64_t number; // %u %d %X %c
        double real;    // %f
        const Char* text;
    };
};

// Checks a format against the types of its values while the program is compiled.
template <typename Char, typename... Values> struct CheckedFormat {
    consteval CheckedFormat(const Char* format) : text(format)
    {
        const char kinds[] = {KindOf<Values>()..., '\0'};
        const char* kind = kinds;
        for (const Char* c = format; *c; ++c) {
            if (*c != '%') continue;
            ++c;
            if (*c == '%') continue;
            const Char* const flags = c;
            bool blank = false;
            for (; *c == '0' || *c == ' '; ++c) blank = blank || *c == ' ';
            while (*c >= '0' && *c <= '9') ++c;
            const bool isText = *c == 'c' || *c == 's';
            if (isText ? c != flags : blank && *c != 'd' && *c != 'f' && *c != '.') Mismatch();
            if (*c == '.') {
                ++c;
                while (*c == '0') ++c;
                if (*c >= '0' && *c <= '9') ++c;
                if (*c != 'f') Mismatch();
            }
            const char wanted = *kind++;
            const bool fits = *c == 'u' || *c == 'X' ? wanted == 'u'
                              : *c == 'c'            ? wanted == 'c'
                                                     : static_cast<char>(*c) == wanted;
            if (!wanted || !fits) Mismatch();
        }
        if (*kind) Mismatch();
    }

    const Char* text;

private:
    template <typename Value> static consteval char KindOf()
    {
        using Plain = std::decay_t<Value>;
        if constexpr (std::same_as<Plain, Char>)
            return 'c';
        else if constexpr (std::floating_point<Plain>)
            return 'f';
        else if constexpr (std::unsigned_integral<Plain>)
            return 'u';
        else if constexpr (std::signed_integral<Plain>)
            return 'd';
        else
            return 's';
    }
    static void Mismatch() {} // not a constant expression: a mismatch stops the compiler here
};

// Writes the text of `format` with its values into `out`, cut at `capacity` - 1 characters, and terminates
// it. Returns the number of characters written, the terminator not counted. `capacity` is at least 1.
template <typename Char>
uint32_t FormatValues(Char* out, uint32_t capacity, const Char* format, const FormatValue<Char>* values);

// The same with the values as arguments, into an array.
template <typename Char, uint32_t Capacity, typename... Values>
uint32_t Format(Char (&out)[Capacity], std::type_identity_t<CheckedFormat<Char, Values...>> format,
                const Values&... values)
{
    const FormatValue<Char> list[] = {FormatValue<Char>(values)..., FormatValue<Char>(0u)};
    return FormatValues(out, Capacity, format.text, list);
}

// The same; appends to the text in `out`.
template <typename Char, uint32_t Capacity, typename... Values>
uint32_t AppendFormat(Char (&out)[Capacity], std::type_identity_t<CheckedFormat<Char, Values...>> format,
                      const Values&... values)
{
    uint32_t length = 0;
    while (length < Capacity - 1 && out[length]) ++length;
    const FormatValue<Char> list[] = {FormatValue<Char>(values)..., FormatValue<Char>(0u)};
    return length + FormatValues(out + length, Capacity - length, format.text, list);
}
