#include "sirf/dialogs/power_mask.h"

#include "resources/resource_ids.h"
#include "sirf/dialogs/command_dialog.h"

void ShowPowerMaskDialog()
{
    static constexpr SirfDialog Dialog = {DIALOG_SIRF_POWER_MASK, &PowerMaskLayout, CONTROL_POWER_GET,
                                          CONTROL_POWER_SET};
    ShowSirfDialog(Dialog);
}
