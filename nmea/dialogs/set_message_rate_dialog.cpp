#include "nmea/dialogs/set_message_rate_dialog.h"

#include "nmea/dialogs/command_dialog.h"
#include "resources/resource_ids.h"
#include "text/format.h"
#include "ui/dialog_controls.h"
#include "ui/dialog_support.h"
#include "ui/error_boxes.h"

namespace
{

// In the order of the receiver's message numbers.
constexpr const wchar_t* MessageTexts[] = {L"GGA", L"GLL", L"GSA",    L"GSV", L"RMC",
                                           L"VTG", L"MSS", L"User 8", L"ZDA", L"User10"};
constexpr const wchar_t* RateTexts[] = {L"0", L"1", L"2", L"5", L"10"}; // seconds

void Fill(HWND dialog)
{
    FillList(dialog, CONTROL_NMEA_RATE_MESSAGE, MessageTexts);
    FillList(dialog, CONTROL_NMEA_RATE_SECONDS, RateTexts);
    SetCheck(dialog, CONTROL_NMEA_RATE_CHECKSUM, BST_CHECKED);
}

void PressSet(HWND dialog)
{
    const int32_t number = GetListSelection(dialog, CONTROL_NMEA_RATE_MESSAGE);
    if (number < 0) {
        InfoBox(L"Message", L"Select a message.");
        return;
    }
    int32_t seconds;
    if (!ReadNumberInRange(dialog, CONTROL_NMEA_RATE_SECONDS, 0, 255, L"Update Rate", L"Range 0-255 s",
                           seconds))
        return;
    const UINT checksum = GetCheck(dialog, CONTROL_NMEA_RATE_CHECKSUM);
    if (checksum != BST_CHECKED && checksum != BST_UNCHECKED) {
        InfoBox(L"Use Checksum", L"Indeterminate");
        return;
    }
    char body[48];
    Format(body, "PSRF103,%d,0,%d,%u", number, seconds, checksum == BST_CHECKED ? 1u : 0u);
    SendDialogCommand(body);
}

constexpr DialogButton Buttons[] = {{CONTROL_NMEA_RATE_SET, PressSet}};
constexpr CommandDialog SetMessageRate = {DialogKind::NmeaSetMessageRate, Fill, Buttons};

INT_PTR CALLBACK SetMessageRateProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    return HandleCommandDialog(SetMessageRate, dialog, message, wParam, lParam);
}

} // namespace

void ShowNmeaMessageRateDialog()
{
    ShowDialog(DIALOG_NMEA_SET_MESSAGE_RATE, SetMessageRateProcedure);
}
