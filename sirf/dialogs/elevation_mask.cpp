#include "sirf/dialogs/elevation_mask.h"

#include "resources/resource_ids.h"
#include "sirf/dialogs/command_dialog.h"

void ShowElevationMaskDialog()
{
    static constexpr SirfDialog Dialog = {DIALOG_SIRF_ELEVATION_MASK, &ElevationMaskLayout,
                                          CONTROL_ELEVATION_GET, CONTROL_ELEVATION_SET};
    ShowSirfDialog(Dialog);
}
