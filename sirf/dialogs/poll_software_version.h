// Poll Software Version: the name and version of the receiver's firmware.
#pragma once

void ShowPollSoftwareVersionDialog();
