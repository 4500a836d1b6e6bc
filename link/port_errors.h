// SPDX-License-Identifier: MIT
// What a port's failing call means to the user. User-interface thread.
#pragma once

// Box under the call's name with one sentence on what keeps the port from being used (no such device, in use,
// no permission, gone, no serial port), by the calling thread's last error; an error that has none of these
// meanings is shown as ShowLastError does. `portIsOpen`: the call was one to an open port.
void ShowPortError(const wchar_t* caption, bool portIsOpen);
