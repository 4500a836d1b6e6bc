// SPDX-License-Identifier: MIT
// The line rates as the dialogs offer them. User-interface thread.
#pragma once

#include "platform/platform.h"

// Fills a list with the rates of BaudTable.
void FillBaudrates(HWND dialog, int control);

// Index in BaudTable of the rate that a filled list stands for: what is typed in its edit if the table has
// it, else the selected entry; -1 when there is neither. Any thread.
int32_t ChosenBaudrate(HWND dialog, int control);

// The advice on which rates are safe.
void ShowBaudrateHelp();
