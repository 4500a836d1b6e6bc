// SPDX-License-Identifier: MIT
// Fields that a person fills in, as rows of tables: a number, an entry of a list, a box. These routines
// convert a text to a field's value, check it, and write a value as text. They need no window, so any thread
// and any program can use them.
//
// A value is the number that a person reads, in units of the field's last digit: for a field with one decimal
// (DecimalsOf), 75 is "7.5". A list's value is the index of its entry; a box's value is 0 or 1.
#pragma once

#include <cstdint>
#include <span>

// How a control represents a number of the payload.
enum class FieldKind : uint8_t {
    Number,      // text: the number itself, typed or chosen from a list
    Tenths,      // text: a decimal number, sent in tenths
    Hundredths,  // text: a whole number, sent in hundredths
    FivePercent, // text: per cent, sent in steps of five
    List,        // index of the selected entry
    NamedNumber, // text: a number and its meaning; only the number is used
    Check,       // three-state box: 0 or 1; undecided is refused
};

struct CommandField {
    FieldKind kind;
    uint16_t control;
    uint8_t offset, width; // payload bytes, the message id at 0; big-endian
    int32_t low, high; // both included, in the control's unit; below zero: the receiver's number is signed
    const wchar_t* caption; // of the box that refuses all other values; then nothing is sent
    const wchar_t* refusal; // its text
    std::span<const wchar_t* const> entries = {}; // of a list
    bool (*accepts)(int32_t value) = nullptr;     // further condition, where low and high are not enough
    int32_t typedTimes = 1;                       // a dialog accepts this many times low and high
    bool keepsValue = false;                      // a text without any digit leaves the value as it was
};

// Seconds between two messages, as offered by lists; others can be typed.
inline constexpr const wchar_t* UpdateRateTexts[] = {L"0", L"1", L"2", L"5", L"10"};

// Make the rows of a list and of a box. Fields of commands without a payload have no place in it.
constexpr CommandField ListField(uint16_t control, uint8_t offset, const wchar_t* caption,
                                 std::span<const wchar_t* const> entries,
                                 const wchar_t* refusal = L"Bad selection")
{
    return {FieldKind::List, control, offset, 1, 0, static_cast<int32_t>(entries.size()) - 1,
            caption,         refusal, entries};
}

constexpr CommandField CheckField(uint16_t control, uint8_t offset, uint8_t width, const wchar_t* caption)
{
    return {FieldKind::Check, control, offset, width, 0, 1, caption, L"Indeterminate"};
}

// How strictly a value must match the field.
enum class Reading : uint8_t {
    Exact, // whole text, no more decimals than the field has, whole steps, the field's own range
    Typed, // as a dialog reads: decimals are rounded, steps rounded down, field.typedTimes as wide a range
};

uint32_t DecimalsOf(const CommandField& field); // digits after the point: 1 or 0
int32_t StepOf(const CommandField& field); // values are multiples of it: 5 of a per cent in fives, else 1

// field.low and field.high are in whole units. These are the same limits as values, both included, for
// Reading::Exact:
int64_t LowestValue(const CommandField& field);
int64_t HighestValue(const CommandField& field);

// True for a value in the field's range (for a list: with an entry). A receiver may report values outside it.
bool AcceptsValue(const CommandField& field, int64_t value, Reading reading = Reading::Exact);

// Reads a value from a text. False, with `value` unchanged, if the text is no number or if the field does not
// accept the value. For a list the text is the index of the entry, for a box it is 0 or 1; names for them are
// the caller's task. `Char` is char or wchar_t.
template <typename Char>
bool ParseValue(const CommandField& field, const Char* text, Reading reading, int64_t& value);

// Writes the value as text, with the field's decimals and a sign if it is negative: "-5.0". Returns the
// length.
constexpr uint32_t ValueTextCapacity = 24;
uint32_t WriteValue(const CommandField& field, int64_t value, wchar_t (&text)[ValueTextCapacity]);
