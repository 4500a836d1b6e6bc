// SPDX-License-Identifier: MIT
#include "link/baudrate_choice.h"
#include "link/link_state.h"
#include "link/serial_port.h"
#include "nmea/dialogs/command_dialog.h"
#include "nmea/receiver_messages.h"
#include "resources/resource_ids.h"
#include "settings/settings_store.h"
#include "text/format.h"
#include "ui/dialog_controls.h"
#include "ui/dialog_fields.h"
#include "ui/dialog_support.h"
#include "ui/error_boxes.h"

namespace
{

constexpr const wchar_t* ProtocolTexts[] = {L"SiRF", L"NMEA"}; // in the order of the numbers in the command

constexpr CommandField Fields[] = {
    ListField(CONTROL_SERIAL_PROTOCOL, 0, L"Protocol", ProtocolTexts, L"Select a protocol.")};

constexpr int32_t SlowestTypedRate = 1;    // index: 1200 is sent only when it is chosen from the list
constexpr int32_t SlowestReportedRate = 2; // index: slower rates are taken for errors

// Index of a rate, if it is `first` or above; otherwise -1.
int32_t FindRate(uint32_t baud, int32_t first)
{
    const int32_t index = FindBaudrate(baud);
    return index >= first ? index : -1;
}

void Fill(HWND dialog)
{
    FillBaudrates(dialog, CONTROL_TO_SIRF_BAUDRATE);
    SelectListEntry(dialog, CONTROL_SERIAL_PROTOCOL, 0);
    const int32_t stored = SettingsGetDword(SettingSirfBaudrate, -1);
    const int32_t known =
        IsBaudIndex(stored) ? stored : FindRate(NmeaReportedBaud.load(), SlowestReportedRate);
    if (known >= 0)
        SelectListEntry(dialog, CONTROL_TO_SIRF_BAUDRATE, known);
    else
        SelectShownEntry(dialog, CONTROL_TO_SIRF_BAUDRATE, FindBaudrate(PortDcb.BaudRate));
    EnableControl(dialog, CONTROL_SERIAL_FOLLOW, false);
}

int32_t SelectedRate(HWND dialog)
{
    return GetListSelection(dialog, CONTROL_TO_SIRF_BAUDRATE);
}

// The number in the list's edit, otherwise the selected rate; 0 when there is neither.
int32_t ReadRate(HWND dialog)
{
    int32_t baud;
    if (ReadNumber(dialog, CONTROL_TO_SIRF_BAUDRATE, baud)) return baud;
    const int32_t selected = SelectedRate(dialog);
    return IsBaudIndex(selected) ? static_cast<int32_t>(BaudTable[selected]) : 0;
}

void PressSet(HWND dialog)
{
    int64_t protocol;
    if (!ReadFields(dialog, Fields, &protocol)) return;
    const int32_t baud = ReadRate(dialog);
    if (FindRate(static_cast<uint32_t>(baud), SlowestTypedRate) < 0 && !IsBaudIndex(SelectedRate(dialog))) {
        InfoBox(L"Baudrate", L"Select a baudrate.\n\nSee Help for more information.");
        return;
    }
    ResetProtocolMode();
    char body[48];
    Format(body, "PSRF100,%d,%d,8,1,0", static_cast<int32_t>(protocol), baud);
    SendDialogCommand(body);
    EnableControl(dialog, CONTROL_SERIAL_FOLLOW, true);
}

void PressFollow(HWND dialog)
{
    const int32_t baud = ReadRate(dialog);
    if (baud <= 0) return;
    PortSetBaud(static_cast<uint32_t>(baud));
    // Messages sent at the old rate may have been recognised since the command.
    ResetProtocolMode();
    ClearOnNextAppend.store(1);
}

void PressHelp(HWND)
{
    ShowBaudrateHelp();
}

constexpr DialogButton Buttons[] = {
    {CONTROL_SERIAL_SET, PressSet},
    {CONTROL_SERIAL_FOLLOW, PressFollow},
    {CONTROL_SERIAL_HELP, PressHelp},
};

} // namespace

constexpr Dialog SetSerialPortDialog = {
    .number = DIALOG_NMEA_SET_SERIAL_PORT,
    .kind = DialogKind::SetSerialPort,
    .fields = Fields,
    .buttons = Buttons,
    .fill = Fill,
};
