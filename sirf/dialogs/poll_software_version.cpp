// SPDX-License-Identifier: MIT
// Poll Software Version: the name and version of the receiver's firmware.
#include "resources/resource_ids.h"
#include "sirf/dialogs/command_dialog.h"
#include "sirf/frame_sender.h"

namespace
{

void Get(HWND)
{
    SendPollSoftwareVersion();
}

void Begin(HWND)
{
    if (ReceiverSpeaksSirf()) SendPollSoftwareVersion();
}

constexpr DialogButton Buttons[] = {{CONTROL_SOFTWARE_VERSION_GET, Get}};

} // namespace

constexpr Dialog PollSoftwareVersionDialog = {
    .number = DIALOG_SIRF_POLL_SOFTWARE_VERSION,
    .kind = DialogKind::PollSoftwareVersion,
    .buttons = Buttons,
    .begin = Begin,
};
