// SPDX-License-Identifier: MIT
// The line rates as the dialogs offer them. User-interface thread.
#pragma once

#include "platform/platform.h"

// Fills a list with the rates of BaudTable.
void FillBaudrates(HWND dialog, int control);

// Index in BaudTable of the rate that the user has chosen in a filled list: the rate typed in its edit if the
// table has it, otherwise the selected entry; -1 when there is neither. Any thread.
int32_t ChosenBaudrate(HWND dialog, int control);

// Shows the advice about safe rates.
void ShowBaudrateHelp();
