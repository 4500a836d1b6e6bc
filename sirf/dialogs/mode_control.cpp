#include "sirf/dialogs/mode_control.h"

#include "resources/resource_ids.h"
#include "sirf/dialogs/command_dialog.h"
#include "ui/dialog_controls.h"

namespace
{

// This one box is off, not undecided, until the receiver has answered.
void ClearTrackSmoothing(HWND dialog)
{
    SetCheck(dialog, CONTROL_MODE_TRACK_SMOOTHING, BST_UNCHECKED);
}

} // namespace

void ShowModeControlDialog()
{
    static constexpr SirfDialog Dialog = {
        .number = DIALOG_SIRF_MODE_CONTROL,
        .layout = &ModeControlLayout,
        .getButton = CONTROL_MODE_GET,
        .setButton = CONTROL_MODE_SET,
        .open = ClearTrackSmoothing,
    };
    ShowSirfDialog(Dialog);
}
