// SPDX-License-Identifier: MIT
#include "sirf/dialogs/command_dialog.h"

#include "link/link_state.h"
#include "resources/resource_ids.h"
#include "sirf/frame_sender.h"
#include "ui/dialog_controls.h"
#include "ui/dialog_fields.h"

std::atomic<uint8_t> InitializeSent{0};

namespace
{

const CommandLayout* Layout = nullptr; // of the open dialog; modal, so there is one

void Poll()
{
    switch (Layout->poll) {
    case SettingsPoll::Settings: SendPollParameter(Layout->command); return;
    case SettingsPoll::NavigationParameters: SendPollNavigationParameters(); return;
    case SettingsPoll::Nothing: return;
    }
}

void Set(HWND dialog)
{
    SettingValues values;
    if (ReadFields(dialog, Layout->fields, values.data())) SendCommand(*Layout, values);
}

// ---- Dialogs that differ slightly from their layout ---------------------------------------------------

// This box is clear, not undecided, until the receiver has answered.
void ClearTrackSmoothing(HWND dialog)
{
    SetCheck(dialog, CONTROL_MODE_TRACK_SMOOTHING, BST_UNCHECKED);
}

constexpr int32_t EachSecond = 1; // index

void FillRates(HWND dialog)
{
    MakeListLeafable(dialog, CONTROL_RATE_MESSAGE_ID);
    MakeListLeafable(dialog, CONTROL_RATE_SECONDS);
    SelectShownEntry(dialog, CONTROL_RATE_MESSAGE_ID, 0);
    SelectShownEntry(dialog, CONTROL_RATE_SECONDS, EachSecond);
}

// Low Power polls the navigation parameters, on purpose: they contain two of its values.
void PollParameters(HWND)
{
    SendPollNavigationParameters();
}
void PollParametersUnderstood(HWND)
{
    if (ReceiverSpeaksSirf()) SendPollNavigationParameters();
}
constexpr DialogButton LowPowerButtons[] = {{CONTROL_LOW_POWER_GET, PollParameters},
                                            {CONTROL_LOW_POWER_SET, Set}};

constexpr Dialog ModeControlDialog = {
    .number = DIALOG_SIRF_MODE_CONTROL, .kind = DialogKind::ModeControl, .fill = ClearTrackSmoothing};
constexpr Dialog SetMessageRateDialog = {
    .number = DIALOG_SIRF_SET_MESSAGE_RATE, .kind = DialogKind::SirfSetMessageRate, .fill = FillRates};
constexpr Dialog LowPowerDialog = {.number = DIALOG_SIRF_LOW_POWER,
                                   .kind = DialogKind::LowPower,
                                   .buttons = LowPowerButtons,
                                   .begin = PollParametersUnderstood};

constexpr const Dialog* OwnDialogs[] = {
    &InitializeDataSourceDialog,
    &SwitchToNmeaDialog,
    &PollSoftwareVersionDialog,
    &ModeControlDialog,
    &TricklePowerDialog,
    &SetMessageRateDialog,
    &LowPowerDialog,
    &SbasDialog,
};

const Dialog* FindOwnDialog(uint16_t number)
{
    for (const Dialog* dialog : OwnDialogs)
        if (dialog->number == number) return dialog;
    return nullptr;
}

// Makes a dialog from its layout.
void OpenLayoutDialog(Dialog dialog)
{
    const DialogButton buttons[] = {{Layout->getButton, GetSettings}, {Layout->setButton, Set}};
    dialog.fields = Layout->fields;
    if (dialog.buttons.empty()) dialog.buttons = buttons;
    if (!dialog.begin) dialog.begin = PollUnderstood;
    OpenDialog(dialog);
}

} // namespace

bool ShowSirfDialog(uint16_t number)
{
    Layout = FindDialogLayout(number);
    const Dialog* const own = FindOwnDialog(number);
    if (!Layout && !own) return false;
    if (Layout)
        OpenLayoutDialog(own ? *own : Dialog{.number = number, .kind = Layout->kind});
    else
        OpenDialog(*own);
    return true;
}

void GetSettings(HWND)
{
    if (Layout->poll == SettingsPoll::Settings) PendingPollId.store(Layout->command);
    Poll();
}

void PollUnderstood(HWND)
{
    if (ReceiverSpeaksSirf()) Poll();
}

bool ReceiverSpeaksSirf()
{
    return ProtocolMode() & ProtocolSirf;
}

void SendCommand(const CommandLayout& layout, const SettingValues& values)
{
    uint8_t payload[MaxCommandLength];
    PackCommand(layout, values, payload);
    SirfSend(payload, layout.length);
}
