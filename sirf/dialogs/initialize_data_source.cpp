// SPDX-License-Identifier: MIT
// Initialize Data Source: restarts the receiver in one of seven ways, with or without a position and time to
// begin with (message id 128).
#include <iterator>

#include "resources/resource_ids.h"
#include "sirf/dialogs/command_dialog.h"
#include "sirf/frame_sender.h"
#include "sirf/start_fields.h"
#include "ui/dialog_controls.h"
#include "ui/dialog_fields.h"
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

constexpr CommandField ResetBoxes[] = {
    CheckField(CONTROL_INIT_NAVLIB, 0, 0, L"NavLib"),
    CheckField(CONTROL_INIT_DEBUG, 0, 0, L"Debug"),
    CheckField(CONTROL_INIT_CLEAR, 0, 0, L"Clear"),
};
constexpr ResetOption ResetBoxBits[] = {
    {CONTROL_INIT_NAVLIB, 0x10}, {CONTROL_INIT_DEBUG, 0x20}, {CONTROL_INIT_CLEAR, 0x80}};

void EnableStartFields(HWND dialog)
{
    EnableFields(dialog, InitializeDataSourceLayout.fields.first(StartValueCount),
                 GetCheck(dialog, CONTROL_INIT_WARM_START_INIT) == BST_CHECKED);
}

void Fill(HWND dialog)
{
    EnableStartFields(dialog);
    PrepareFields(dialog, ResetBoxes);
}

void PressSystemReset(HWND dialog)
{
    EnableStartFields(dialog);
    SetCheck(dialog, CONTROL_INIT_CLEAR, BST_CHECKED);
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
    int64_t ticked[std::size(ResetBoxes)];
    if (!ReadFields(dialog, ResetBoxes, ticked)) return false;
    for (size_t i = 0; i < std::size(ResetBoxes); ++i)
        if (ticked[i]) bits |= ResetBoxBits[i].bits;
    return true;
}

void Set(HWND dialog)
{
    const CommandLayout& layout = InitializeDataSourceLayout;
    SettingValues values = {};
    const ResetOption* const option = ChosenOption(dialog);
    if (!option) return;
    const uint32_t first = option->control == CONTROL_INIT_WARM_START_INIT ? 0 : StartValueCount;
    if (!ReadFields(dialog, layout.fields.subspan(first), values.data() + first)) return;
    uint8_t configuration = option->bits;
    if (!AddBoxes(dialog, configuration)) return;
    uint8_t payload[MaxCommandLength];
    PackCommand(layout, values, payload);
    payload[ResetConfigurationOffset] = configuration;
    SirfSend(payload, layout.length);
    InitializeSent.store(1);
}

// Polls even if no protocol has been recognised.
void PollSettings(HWND)
{
    SendPollParameter(InitializeDataSourceLayout.command);
}

constexpr DialogButton Buttons[] = {
    {CONTROL_INIT_GET, GetSettings},
    {CONTROL_INIT_SET, Set},
    {CONTROL_INIT_SNAP_START, EnableStartFields},
    {CONTROL_INIT_HOT_START, EnableStartFields},
    {CONTROL_INIT_WARM_START_INIT, EnableStartFields},
    {CONTROL_INIT_WARM_START_NO_INIT, EnableStartFields},
    {CONTROL_INIT_COLD_START, EnableStartFields},
    {CONTROL_INIT_FACTORY_RESET, EnableStartFields},
    {CONTROL_INIT_SYSTEM_RESET, PressSystemReset},
};

} // namespace

constexpr Dialog InitializeDataSourceDialog = {
    .number = DIALOG_SIRF_INITIALIZE_DATA_SOURCE,
    .kind = DialogKind::InitializeDataSource,
    .buttons = Buttons,
    .fill = Fill,
    .begin = PollSettings,
};
