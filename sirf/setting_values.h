// SPDX-License-Identifier: MIT
// Converts the receiver's settings, by the rows of sirf/command_layouts.h: from values (text/fields.h) to a
// command, and from an answer to values. It needs no window and no port, so any thread and program can use
// it.
#pragma once

#include <array>
#include <cstdint>

#include "sirf/command_layouts.h"

// A value for each of a layout's fields, in the order of its rows; further ones are ignored.
using SettingValues = std::array<int64_t, MaxCommandFields>;

// Writes the command's payload, message id first, layout.length bytes. Bytes without a field are 0. The
// values should be acceptable for their fields; others are cut to the field's width.
void PackCommand(const CommandLayout& layout, const SettingValues& values,
                 uint8_t (&payload)[MaxCommandLength]);

// Writes the poll that the receiver answers with a layout's settings. Returns its length, or 0 if the
// receiver never reports them.
constexpr uint32_t PollLength = 2;
uint32_t PackPoll(const CommandLayout& layout, uint8_t (&payload)[PollLength]);

// The way to read numbers of fields with a negative range.
enum class Signs : uint8_t {
    Kept,
    Dropped, // as dialogs show them, on purpose: -5.0 becomes 6548.6
};

// Reads the values of a layout's settings from a received message (payload, id first): from message 43 with
// the layout's command in byte 1, or from message 19 if the layout's settings are reported there (53). False,
// with `values` unchanged, for other messages, for a message that is too short, and for a message 19 without
// power management.
bool ReadAnswer(const CommandLayout& layout, const uint8_t* message, uint32_t length, Signs signs,
                SettingValues& values);
