// SPDX-License-Identifier: MIT
#include "link/protocol_recognition.h"

#include "link/baudrate_choice.h"
#include "link/link_state.h"
#include "resources/resource_ids.h"
#include "settings/settings_store.h"
#include "ui/active_dialog.h"
#include "ui/page_lines.h"

void BeginProtocol(std::atomic<uint8_t>& recognised)
{
    recognised.store(1);
    if (HWND dialog = OpenDialogOfKind(DialogKind::Communication))
        SetDlgItemTextW(dialog, CONTROL_COM_PROTOCOL, ProtocolName(ProtocolMode()));
    ClearTextView();
}

void StoreWorkingPort()
{
    if (!IsPortIndex(CommPortIdx.load())) return;
    SettingsSetDword(SettingCommPort, CommPortIdx.load());
    SettingsSetDword(SettingBaudrate, BaudrateIdx.load());
}

void StoreChosenRate(DialogKind kind, int control, const wchar_t* setting)
{
    HWND dialog = OpenDialogOfKind(kind);
    if (!dialog) return;
    const int32_t chosen = ChosenBaudrate(dialog, control);
    if (chosen >= 0) SettingsSetDword(setting, chosen);
}
