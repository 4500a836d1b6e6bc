// SPDX-License-Identifier: MIT
// Bytes on their way to the receiver: the open port's handle, and the ring in which the command encoders
// collect a whole sentence or frame before it goes out in one write.
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/platform.h"

// The open port, INVALID_HANDLE_VALUE when closed. Written by the user-interface thread alone; both threads
// read it afresh at each use.
extern std::atomic<HANDLE> PortHandle;

// The ring; user-interface thread only. Holds 255 bytes: a full ring would look like an empty one.
extern uint8_t WriteQueue[256];
extern uint8_t WriteHead; // where the next byte is stored
extern uint8_t WriteTail; // where sending starts

bool IsPortOpen();

// Free bytes of the ring, 0 to 255.
uint8_t WriteQueueSpace();

// Appends a byte; when the ring is full drops it and shows "Buffer Full" ("PortWrite").
void PortWrite(uint8_t b);

// Sends everything queued with one write and empties the ring, whatever becomes of the bytes: a command that
// did not go out whole is never sent later. A failure shows "WriteFile 2", a short write its two counts.
void PortWriteBuffer();

// Reader thread: writes the bytes at once, past the ring, with one write. Failures are posted.
void PortWriteFromReader(const uint8_t* bytes, uint32_t count);
