// SPDX-License-Identifier: MIT
#include "nmea/dialogs/command_dialog.h"

#include "nmea/command_encoder.h"
#include "nmea/receiver_messages.h"

bool ShowNmeaDialog(uint16_t number)
{
    constexpr const Dialog* Dialogs[] = {&SetSerialPortDialog, &NavigationInitializationDialog,
                                         &NmeaMessageRateDialog, &DevelopmentDataDialog, &SelectDatumDialog};
    for (const Dialog* dialog : Dialogs)
        if (dialog->number == number) {
            OpenDialog(*dialog);
            return true;
        }
    return false;
}

void SendDialogCommand(const char* body)
{
    // Before the command: the first line of the answer may arrive before this thread runs again.
    ClearOnNextAppend.store(1);
    NmeaSend(body);
}
