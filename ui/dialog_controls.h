// SPDX-License-Identifier: MIT
// Reading and filling a dialog's controls, the same in both layouts. User-interface thread.
#pragma once

#include <cstdint>
#include <span>

#include "platform/platform.h"

// ---- Lists --------------------------------------------------------------------------------------------

// Adds the entries behind those that a list has.
void FillList(HWND dialog, int control, std::span<const wchar_t* const> entries);

// Selects an entry; an index outside the list selects nothing.
void SelectListEntry(HWND dialog, int control, int32_t index);

// On keypad devices, whose list boxes show an entry though none is selected: selects the entry that is to be
// shown, so that it is what is sent. Elsewhere nothing: a list without a selection is empty there.
void SelectShownEntry(HWND dialog, int control, int32_t index);

// On keypad devices, whose list boxes show one entry at a time: lets the user leaf through a list. Elsewhere
// nothing, as other lists do not know the message.
void MakeListLeafable(HWND dialog, int control);

// ---- Numbers ------------------------------------------------------------------------------------------

// A control's text, of a list box the selected entry; empty where there is none or it does not fit.
constexpr uint32_t ControlTextCapacity = 256;
void ReadControlText(HWND dialog, int control, wchar_t (&text)[ControlTextCapacity]);

// The whole number that a control's text is, as a whole (text/numbers.h). False, with `value` untouched,
// where it is none of 32 bits.
bool ReadNumber(HWND dialog, int control, int32_t& value);

// ---- Boxes, buttons, edits ----------------------------------------------------------------------------

UINT GetCheck(HWND dialog, int control);             // BST_...
void SetCheck(HWND dialog, int control, UINT state); // BST_...
void EnableControl(HWND dialog, int control, bool enable);

// Numeric input on keypad devices; elsewhere nothing.
void UseNumericInput(HWND dialog, int control);
