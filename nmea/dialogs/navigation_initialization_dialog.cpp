// SPDX-License-Identifier: MIT
#include <array>

#include "nmea/dialogs/command_dialog.h"
#include "resources/resource_ids.h"
#include "sirf/start_fields.h"
#include "text/format.h"
#include "ui/dialog_controls.h"
#include "ui/dialog_fields.h"
#include "ui/error_boxes.h"

namespace
{

constexpr std::array Fields = StartFields(CONTROL_NAVINIT_ECEF_X);

struct ResetType {
    int control;
    uint32_t configuration;
};
constexpr ResetType ResetTypes[] = {
    {CONTROL_NAVINIT_SNAP_START, 0},         {CONTROL_NAVINIT_HOT_START, 1},
    {CONTROL_NAVINIT_WARM_START_NO_INIT, 2}, {CONTROL_NAVINIT_COLD_START, 4},
    {CONTROL_NAVINIT_FACTORY_RESET, 8},      {CONTROL_NAVINIT_WARM_START_INIT, 3},
};

bool IsChosen(HWND dialog, int control)
{
    return GetCheck(dialog, control) == BST_CHECKED;
}

const ResetType* ChosenResetType(HWND dialog)
{
    for (const ResetType& type : ResetTypes)
        if (IsChosen(dialog, type.control)) return &type;
    return nullptr;
}

void EnableStartFields(HWND dialog)
{
    EnableFields(dialog, std::span(Fields).first(StartValueCount),
                 IsChosen(dialog, CONTROL_NAVINIT_WARM_START_INIT));
}

void Fill(HWND dialog)
{
    SetDlgItemTextW(dialog, CONTROL_NAVINIT_CHANNELS, L"12");
    SetCheck(dialog, CONTROL_NAVINIT_HOT_START, BST_CHECKED);
    EnableStartFields(dialog);
}

void PressSet(HWND dialog)
{
    constexpr uint32_t HundredthsPerSecond = 100;
    const ResetType* const type = ChosenResetType(dialog);
    if (!type) {
        InfoBox(L"Reset Configuration", L"Choose reset type.");
        return;
    }
    int64_t values[StartFieldCount] = {};
    const uint32_t first = type->control == CONTROL_NAVINIT_WARM_START_INIT ? 0 : StartValueCount;
    if (!ReadFields(dialog, std::span(Fields).subspan(first), values + first)) return;
    int32_t value[StartFieldCount];
    for (uint32_t i = 0; i < StartFieldCount; ++i) value[i] = static_cast<int32_t>(values[i]);
    char body[96];
    Format(body, "PSRF101,%d,%d,%d,%d,%u,%d,%d,%u", value[0], value[1], value[2], value[3],
           static_cast<uint32_t>(value[4]) * HundredthsPerSecond, value[5], value[6], type->configuration);
    SendDialogCommand(body);
}

constexpr DialogButton Buttons[] = {
    {CONTROL_NAVINIT_SET, PressSet},
    {CONTROL_NAVINIT_SNAP_START, EnableStartFields},
    {CONTROL_NAVINIT_HOT_START, EnableStartFields},
    {CONTROL_NAVINIT_WARM_START_INIT, EnableStartFields},
    {CONTROL_NAVINIT_WARM_START_NO_INIT, EnableStartFields},
    {CONTROL_NAVINIT_COLD_START, EnableStartFields},
    {CONTROL_NAVINIT_FACTORY_RESET, EnableStartFields},
};

} // namespace

constexpr Dialog NavigationInitializationDialog = {
    .number = DIALOG_NMEA_NAVIGATION_INITIALIZATION,
    .kind = DialogKind::NavigationInitialization,
    .fields = Fields,
    .buttons = Buttons,
    .fill = Fill,
};
