#include "sirf/dialogs/set_message_rate.h"

#include "resources/resource_ids.h"
#include "sirf/dialogs/command_dialog.h"
#include "ui/dialog_controls.h"

namespace
{

void PrepareLists(HWND dialog)
{
    MakeListLeafable(dialog, CONTROL_RATE_MESSAGE_ID);
    MakeListLeafable(dialog, CONTROL_RATE_SECONDS);
}

} // namespace

void ShowSirfSetMessageRateDialog()
{
    static constexpr SirfDialog Dialog = {
        .number = DIALOG_SIRF_SET_MESSAGE_RATE,
        .layout = &SetMessageRateLayout,
        .getButton = 0,
        .setButton = CONTROL_RATE_SET,
        .poll = SettingsPoll::Nothing,
        .open = PrepareLists,
    };
    ShowSirfDialog(Dialog);
}
