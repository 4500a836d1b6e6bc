// SPDX-License-Identifier: MIT
// Bytes on their way to the receiver: the open port's handle, and the ring in which the command encoders
// collect a whole sentence or frame before it goes out in one write.
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/platform.h"

// The open port, INVALID_HANDLE_VALUE when closed. Only the user-interface thread writes it; both threads
// read it again at each use.
extern std::atomic<HANDLE> PortHandle;

// The ring; user-interface thread only. Holds 255 bytes: a full ring would look like an empty one.
extern uint8_t WriteQueue[256];
extern uint8_t WriteHead; // where the next byte is stored
extern uint8_t WriteTail; // where sending starts

bool IsPortOpen();

// Free bytes of the ring, 0 to 255.
uint8_t WriteQueueSpace();

// Appends a byte. When the ring is full, the byte is dropped and "Buffer Full" ("PortWrite") is shown.
void PortWrite(uint8_t b);

// Sends all queued bytes with one write, then empties the ring even if the write has failed: the rest of a
// command is never sent later. A failure shows "WriteFile 2", an incomplete write shows its two counts.
void PortWriteBuffer();

// Reader thread: writes the bytes immediately with one write, without the ring. Failures are posted.
void PortWriteFromReader(const uint8_t* bytes, uint32_t count);
