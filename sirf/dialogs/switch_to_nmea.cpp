// SPDX-License-Identifier: MIT
// Switch to NMEA Protocol: makes the receiver leave SiRF binary (message id 129), and the program's port
// follow it to the new rate.
#include <array>
#include <iterator>

#include "link/baudrate_choice.h"
#include "link/link_state.h"
#include "link/serial_port.h"
#include "resources/resource_ids.h"
#include "settings/settings_store.h"
#include "sirf/command_layouts.h"
#include "sirf/dialogs/command_dialog.h"
#include "sirf/switch_to_nmea_command.h"
#include "text/numbers.h"
#include "ui/dialog_controls.h"
#include "ui/dialog_fields.h"
#include "ui/dialog_support.h"
#include "ui/error_boxes.h"

namespace
{

consteval std::array<CommandField, NmeaRateCount> RateFields()
{
    constexpr const wchar_t* Captions[NmeaRateCount] = {
        L"GGA Update Rate", L"GLL Update Rate",    L"GSA Update Rate", L"GSV Update Rate",
        L"RMC Update Rate", L"VTG Update Rate",    L"MSS Update Rate", L"User 8 Update Rate",
        L"ZDA Update Rate", L"User 10 Update Rate"};
    std::array<CommandField, NmeaRateCount> fields = {};
    for (uint32_t i = 0; i < NmeaRateCount; ++i) {
        fields[i] = {FieldKind::Number,
                     static_cast<uint16_t>(CONTROL_TO_NMEA_RATES + i),
                     0,
                     0,
                     0,
                     255,
                     Captions[i],
                     L"Range 0-255 s",
                     UpdateRateTexts};
        fields[i].keepsValue = true;
    }
    return fields;
}
constexpr std::array Rates = RateFields();

uint8_t Seconds[NmeaRateCount]; // between two sentences of each kind, as stored or last accepted

// A rate that is not in the list is shown in the list's edit, if it has one.
void ShowRate(HWND dialog, int control, uint8_t seconds)
{
    for (uint32_t i = 0; i < std::size(UpdateRateTexts); ++i)
        if (ParseInteger(UpdateRateTexts[i]) == seconds) {
            SelectListEntry(dialog, control, static_cast<int32_t>(i));
            return;
        }
    SetDlgItemInt(dialog, control, seconds, FALSE);
}

// Proposes the rate of the last switch, otherwise the port's rate. The slowest and the fastest rate are not
// proposed.
int32_t ProposedBaudrate()
{
    constexpr int32_t Slowest = 2, Fastest = 6;
    const int32_t stored = SettingsGetDword(SettingNmeaBaudrate, -1);
    if (IsBaudIndex(stored)) return stored;
    const int32_t current = FindBaudrate(PortDcb.BaudRate);
    return current >= Slowest && current <= Fastest ? current : -1;
}

// The first entry of a list that cannot be empty: the rate of the port, otherwise the usual one of NMEA.
int32_t RateToShow()
{
    constexpr int32_t Usual = 2; // 4800
    const int32_t current = FindBaudrate(PortDcb.BaudRate);
    return IsBaudIndex(current) ? current : Usual;
}

void Fill(HWND dialog)
{
    LoadNmeaRates(Seconds);
    for (uint32_t i = 0; i < NmeaRateCount; ++i) {
        ShowRate(dialog, Rates[i].control, Seconds[i]);
    }
    FillBaudrates(dialog, CONTROL_TO_NMEA_BAUDRATE);
    const int32_t proposed = ProposedBaudrate();
    if (proposed >= 0)
        SelectListEntry(dialog, CONTROL_TO_NMEA_BAUDRATE, proposed);
    else
        SelectShownEntry(dialog, CONTROL_TO_NMEA_BAUDRATE, RateToShow());
    SetCheck(dialog, CONTROL_TO_NMEA_CHECKSUMS, BST_CHECKED);
    if (!LayoutOffset()) SetCheck(dialog, CONTROL_TO_NMEA_DEBUG, BST_INDETERMINATE);
    EnableControl(dialog, CONTROL_TO_NMEA_FOLLOW, false);
}

// Accepted rates are kept, also when a later one is refused.
bool ReadRates(HWND dialog)
{
    int64_t seconds[NmeaRateCount];
    for (uint32_t i = 0; i < NmeaRateCount; ++i) seconds[i] = Seconds[i];
    const bool accepted = ReadFields(dialog, Rates, seconds);
    for (uint32_t i = 0; i < NmeaRateCount; ++i) Seconds[i] = static_cast<uint8_t>(seconds[i]);
    return accepted;
}

// A typed rate is used if the program knows it; otherwise the selected entry is used.
bool ReadBaudrate(HWND dialog, uint32_t& baud)
{
    const int32_t index = ChosenBaudrate(dialog, CONTROL_TO_NMEA_BAUDRATE);
    if (index < 0) {
        InfoBox(L"Baudrate", L"Select a baudrate.\n\nSee Help for more information.");
        return false;
    }
    baud = BaudTable[index];
    return true;
}

DebugMessages ReadDebugMessages(HWND dialog)
{
    switch (GetCheck(dialog, CONTROL_TO_NMEA_DEBUG)) {
    case BST_UNCHECKED: return DebugMessages::Off;
    case BST_CHECKED: return DebugMessages::On;
    default: return DebugMessages::Unchanged;
    }
}

void Set(HWND dialog)
{
    uint32_t baud;
    if (!ReadRates(dialog) || !ReadBaudrate(dialog, baud)) return;
    const bool checksums = GetCheck(dialog, CONTROL_TO_NMEA_CHECKSUMS) == BST_CHECKED;
    SendSwitchToNmea(ReadDebugMessages(dialog), Seconds, checksums, baud);
    StoreNmeaRates(Seconds);
    ResetProtocolMode();
    InitializeSent.store(1);
    EnableControl(dialog, CONTROL_TO_NMEA_FOLLOW, true);
}

// SiRF binary messages from before the switch may have been recognised since the command: only messages at
// the new rate are to count.
void FollowReceiver(HWND dialog)
{
    int32_t baud;
    if (!ReadNumber(dialog, CONTROL_TO_NMEA_BAUDRATE, baud) || baud <= 0) return;
    PortSetBaud(static_cast<uint32_t>(baud));
    ResetProtocolMode();
    InitializeSent.store(1);
}

void Help(HWND)
{
    ShowBaudrateHelp();
}

constexpr DialogButton Buttons[] = {
    {CONTROL_TO_NMEA_SET, Set},
    {CONTROL_TO_NMEA_FOLLOW, FollowReceiver},
    {CONTROL_TO_NMEA_HELP, Help},
};

} // namespace

constexpr Dialog SwitchToNmeaDialog = {
    .number = DIALOG_SIRF_SWITCH_TO_NMEA,
    .kind = DialogKind::SwitchToNmea,
    .fields = Rates,
    .buttons = Buttons,
    .fill = Fill,
};
