// SPDX-License-Identifier: MIT
#include "ui/fix_lines.h"

#include "ui/page_lines.h"

constexpr uint32_t LineUtc = 0, TimeOfDayColumn = 17;

void ShowUtcLine(const SYSTEMTIME& time)
{
    FormatTextLine(LineUtc, L" UTC: %04u-%02u-%02u %02u:%02u:%02u", time.wYear, time.wMonth, time.wDay,
                   time.wHour, time.wMinute, time.wSecond);
}

void ShowTimeOfDay(HWND dialog, int control)
{
    wchar_t line[TextLineCapacity];
    const uint32_t length = CopyTextLine(LineUtc, line);
    SetDlgItemTextW(dialog, control, line + (length < TimeOfDayColumn ? length : TimeOfDayColumn));
}

void ShowHdopLine(uint32_t line, double hdop)
{
    FormatTextLine(line, L" HDOP: %03.01f  ", hdop);
}

void ShowLatitudeLine(uint32_t line, double degrees, wchar_t hemisphere)
{
    FormatTextLine(line, L" Latitude: %09.07f \u00B0%c      ", degrees, hemisphere);
}

void ShowLongitudeLine(uint32_t line, double degrees, wchar_t hemisphere)
{
    FormatTextLine(line, L" Longitude: %09.07f \u00B0%c        ", degrees, hemisphere);
}

void ShowNorthingLine(uint32_t line, double metres)
{
    FormatTextLine(line, L" Northing: %0.2f m             ", metres);
}

void ShowEastingLine(uint32_t line, double metres)
{
    FormatTextLine(line, L" Easting: %0.2f m             ", metres);
}

void ShowAltitudeMslLine(uint32_t line, double metres)
{
    FormatTextLine(line, L" Altitude MSL: %04.02f m      ", metres);
}

void ShowSpeedLine(uint32_t line, double metresPerSecond)
{
    FormatTextLine(line, L" Speed: %04.02f m/s        ", metresPerSecond);
}

void ShowCourseLine(uint32_t line, double degrees)
{
    FormatTextLine(line, L" Course: %04.02f \u00B0        ", degrees);
}
