#include "app/utc_line.h"

#include "app/text_view.h"

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
