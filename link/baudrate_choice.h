// The line rates as the dialogs offer them. User-interface thread.
#pragma once

#include "platform/platform.h"

// Fills a list with the rates of BaudTable.
void FillBaudrates(HWND dialog, int control);

// The advice on which rates are safe.
void ShowBaudrateHelp();
