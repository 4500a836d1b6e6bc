// SPDX-License-Identifier: MIT
#include "link/baudrate_choice.h"

#include "link/link_state.h"
#include "ui/dialog_controls.h"
#include "ui/dialog_support.h"
#include "ui/error_boxes.h"

namespace
{

constexpr const wchar_t* BaudTexts[BaudCount] = {L"1200",  L"2400",  L"4800",  L"9600",
                                                 L"19200", L"38400", L"57600", L"115200"};

} // namespace

void FillBaudrates(HWND dialog, int control)
{
    FillList(dialog, control, BaudTexts);
}

int32_t ChosenBaudrate(HWND dialog, int control)
{
    int32_t number;
    if (ReadNumber(dialog, control, number) && FindBaudrate(number) >= 0) return FindBaudrate(number);
    const int32_t selected = GetListSelection(dialog, control);
    return IsBaudIndex(selected) ? selected : -1;
}

void ShowBaudrateHelp()
{
    InfoBox(
        L"Switching Baudrate",
        L"Switching the SiRF chip to another baudrate is dangerous on some devices. To get an indication of "
        L"a safe baudrate, go to NMEA, Navigation Initialization, execute a Hot Start, or power off/on, look "
        L"for a baudrate in the scrollable grey window. If Toravane detects a protocol only when the comm "
        L"port is opened with a specific baudrate it should be safe. Bluetooth devices usually support only "
        L"38400. SD-501/502 are unsafe.");
}
