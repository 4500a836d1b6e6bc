#include "sirf/dialogs/set_message_rate.h"

#include "app/dialog_support.h"
#include "resources/resource_ids.h"
#include "sirf/dialogs/command_dialog.h"

namespace
{

// Keypad devices show one entry of a list box at a time; this lets the user leaf through it.
void MakeLeafable(HWND dialog)
{
    constexpr UINT SetListMode = 449;
    constexpr LPARAM Leaf = 2;
    if (!LayoutOffset()) return;
    SendDlgItemMessageW(dialog, CONTROL_RATE_MESSAGE_ID, SetListMode, 0, Leaf);
    SendDlgItemMessageW(dialog, CONTROL_RATE_SECONDS, SetListMode, 0, Leaf);
}

} // namespace

void ShowSirfSetMessageRateDialog()
{
    static constexpr SirfDialog Dialog = {
        .number = DIALOG_SIRF_SET_MESSAGE_RATE,
        .layout = &SetMessageRateLayout,
        .getButton = 0,
        .setButton = CONTROL_RATE_SET,
        .poll = SirfPoll::Nothing,
        .open = MakeLeafable,
    };
    ShowSirfDialog(Dialog);
}
