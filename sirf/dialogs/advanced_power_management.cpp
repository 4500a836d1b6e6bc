#include "sirf/dialogs/advanced_power_management.h"

#include "resources/resource_ids.h"
#include "sirf/dialogs/command_dialog.h"

void ShowAdvancedPowerManagementDialog()
{
    static constexpr SirfDialog Dialog = {DIALOG_SIRF_ADVANCED_POWER_MANAGEMENT,
                                          &AdvancedPowerManagementLayout, CONTROL_APM_GET, CONTROL_APM_SET,
                                          SettingsPoll::NavigationParameters};
    ShowSirfDialog(Dialog);
}
