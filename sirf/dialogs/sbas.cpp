#include "sirf/dialogs/sbas.h"

#include "resources/resource_ids.h"
#include "sirf/dialogs/command_dialog.h"
#include "sirf/frame_sender.h"
#include "sky/sky_plot.h"
#include "ui/dialog_controls.h"

namespace
{

void PrepareList(HWND dialog)
{
    MakeListLeafable(dialog, CONTROL_SBAS_PRN);
}

// The satellite's entry becomes its number, and a flag says that there is one.
void Set(HWND dialog)
{
    constexpr uint32_t Prn = 1, Flags = 3; // payload bytes
    constexpr uint8_t PrnIsChosen = 0x08;
    uint8_t payload[MaxCommandLength] = {SbasLayout.command};
    if (!PackFields(dialog, SbasLayout.fields, payload)) return;
    if (payload[Prn]) {
        payload[Prn] = static_cast<uint8_t>(payload[Prn] + SbasEntryToPrn);
        payload[Flags] |= PrnIsChosen;
    }
    SirfSend(payload, SbasLayout.length);
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
        .set = Set,
        .draw = DrawSkyPlot,
    };
    ShowSirfDialog(Dialog);
}
