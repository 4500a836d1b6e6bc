// SPDX-License-Identifier: MIT
// The receiver's own text: start-up lines and answers to commands, shown in the grey box of the NMEA command
// dialogs.
#pragma once

#include <atomic>
#include <cstdint>

constexpr uint32_t ReceiverMessagesCapacity = 2048; // wide characters, terminator included

// What has arrived, a line each, CR LF behind every line. Reader thread only.
extern wchar_t ReceiverMessagesText[ReceiverMessagesCapacity];

// Set by a dialog just before it sends a command: the next line then begins a new text, so that the box shows
// the receiver's answer alone. Cleared by the reader thread.
extern std::atomic<uint8_t> ClearOnNextAppend;

// Appends a line; one that does not fit any more is dropped.
void AppendReceiverMessage(const char* line);

// Puts the text into the grey box of an open NMEA command dialog.
void ShowReceiverMessages();
