#include "sirf/dialogs/mode_control.h"

#include "resources/resource_ids.h"
#include "sirf/dialogs/command_dialog.h"

void ShowModeControlDialog()
{
    static constexpr SirfDialog Dialog = {DIALOG_SIRF_MODE_CONTROL, &ModeControlLayout, CONTROL_MODE_GET,
                                          CONTROL_MODE_SET};
    ShowSirfDialog(Dialog);
}
