// Values of the receiver's settings, by the rows of sirf/command_layouts.h alone: out of text and into text,
// held against their range, into a command and out of an answer. No window and no port, so any thread and any
// program.
//
// A value is the number that a person reads, counted in the field's last digit: of a field with one decimal
// (DecimalsOf) 75 is "7.5". A list's value is the index of its entry, a box's 0 or 1.
#pragma once

#include <array>
#include <cstdint>

#include "sirf/command_layouts.h"

// ---- One field ----------------------------------------------------------------------------------------

// How closely a value must be what the field can hold.
enum class Reading : uint8_t {
    Exact, // whole text, no more decimals than the field has, whole steps, the field's own range
    Typed, // as a dialog reads: decimals are rounded, steps rounded down, field.typedTimes as wide a range
};

uint32_t DecimalsOf(const CommandField& field); // digits after the point: 1 or 0
int32_t StepOf(const CommandField& field); // values are multiples of it: 5 of a per cent in fives, else 1

// field.low and field.high count whole units. The same as values, both included, for Reading::Exact:
int64_t LowestValue(const CommandField& field);
int64_t HighestValue(const CommandField& field);

// True for a value in the field's range (of a list: with an entry). What a receiver reports may lie outside.
bool AcceptsValue(const CommandField& field, int64_t value, Reading reading = Reading::Exact);

// The value that a text names; false, with `value` untouched, for a text that is no number or a value that
// the field does not accept. A list's entries and a box's states have names that are their user's matter: for
// them the text is the index, or 0 or 1. `Char` is char or wchar_t.
template <typename Char>
bool ParseValue(const CommandField& field, const Char* text, Reading reading, int64_t& value);

// The value as text, with the field's decimals and a sign where it is below zero: "-5.0". Returns its length.
constexpr uint32_t ValueTextCapacity = 24;
uint32_t WriteValue(const CommandField& field, int64_t value, wchar_t (&text)[ValueTextCapacity]);

// ---- A command with all its fields --------------------------------------------------------------------

// Of each of a layout's fields, in the order of its rows; further ones are not looked at.
using SettingValues = std::array<int64_t, MaxCommandFields>;

// The command's payload, message id first, layout.length bytes. Bytes without a field are 0. The values are
// expected to be accepted; others are cut to their field's width.
void PackCommand(const CommandLayout& layout, const SettingValues& values,
                 uint8_t (&payload)[MaxCommandLength]);

// The poll that the receiver answers with a layout's settings; its length, or 0 where it never reports them.
constexpr uint32_t PollLength = 2;
uint32_t PackPoll(const CommandLayout& layout, uint8_t (&payload)[PollLength]);

// How numbers are read whose field's range goes below zero.
enum class Signs : uint8_t {
    Kept,
    Dropped, // as dialogs show them, on purpose: -5.0 reads 6548.6
};

// The values of a layout's settings in a received message (payload, id first): of 43 with the layout's
// command in byte 1, or of 19 where the layout's settings are reported there (53). False, with `values`
// untouched, for any other message, for one that is too short, and for a 19 that does not report power
// management.
bool ReadAnswer(const CommandLayout& layout, const uint8_t* message, uint32_t length, Signs signs,
                SettingValues& values);
