// SPDX-License-Identifier: MIT
#include "sirf/arrival_list.h"

#include <cstring>

#include "resources/resource_ids.h"
#include "text/format.h"
#include "ui/active_dialog.h"

namespace
{

constexpr uint8_t FirstRow = 1, LastRow = 13; // all message ids after the thirteenth share the last row

uint8_t SirfArrivalList[256]; // row of each message id, 0 none yet
uint8_t NextFreeRow = FirstRow;

bool IsListed(uint8_t messageId)
{
    switch (messageId) {
    case 6:
    case 11:
    case 12:
    case 14:
    case 15:
    case 18:
    case 19:
    case 43: return false;
    default: return true;
    }
}

} // namespace

void ClearArrivalList()
{
    std::memset(SirfArrivalList, 0, sizeof SirfArrivalList);
    NextFreeRow = FirstRow;
}

void ShowArrival(uint8_t messageId)
{
    HWND dialog = OpenDialogOfKind(DialogKind::SirfSetMessageRate);
    if (!dialog || !IsListed(messageId)) return;
    SYSTEMTIME now;
    GetLocalTime(&now);
    uint8_t& row = SirfArrivalList[messageId];
    if (!row) {
        row = NextFreeRow;
        if (NextFreeRow < LastRow) ++NextFreeRow;
    }
    wchar_t text[24];
    Format(text, L"%03u  %02u:%02u:%02u", messageId, now.wHour, now.wMinute, now.wSecond);
    SetDlgItemTextW(dialog, CONTROL_ARRIVAL_ROWS + row, text);
}
