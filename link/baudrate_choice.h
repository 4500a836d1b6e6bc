// The line rates as the dialogs offer them. User-interface thread.
#pragma once

#include <cstdint>

#include "platform/platform.h"

// Fills a list with the rates of BaudTable.
void FillBaudrates(HWND dialog, int control);

// Index of a rate in bits/s in BaudTable, -1 when it is not there.
int32_t FindBaudrate(int64_t baud);

// The advice on which rates are safe.
void ShowBaudrateHelp();
