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

// On keypad devices, whose list boxes show one entry at a time: lets the user leaf through a list. Elsewhere
// nothing, as other lists do not know the message.
void MakeListLeafable(HWND dialog, int control);

// ---- Numbers ------------------------------------------------------------------------------------------

// A control's text, cut to its room; of a list box the selected entry.
constexpr uint32_t ControlTextCapacity = 256;
void ReadControlText(HWND dialog, int control, wchar_t (&text)[ControlTextCapacity]);

// The whole number at the start of a control's text: blanks, a sign, digits; what stands behind is ignored.
// Of a list box the selected entry is the text. False, with `value` untouched, when no number of 32 bits
// stands there.
bool ReadNumber(HWND dialog, int control, int32_t& value);

// The same if it lies in low..high, both included; otherwise shows `refusal` under `caption` and returns
// false.
bool ReadNumberInRange(HWND dialog, int control, int32_t low, int32_t high, const wchar_t* caption,
                       const wchar_t* refusal, int32_t& value);

// The decimal number at the start of the first 20 characters of such a text, 0 where there is none.
double ReadDecimal(HWND dialog, int control);

// ---- Boxes, buttons, edits ----------------------------------------------------------------------------

UINT GetCheck(HWND dialog, int control);             // BST_...
void SetCheck(HWND dialog, int control, UINT state); // BST_...
void EnableControl(HWND dialog, int control, bool enable);

// Numeric input on keypad devices; elsewhere nothing.
void UseNumericInput(HWND dialog, int control);

// ---- Life of a dialog ---------------------------------------------------------------------------------

// What every dialog does with the messages that are not its own: OK and Cancel end it, it scrolls to where
// the focus goes, the Back key goes to the shell, its destruction withdraws it. Returns the dialog
// procedure's answer.
INT_PTR HandleCommonMessages(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
