// SPDX-License-Identifier: MIT
// NMEA commands to the receiver: '$', body, '*', two upper-case digits of the XOR of the body, CR, LF.
#pragma once

#include <cstdint>

// Length of the longest body, and of the longest sentence: this body and its frame.
constexpr uint32_t MaxNmeaBody = 255, MaxNmeaCommand = MaxNmeaBody + 6;

// Frames a body of `length` characters into `sentence`; returns the sentence's length, `length` + 6.
uint32_t FrameNmeaCommand(const char* body, uint8_t length, uint8_t (&sentence)[MaxNmeaCommand]);

// Frames and sends a command; user-interface thread. Without an open port it does nothing and returns -1.
// When the queue has no room for the whole sentence, nothing is queued and "Buffer Full" ("NmeaSend") is
// shown.
int32_t NmeaSend(const char* body, uint8_t length);

// The same for a terminated text. A body longer than MaxNmeaBody is not sent: the result is -1.
int32_t NmeaSend(const char* body);

// Frames a command and writes it immediately, without the queue, which belongs to the user-interface thread.
// Does nothing if the body is longer than MaxNmeaBody.
void NmeaSendFromReader(const char* body);

// Sets the rate of an output message: each field of PSRF103 is '0' and the given character. For callers that
// have their values as characters.
int32_t SendPsrf103(char message, char mode, char rate, char checksum);
