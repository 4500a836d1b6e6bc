#include "sirf/dialogs/sbas.h"

#include "resources/resource_ids.h"
#include "sirf/dialogs/command_dialog.h"
#include "sky/sky_plot.h"
#include "ui/dialog_controls.h"

namespace
{

void PrepareList(HWND dialog)
{
    MakeListLeafable(dialog, CONTROL_SBAS_PRN);
}

} // namespace

void ShowSbasDialog()
{
    static constexpr SirfDialog Dialog = {
        .number = DIALOG_SIRF_SBAS,
        .layout = &SbasLayout,
        .getButton = CONTROL_SBAS_GET,
        .setButton = CONTROL_SBAS_SET,
        .open = PrepareList,
        .draw = DrawSkyPlot,
    };
    ShowSirfDialog(Dialog);
}
