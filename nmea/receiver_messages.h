// SPDX-License-Identifier: MIT
// The receiver's own text: start-up lines and answers to commands, shown in the grey box of the NMEA command
// dialogs.
#pragma once

#include <atomic>
#include <cstdint>

constexpr uint32_t ReceiverMessagesCapacity = 2048; // wide characters, terminator included

// The received lines, each followed by CR LF. Reader thread only.
extern wchar_t ReceiverMessagesText[ReceiverMessagesCapacity];

// A dialog sets this just before it sends a command: the next line then begins a new text, so that the box
// shows only the receiver's answer. The reader thread clears it.
extern std::atomic<uint8_t> ClearOnNextAppend;

// Appends a line; a line that does not fit is dropped.
void AppendReceiverMessage(const char* line);

// Shows the text in the grey box of an open NMEA command dialog.
void ShowReceiverMessages();
