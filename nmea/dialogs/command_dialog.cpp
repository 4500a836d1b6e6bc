#include "nmea/dialogs/command_dialog.h"

#include "nmea/command_encoder.h"
#include "nmea/receiver_messages.h"
#include "ui/dialog_controls.h"
#include "ui/dialog_support.h"

INT_PTR HandleCommandDialog(const CommandDialog& description, HWND dialog, UINT message, WPARAM wParam,
                            LPARAM lParam)
{
    if (message == WM_INITDIALOG) {
        PublishDialog(description.kind, dialog);
        InitDialogCommon(dialog);
        description.fill(dialog);
        return TRUE;
    }
    if (message == WM_COMMAND && HIWORD(wParam) == BN_CLICKED)
        for (const DialogButton& button : description.buttons)
            if (button.control == LOWORD(wParam)) {
                button.press(dialog);
                return TRUE;
            }
    return HandleCommonMessages(dialog, message, wParam, lParam);
}

void SendDialogCommand(const char* body)
{
    // Before the command: the answer's first line may be there before this thread runs again.
    ClearOnNextAppend.store(1);
    NmeaSend(body);
}
