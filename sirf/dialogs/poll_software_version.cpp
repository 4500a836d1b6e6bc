#include "sirf/dialogs/poll_software_version.h"

#include "resources/resource_ids.h"
#include "sirf/dialogs/command_dialog.h"
#include "sirf/frame_sender.h"
#include "ui/active_dialog.h"
#include "ui/dialog_controls.h"
#include "ui/dialog_support.h"

namespace
{

INT_PTR CALLBACK PollSoftwareVersionProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITDIALOG) {
        InitDialogCommon(dialog);
        PublishDialog(DialogKind::PollSoftwareVersion, dialog);
        if (ReceiverSpeaksSirf()) SendPollSoftwareVersion();
        return TRUE;
    }
    uint16_t button;
    if (IsClick(message, wParam, button) && button == CONTROL_SOFTWARE_VERSION_GET) SendPollSoftwareVersion();
    return HandleCommonMessages(dialog, message, wParam, lParam);
}

} // namespace

void ShowPollSoftwareVersionDialog()
{
    ShowDialog(DIALOG_SIRF_POLL_SOFTWARE_VERSION, PollSoftwareVersionProcedure);
}
