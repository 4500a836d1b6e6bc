#include "sirf/dialogs/sbas_dialog.h"

#include "app/active_dialog.h"
#include "app/dialog_controls.h"
#include "app/dialog_support.h"
#include "app/error_boxes.h"
#include "link/link_state.h"
#include "resources/resource_ids.h"
#include "sirf/command_layouts.h"
#include "sirf/frame_sender.h"
#include "sky/sky_plot.h"

namespace
{

// What the keypad device's long lists are told; the message means nothing elsewhere.
constexpr UINT KeypadListMessage = 449;
constexpr LPARAM KeypadListStyle = 2;

void Open(HWND dialog)
{
    InitDialogCommon(dialog);
    for (const CommandField& field : SbasLayout.fields) FillList(dialog, field.control, field.entries);
    if (IsSmartphone()) SendDlgItemMessageW(dialog, CONTROL_SBAS_PRN, KeypadListMessage, 0, KeypadListStyle);
    PublishDialog(SbasLayout.dialog, dialog);
    if (SirfRecognised.load()) SendPollParameter(SbasLayout.command);
}

void GetSettings()
{
    PendingPollId.store(SbasLayout.command);
    SendPollParameter(SbasLayout.command);
}

// The satellite's entry becomes its number, and a flag says that there is one.
void SetSettings(HWND dialog)
{
    constexpr uint32_t Prn = 1, Flags = 3; // payload bytes
    constexpr uint8_t PrnIsChosen = 0x08;
    uint8_t payload[MaxCommandLength] = {SbasLayout.command};
    for (const CommandField& field : SbasLayout.fields) {
        const int32_t entry = GetListSelection(dialog, field.control);
        if (entry < field.low || entry > field.high) return InfoBox(field.caption, field.refusal);
        payload[field.offset] = static_cast<uint8_t>(entry);
    }
    if (payload[Prn]) {
        payload[Prn] = static_cast<uint8_t>(payload[Prn] + SbasEntryToPrn);
        payload[Flags] |= PrnIsChosen;
    }
    SirfSend(payload, SbasLayout.length);
}

void Paint(HWND dialog)
{
    PAINTSTRUCT paint;
    if (HDC dc = BeginPaint(dialog, &paint)) DrawSkyPlot(dc);
    EndPaint(dialog, &paint);
}

INT_PTR CALLBACK SbasProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_INITDIALOG: Open(dialog); return TRUE;
    case WM_PAINT: Paint(dialog); return TRUE;
    case WM_COMMAND:
        if (HIWORD(wParam) != BN_CLICKED) break;
        if (LOWORD(wParam) == CONTROL_SBAS_GET) GetSettings();
        if (LOWORD(wParam) == CONTROL_SBAS_SET) SetSettings(dialog);
        break;
    default: break;
    }
    return HandleCommonMessages(dialog, message, wParam, lParam);
}

} // namespace

void ShowSbasDialog()
{
    ShowDialog(DIALOG_SIRF_SBAS, SbasProcedure);
}
