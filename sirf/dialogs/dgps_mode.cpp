#include "sirf/dialogs/dgps_mode.h"

#include "resources/resource_ids.h"
#include "sirf/dialogs/command_dialog.h"

void ShowDgpsModeDialog()
{
    static constexpr SirfDialog Dialog = {DIALOG_SIRF_DGPS_MODE, &DgpsModeLayout, CONTROL_DGPS_MODE_GET,
                                          CONTROL_DGPS_MODE_SET};
    ShowSirfDialog(Dialog);
}
