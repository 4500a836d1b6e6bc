#include "sirf/dialogs/low_power.h"

#include "resources/resource_ids.h"
#include "sirf/dialogs/command_dialog.h"

void ShowLowPowerDialog()
{
    static constexpr SirfDialog Dialog = {DIALOG_SIRF_LOW_POWER, &LowPowerLayout, CONTROL_LOW_POWER_GET,
                                          CONTROL_LOW_POWER_SET, SettingsPoll::NavigationParameters};
    ShowSirfDialog(Dialog);
}
