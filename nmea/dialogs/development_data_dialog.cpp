// SPDX-License-Identifier: MIT
#include "nmea/dialogs/command_dialog.h"
#include "resources/resource_ids.h"
#include "text/copy.h"

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
    SendDialogCommand(body); // not checked: the receiver refuses what it does not know
}

constexpr DialogButton Buttons[] = {{CONTROL_DEVELOPMENT_SET, PressSet}};

} // namespace

constexpr Dialog DevelopmentDataDialog = {
    .number = DIALOG_NMEA_DEVELOPMENT_DATA,
    .kind = DialogKind::DevelopmentData,
    .buttons = Buttons,
    .fill = Fill,
};
