// SPDX-License-Identifier: MIT
#include <iterator>

#include "nmea/dialogs/command_dialog.h"
#include "resources/resource_ids.h"
#include "text/format.h"
#include "ui/dialog_controls.h"
#include "ui/dialog_fields.h"

namespace
{

// In the order of the receiver's message numbers.
constexpr const wchar_t* MessageTexts[] = {L"GGA", L"GLL", L"GSA",    L"GSV", L"RMC",
                                           L"VTG", L"MSS", L"User 8", L"ZDA", L"User10"};

constexpr CommandField Fields[] = {
    ListField(CONTROL_NMEA_RATE_MESSAGE, 0, L"Message", MessageTexts, L"Select a message."),
    {FieldKind::Number, CONTROL_NMEA_RATE_SECONDS, 0, 0, 0, 255, L"Update Rate", L"Range 0-255 s",
     UpdateRateTexts},
    CheckField(CONTROL_NMEA_RATE_CHECKSUM, 0, 0, L"Use Checksum"),
};

constexpr int32_t EachSecond = 1; // index; the factory setting of receivers

void Fill(HWND dialog)
{
    SetCheck(dialog, CONTROL_NMEA_RATE_CHECKSUM, BST_CHECKED);
    SelectShownEntry(dialog, CONTROL_NMEA_RATE_MESSAGE, 0);
    SelectShownEntry(dialog, CONTROL_NMEA_RATE_SECONDS, EachSecond);
}

void PressSet(HWND dialog)
{
    int64_t values[std::size(Fields)];
    if (!ReadFields(dialog, Fields, values)) return;
    char body[48];
    Format(body, "PSRF103,%d,0,%d,%d", static_cast<int32_t>(values[0]), static_cast<int32_t>(values[1]),
           static_cast<int32_t>(values[2]));
    SendDialogCommand(body);
}

constexpr DialogButton Buttons[] = {{CONTROL_NMEA_RATE_SET, PressSet}};

} // namespace

constexpr Dialog NmeaMessageRateDialog = {
    .number = DIALOG_NMEA_SET_MESSAGE_RATE,
    .kind = DialogKind::NmeaSetMessageRate,
    .fields = Fields,
    .buttons = Buttons,
    .fill = Fill,
};
