// SPDX-License-Identifier: MIT
// Trickle Power: the share of time in which the receiver is on (message id 151), with the measured values.
#include "resources/resource_ids.h"
#include "sirf/dialogs/command_dialog.h"
#include "text/format.h"
#include "ui/dialog_fields.h"
#include "ui/error_boxes.h"

namespace
{

// A receiver that is on only for a short moment every few seconds will miss most commands, also the one that
// would wake it up. So the user is asked first.
bool UserAcceptsPeriod(const SettingValues& values)
{
    constexpr float LongSeconds = 10.0f;
    const uint32_t dutyTenths = static_cast<uint32_t>(values[1]), onTimeMs = static_cast<uint32_t>(values[2]);
    if (dutyTenths == 0) return true;
    const float seconds = static_cast<float>(onTimeMs) / static_cast<float>(dutyTenths); // ms by 0.1 %
    if (seconds < LongSeconds) return true;
    wchar_t text[192];
    Format(text,
           L"GPS will be on for only %u milliseconds every %0.0f seconds."
           L" It may be VERY difficult to communicate with it. Try anyway?",
           onTimeMs, seconds);
    return MessageBoxW(BoxOwner(), text, L"Warning", MB_OKCANCEL | MB_DEFBUTTON2 | MB_ICONEXCLAMATION) ==
           IDOK;
}

void Set(HWND dialog)
{
    const CommandLayout& layout = TricklePowerLayout;
    SettingValues values;
    if (ReadFields(dialog, layout.fields, values.data()) && UserAcceptsPeriod(values))
        SendCommand(layout, values);
}

constexpr DialogButton Buttons[] = {{CONTROL_TRICKLE_GET, GetSettings}, {CONTROL_TRICKLE_SET, Set}};

} // namespace

constexpr Dialog TricklePowerDialog = {
    .number = DIALOG_SIRF_TRICKLE_POWER, .kind = DialogKind::TricklePower, .buttons = Buttons};
