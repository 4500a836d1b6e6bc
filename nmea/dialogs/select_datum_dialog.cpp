// SPDX-License-Identifier: MIT
#include "nmea/dialogs/command_dialog.h"
#include "resources/resource_ids.h"
#include "text/format.h"
#include "ui/dialog_controls.h"
#include "ui/dialog_fields.h"

namespace
{

constexpr const wchar_t* DatumTexts[] = {L"WGS-84", L"Tokyo Mean", L"Tokyo Japan", L"Tokyo Korea",
                                         L"Tokyo Okinawa"};
constexpr uint32_t DatumCodes[] = {21, 178, 179, 180, 181}; // of the receiver, in the list's order

constexpr CommandField Fields[] = {ListField(CONTROL_DATUM, 0, L"Datum", DatumTexts, L"Select a datum.")};

void Fill(HWND dialog)
{
    SelectListEntry(dialog, CONTROL_DATUM, 0);
}

void PressSet(HWND dialog)
{
    int64_t datum;
    if (!ReadFields(dialog, Fields, &datum)) return;
    char body[24];
    Format(body, "PSRF106,%u", DatumCodes[datum]);
    SendDialogCommand(body);
}

constexpr DialogButton Buttons[] = {{CONTROL_DATUM_SET, PressSet}};

} // namespace

constexpr Dialog SelectDatumDialog = {
    .number = DIALOG_NMEA_SELECT_DATUM,
    .kind = DialogKind::SelectDatum,
    .fields = Fields,
    .buttons = Buttons,
    .fill = Fill,
};
