#include "sirf/dialogs/initialize_data_source.h"

#include "resources/resource_ids.h"
#include "sirf/dialogs/command_dialog.h"
#include "sirf/frame_sender.h"
#include "ui/dialog_controls.h"
#include "ui/dialog_support.h"
#include "ui/error_boxes.h"

namespace
{

struct ResetOption {
    uint16_t control;
    uint8_t bits;
};
constexpr ResetOption ResetOptions[] = {
    {CONTROL_INIT_SNAP_START, 0x00},         {CONTROL_INIT_HOT_START, 0x40},
    {CONTROL_INIT_WARM_START_NO_INIT, 0x02}, {CONTROL_INIT_COLD_START, 0x04},
    {CONTROL_INIT_FACTORY_RESET, 0x08},      {CONTROL_INIT_SYSTEM_RESET, 0x88},
    {CONTROL_INIT_WARM_START_INIT, 0x03},
};

struct ResetBox {
    uint16_t control;
    uint8_t bit;
    const wchar_t* caption;
};
constexpr ResetBox ResetBoxes[] = {
    {CONTROL_INIT_NAVLIB, 0x10, L"NavLib"},
    {CONTROL_INIT_DEBUG, 0x20, L"Debug"},
    {CONTROL_INIT_CLEAR, 0x80, L"Clear"},
};

// Position, clock and time, which only a warm start with initialisation is given; the channels stand last.
constexpr uint32_t StartFieldCount = 6;

void EnableStartFields(HWND dialog, bool enable)
{
    for (const CommandField& field : InitializeDataSourceLayout.fields.first(StartFieldCount))
        EnableControl(dialog, field.control, enable);
}

void Open(HWND dialog)
{
    EnableStartFields(dialog, false);
    if (LayoutOffset()) return;
    for (const ResetBox& box : ResetBoxes) SetCheck(dialog, box.control, BST_INDETERMINATE);
}

void Press(HWND dialog, uint16_t button)
{
    for (const ResetOption& option : ResetOptions)
        if (option.control == button) EnableStartFields(dialog, button == CONTROL_INIT_WARM_START_INIT);
    if (button == CONTROL_INIT_SYSTEM_RESET) SetCheck(dialog, CONTROL_INIT_CLEAR, BST_CHECKED);
}

const ResetOption* ChosenOption(HWND dialog)
{
    for (const ResetOption& option : ResetOptions)
        if (GetCheck(dialog, option.control) == BST_CHECKED) return &option;
    InfoBox(L"Reset Configuration Bit Map", L"Choose reset type.");
    return nullptr;
}

bool AddBoxes(HWND dialog, uint8_t& bits)
{
    for (const ResetBox& box : ResetBoxes) {
        const UINT state = GetCheck(dialog, box.control);
        if (state == BST_INDETERMINATE) {
            InfoBox(box.caption, L"Indeterminate");
            return false;
        }
        if (state == BST_CHECKED) bits |= box.bit;
    }
    return true;
}

void Set(HWND dialog)
{
    const CommandLayout& layout = InitializeDataSourceLayout;
    SettingValues values = {};
    const ResetOption* const option = ChosenOption(dialog);
    if (!option) return;
    const uint32_t first = option->control == CONTROL_INIT_WARM_START_INIT ? 0 : StartFieldCount;
    if (!ReadFields(dialog, layout.fields.subspan(first), values.data() + first)) return;
    uint8_t configuration = option->bits;
    if (!AddBoxes(dialog, configuration)) return;
    uint8_t payload[MaxCommandLength];
    PackCommand(layout, values, payload);
    payload[ResetConfigurationOffset] = configuration;
    SirfSend(payload, layout.length);
    InitializeSent.store(1);
}

} // namespace

void ShowInitializeDataSourceDialog()
{
    static constexpr SirfDialog Dialog = {
        .number = DIALOG_SIRF_INITIALIZE_DATA_SOURCE,
        .layout = &InitializeDataSourceLayout,
        .getButton = CONTROL_INIT_GET,
        .setButton = CONTROL_INIT_SET,
        .open = Open,
        .press = Press,
        .set = Set,
        .pollsUnrecognised = true,
    };
    ShowSirfDialog(Dialog);
}
