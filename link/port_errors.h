// SPDX-License-Identifier: MIT
// Explains to the user why a call to a port has failed. User-interface thread.
#pragma once

// Shows a box with the call's name as caption and one sentence about the reason (no such device, in use, no
// permission, gone, no serial port), which it finds by the calling thread's last error. Any other error is
// shown as ShowLastError does. `portIsOpen`: the call was made to an open port.
void ShowPortError(const wchar_t* caption, bool portIsOpen);
