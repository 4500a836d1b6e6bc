// SPDX-License-Identifier: MIT
// The raw log of the receiver: every byte read, in order, in a file that other tools can read.
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/platform.h"

// The open log, INVALID_HANDLE_VALUE when there is none. The user-interface thread opens and closes it. The
// reader thread tests it before each write, and ends it when a write fails.
extern std::atomic<HANDLE> LogFileHandle;

// Opens the log. The user chooses its name; on a keypad device the name is made from the local time. Returns
// true if a log is open now. Does nothing when one is open already, or while the user is being asked. An
// existing file is overwritten from its start, not emptied; a port is refused. A failure, and a name that is
// too long, shows "CreateFile File".
bool LogOpen();

// Closes the log; true if one was closed. Failure shows "CloseHandle File".
bool LogClose();

// Reader thread: appends bytes, as many as fit on the disk. The first byte that cannot be written ends the
// log and posts one box, "WriteFile File"; a log that the user has closed or replaced meanwhile is not
// changed.
void LogWrite(const uint8_t* bytes, uint32_t count);
