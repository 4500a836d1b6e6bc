// SPDX-License-Identifier: MIT
// The texts for commands that a receiver refuses (message id 12).
#include "text/copy.h"
#include "text/format.h"
#include "ui/error_boxes.h"

void WriteRefusal(uint8_t refused, uint8_t polled, wchar_t (&text)[RefusalCapacity])
{
    constexpr uint8_t PollParameters = 168, Sbas = 170;
    if (refused == PollParameters && polled == Sbas)
        CopyText(text, RefusalCapacity,
                 L"Get SBAS parameters not accepted. A likely reason is that it is not supported on XTrac or "
                 L"GSW3 firmware.");
    else if (refused == PollParameters)
        Format(text, L"Command 168 with parameter %u not accepted.", polled);
    else if (refused == Sbas)
        CopyText(text, RefusalCapacity,
                 L"Set SBAS parameters not accepted. A likely reason is that it is not supported on XTrac "
                 L"firmware.");
    else
        Format(text, L"Command %u\r\rCommand or parameter not accepted.", refused);
}
