#include "sirf/dialogs/dgps_source.h"

#include "resources/resource_ids.h"
#include "sirf/dialogs/command_dialog.h"

void ShowDgpsSourceDialog()
{
    static constexpr SirfDialog Dialog = {DIALOG_SIRF_DGPS_SOURCE, &DgpsSourceLayout, CONTROL_DGPS_SOURCE_GET,
                                          CONTROL_DGPS_SOURCE_SET};
    ShowSirfDialog(Dialog);
}
