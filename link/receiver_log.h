// SPDX-License-Identifier: MIT
// The raw log of the receiver: every byte read, in order, in a file that other tools can read.
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/platform.h"

// The open log, INVALID_HANDLE_VALUE when there is none. The user-interface thread opens and closes it; the
// reader thread tests it before each write and takes it out when it cannot be written.
extern std::atomic<HANDLE> LogFileHandle;

// Opens the log under a name that the user chooses, or, on a keypad device, that the local time gives; true
// if a log is open now. Does nothing when one is open already, or while the user is being asked. A file that
// exists is written over from its start, not emptied; a port is refused. Failure, a name that is too long
// too, shows "CreateFile File".
bool LogOpen();

// Closes the log; true if one was closed. Failure shows "CloseHandle File".
bool LogClose();

// Reader thread: appends bytes, as many as there is room for. The first byte that fails ends the log and
// posts one box, "WriteFile File"; a log that the user has closed or replaced meanwhile is left alone.
void LogWrite(const uint8_t* bytes, uint32_t count);
