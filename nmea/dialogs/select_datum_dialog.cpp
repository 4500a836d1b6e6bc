#include "nmea/dialogs/select_datum_dialog.h"

#include "nmea/dialogs/command_dialog.h"
#include "resources/resource_ids.h"
#include "text/format.h"
#include "ui/dialog_controls.h"
#include "ui/dialog_support.h"
#include "ui/error_boxes.h"

namespace
{

constexpr const wchar_t* DatumTexts[] = {L"WGS-84", L"Tokyo Mean", L"Tokyo Japan", L"Tokyo Korea",
                                         L"Tokyo Okinawa"};
constexpr uint32_t DatumCodes[] = {21, 178, 179, 180, 181}; // of the receiver, in the list's order

void Fill(HWND dialog)
{
    FillList(dialog, CONTROL_DATUM, DatumTexts);
    SelectListEntry(dialog, CONTROL_DATUM, 0);
}

void PressSet(HWND dialog)
{
    const int32_t selection = GetListSelection(dialog, CONTROL_DATUM);
    if (selection < 0 || selection >= static_cast<int32_t>(sizeof DatumCodes / sizeof DatumCodes[0])) {
        InfoBox(L"Datum", L"Select a datum.");
        return;
    }
    char body[24];
    Format(body, "PSRF106,%u", DatumCodes[selection]);
    SendDialogCommand(body);
}

constexpr DialogButton Buttons[] = {{CONTROL_DATUM_SET, PressSet}};
constexpr CommandDialog SelectDatum = {DialogKind::SelectDatum, Fill, Buttons};

INT_PTR CALLBACK SelectDatumProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    return HandleCommandDialog(SelectDatum, dialog, message, wParam, lParam);
}

} // namespace

void ShowSelectDatumDialog()
{
    ShowDialog(DIALOG_NMEA_SELECT_DATUM, SelectDatumProcedure);
}
