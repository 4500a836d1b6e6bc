#include "nmea/dialogs/development_data_dialog.h"

#include "nmea/dialogs/command_dialog.h"
#include "resources/resource_ids.h"
#include "text/copy.h"
#include "ui/dialog_support.h"

namespace
{

constexpr uint32_t MaxCharacters = 80;

void Fill(HWND dialog)
{
    SetDlgItemTextW(dialog, CONTROL_DEVELOPMENT_COMMAND, L"PSRF105,1");
}

void PressSet(HWND dialog)
{
    SetDlgItemTextW(dialog, CONTROL_NMEA_GREY_BOX, L"");
    wchar_t text[MaxCharacters + 1] = L"";
    GetDlgItemTextW(dialog, CONTROL_DEVELOPMENT_COMMAND, text, static_cast<int>(MaxCharacters + 1));
    char body[MaxCharacters + 1];
    NarrowWideCopy(body, text);
    SendDialogCommand(body); // whatever it is: the receiver says what it thinks of it
}

constexpr DialogButton Buttons[] = {{CONTROL_DEVELOPMENT_SET, PressSet}};
constexpr CommandDialog DevelopmentData = {DialogKind::DevelopmentData, Fill, Buttons};

INT_PTR CALLBACK DevelopmentDataProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    return HandleCommandDialog(DevelopmentData, dialog, message, wParam, lParam);
}

} // namespace

void ShowDevelopmentDataDialog()
{
    ShowDialog(DIALOG_NMEA_DEVELOPMENT_DATA, DevelopmentDataProcedure);
}
