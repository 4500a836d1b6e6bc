// SPDX-License-Identifier: MIT
// Fields of a dialog, by their rows (text/fields.h): one way to prepare, read, show and enable the controls.
#pragma once

#include <cstdint>
#include <span>

#include "platform/platform.h"
#include "text/fields.h"

// Called before a dialog is published: fills lists, lets edits take numbers, and on touch screens and
// desktops makes boxes undecided until the receiver has answered.
void PrepareFields(HWND dialog, std::span<const CommandField> fields);

// Reads the fields in their order into the values. Shows the box of the first field that is not acceptable
// and returns false.
bool ReadFields(HWND dialog, std::span<const CommandField> fields, int64_t* values);

// Shows a value; an index that a list does not have selects nothing. Any thread.
void ShowField(HWND dialog, const CommandField& field, int64_t value);

void EnableFields(HWND dialog, std::span<const CommandField> fields, bool enable);
