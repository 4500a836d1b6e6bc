#include "nmea/dialogs/navigation_initialization_dialog.h"

#include "nmea/dialogs/command_dialog.h"
#include "resources/resource_ids.h"
#include "text/format.h"
#include "ui/dialog_controls.h"
#include "ui/dialog_support.h"
#include "ui/error_boxes.h"

namespace
{

struct StartField {
    int control;
    int32_t low, high;
    const wchar_t *caption, *refusal;
};

// What a warm start is given to start from, in the order of the command's fields.
constexpr StartField StartFields[] = {
    {CONTROL_NAVINIT_ECEF_X, -10000000, 10000000, L"ECEF X", L"Range -10000000 to 10000000 m"},
    {CONTROL_NAVINIT_ECEF_Y, -10000000, 10000000, L"ECEF Y", L"Range -10000000 to 10000000 m"},
    {CONTROL_NAVINIT_ECEF_Z, -10000000, 10000000, L"ECEF Z", L"Range -10000000 to 10000000 m"},
    {CONTROL_NAVINIT_CLOCK_OFFSET, 0, 1000000, L"Clock Offset", L"Range 0-1000000 Hz"},
    {CONTROL_NAVINIT_TIME_OF_WEEK, 0, 604800, L"Time of Week", L"Range 0-604800 s"},
    {CONTROL_NAVINIT_WEEK, 0, 10000, L"Week Number", L"Range 0-10000"},
};
constexpr StartField ChannelsField = {CONTROL_NAVINIT_CHANNELS, 1, 12, L"Channels", L"Range 1-12"};

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

bool ReadField(HWND dialog, const StartField& field, int32_t& value)
{
    return ReadNumberInRange(dialog, field.control, field.low, field.high, field.caption, field.refusal,
                             value);
}

void EnableStartFields(HWND dialog)
{
    const bool enable = IsChosen(dialog, CONTROL_NAVINIT_WARM_START_INIT);
    for (const StartField& field : StartFields) EnableControl(dialog, field.control, enable);
}

void Fill(HWND dialog)
{
    for (const StartField& field : StartFields) UseNumericInput(dialog, field.control);
    UseNumericInput(dialog, CONTROL_NAVINIT_CHANNELS);
    SetDlgItemTextW(dialog, CONTROL_NAVINIT_CHANNELS, L"12");
    SetCheck(dialog, CONTROL_NAVINIT_HOT_START, BST_CHECKED);
    EnableStartFields(dialog);
}

void PressSet(HWND dialog)
{
    constexpr uint32_t FieldCount = sizeof StartFields / sizeof StartFields[0];
    constexpr uint32_t HundredthsPerSecond = 100;
    const ResetType* const type = ChosenResetType(dialog);
    if (!type) {
        InfoBox(L"Reset Configuration", L"Choose reset type.");
        return;
    }
    int32_t value[FieldCount] = {}, channels;
    if (type->control == CONTROL_NAVINIT_WARM_START_INIT)
        for (uint32_t i = 0; i < FieldCount; ++i)
            if (!ReadField(dialog, StartFields[i], value[i])) return;
    if (!ReadField(dialog, ChannelsField, channels)) return;
    char body[96];
    Format(body, "PSRF101,%d,%d,%d,%u,%u,%u,%u,%u", value[0], value[1], value[2],
           static_cast<uint32_t>(value[3]), static_cast<uint32_t>(value[4]) * HundredthsPerSecond,
           static_cast<uint32_t>(value[5]), static_cast<uint32_t>(channels), type->configuration);
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
constexpr CommandDialog NavigationInitialization = {DialogKind::NavigationInitialization, Fill, Buttons};

INT_PTR CALLBACK NavigationInitializationProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    return HandleCommandDialog(NavigationInitialization, dialog, message, wParam, lParam);
}

} // namespace

void ShowNavigationInitializationDialog()
{
    ShowDialog(DIALOG_NMEA_NAVIGATION_INITIALIZATION, NavigationInitializationProcedure);
}
