// SPDX-License-Identifier: MIT
// Lines of the text page that both protocols show; each protocol has its own places for them. Most formats
// end with blanks, so that a shorter new value covers the end of a longer one on screens that do not erase.
// Reader thread.
#pragma once

#include <cstdint>

#include "platform/platform.h"

// The first line of both pages: date and time of the latest fix.
void ShowUtcLine(const SYSTEMTIME& time);

// Shows the time of day in a dialog's control, in the form of that line.
void ShowTimeOfDay(HWND dialog, int control);

void ShowHdopLine(uint32_t line, double hdop);
void ShowLatitudeLine(uint32_t line, double degrees, wchar_t hemisphere); // degrees without a sign
void ShowLongitudeLine(uint32_t line, double degrees, wchar_t hemisphere);
void ShowNorthingLine(uint32_t line, double metres);
void ShowEastingLine(uint32_t line, double metres);
void ShowAltitudeMslLine(uint32_t line, double metres);
void ShowSpeedLine(uint32_t line, double metresPerSecond);
void ShowCourseLine(uint32_t line, double degrees);
