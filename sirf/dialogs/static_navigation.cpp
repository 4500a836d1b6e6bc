#include "sirf/dialogs/static_navigation.h"

#include "resources/resource_ids.h"
#include "sirf/dialogs/command_dialog.h"

void ShowStaticNavigationDialog()
{
    static constexpr SirfDialog Dialog = {DIALOG_SIRF_STATIC_NAVIGATION, &StaticNavigationLayout,
                                          CONTROL_STATIC_NAVIGATION_GET, CONTROL_STATIC_NAVIGATION_SET};
    ShowSirfDialog(Dialog);
}
