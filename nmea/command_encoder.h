// SPDX-License-Identifier: MIT
// NMEA commands to the receiver: '$', body, '*', two upper-case digits of the XOR of the body, CR, LF.
#pragma once

#include <cstdint>

// Longest body, and longest sentence: that body and its frame.
constexpr uint32_t MaxNmeaBody = 255, MaxNmeaCommand = MaxNmeaBody + 6;

// Frames a body of `length` characters into `sentence`; returns the sentence's length, `length` + 6.
uint32_t FrameNmeaCommand(const char* body, uint8_t length, uint8_t (&sentence)[MaxNmeaCommand]);

// Frames and sends a command; user-interface thread. Without an open port nothing happens and the result is
// -1. When the queue cannot take the whole sentence nothing is queued and "Buffer Full" ("NmeaSend") is
// shown.
int32_t NmeaSend(const char* body, uint8_t length);

// The same for a terminated text. A body longer than MaxNmeaBody is not sent: the result is -1.
int32_t NmeaSend(const char* body);

// Frames a command and writes it at once, past the queue, which belongs to the user-interface thread. Nothing
// happens with a body longer than MaxNmeaBody.
void NmeaSendFromReader(const char* body);

// Sets an output message's rate from digit characters: each field of PSRF103 is '0' and the given character.
// For callers that hold their values as characters.
int32_t SendPsrf103(char message, char mode, char rate, char checksum);
