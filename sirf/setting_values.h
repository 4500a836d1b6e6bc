// SPDX-License-Identifier: MIT
// The receiver's settings as values (text/fields.h), by the rows of sirf/command_layouts.h alone: into a
// command, and out of an answer. No window and no port, so any thread and any program.
#pragma once

#include <array>
#include <cstdint>

#include "sirf/command_layouts.h"

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
