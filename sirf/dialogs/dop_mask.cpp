#include "sirf/dialogs/dop_mask.h"

#include "resources/resource_ids.h"
#include "sirf/dialogs/command_dialog.h"

void ShowDopMaskDialog()
{
    static constexpr SirfDialog Dialog = {DIALOG_SIRF_DOP_MASK, &DopMaskLayout, CONTROL_DOP_GET,
                                          CONTROL_DOP_SET};
    ShowSirfDialog(Dialog);
}
