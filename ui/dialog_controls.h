// SPDX-License-Identifier: MIT
// Reading and filling a dialog's controls, the same in both layouts. User-interface thread.
#pragma once

#include <cstdint>
#include <span>

#include "platform/platform.h"

// ---- Lists --------------------------------------------------------------------------------------------

// Adds entries at the end of a list.
void FillList(HWND dialog, int control, std::span<const wchar_t* const> entries);

// Selects an entry; an index outside the list selects nothing.
void SelectListEntry(HWND dialog, int control, int32_t index);

// On keypad devices list boxes show an entry even if none is selected. There this selects the entry that is
// shown, so that the shown entry is sent. Elsewhere it does nothing: a list without a selection is empty.
void SelectShownEntry(HWND dialog, int control, int32_t index);

// On keypad devices list boxes show one entry at a time; this lets the user page through a list. Elsewhere it
// does nothing, because other lists do not know the message.
void MakeListLeafable(HWND dialog, int control);

// ---- Numbers ------------------------------------------------------------------------------------------

// A control's text, or a list box's selected entry; empty if there is none or it does not fit.
constexpr uint32_t ControlTextCapacity = 256;
void ReadControlText(HWND dialog, int control, wchar_t (&text)[ControlTextCapacity]);

// Reads a whole number; the complete text must be the number (text/numbers.h). False, with `value` unchanged,
// if it is no number of 32 bits.
bool ReadNumber(HWND dialog, int control, int32_t& value);

// ---- Boxes, buttons, edits ----------------------------------------------------------------------------

UINT GetCheck(HWND dialog, int control);             // BST_...
void SetCheck(HWND dialog, int control, UINT state); // BST_...
void EnableControl(HWND dialog, int control, bool enable);

// Numeric input on keypad devices; elsewhere nothing.
void UseNumericInput(HWND dialog, int control);

// Leaves a narrow edit as much room for its text as there is: margins of one pixel.
void UseNarrowMargins(HWND dialog, int control);
