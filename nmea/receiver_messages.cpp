// SPDX-License-Identifier: MIT
#include "nmea/receiver_messages.h"

#include <cstring>
#include <cwchar>

#include "resources/resource_ids.h"
#include "text/copy.h"
#include "ui/active_dialog.h"

wchar_t ReceiverMessagesText[ReceiverMessagesCapacity];
std::atomic<uint8_t> ClearOnNextAppend{0};

void AppendReceiverMessage(const char* line)
{
    if (ClearOnNextAppend.load()) {
        ReceiverMessagesText[0] = 0;
        ClearOnNextAppend.store(0);
    }
    const size_t used = std::wcslen(ReceiverMessagesText), added = std::strlen(line);
    if (used + added + 2 >= ReceiverMessagesCapacity) return;
    WidenAsciiCopy(ReceiverMessagesText + used, line);
    WidenAsciiCopy(ReceiverMessagesText + used + added, "\r\n");
}

void ShowReceiverMessages()
{
    const DialogKind kind = ActiveDialogKind.load();
    if (kind < DialogKind::SetSerialPort || kind > DialogKind::SelectDatum) return;
    if (HWND dialog = OpenDialogOfKind(kind))
        SetDlgItemTextW(dialog, CONTROL_NMEA_GREY_BOX, ReceiverMessagesText);
}
