// The text page's first line, which both protocols share: the date and time of the latest fix. Reader thread.
#pragma once

#include "platform/platform.h"

void ShowUtcLine(const SYSTEMTIME& time);

// Puts the time of day, as the line shows it, into a dialog's control.
void ShowTimeOfDay(HWND dialog, int control);
