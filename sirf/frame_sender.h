// SPDX-License-Identifier: MIT
// SiRF binary commands to the receiver; user-interface thread.
#pragma once

#include <atomic>
#include <cstdint>

// Message id of the wrapper that some receivers put around all messages.
constexpr uint8_t WrapId = 0xEE;

// The decoder sets this when the receiver wraps its messages: commands are then wrapped, too. Never cleared.
// Reader thread writes.
extern std::atomic<uint8_t> WrapEE;

// Command whose settings the user has requested, so that a refusal of the poll can name it; 0: none. The
// user-interface thread sets it before it polls; the reader thread clears it at the answer or the refusal.
extern std::atomic<uint8_t> PendingPollId;

// Id of the command that the receiver has refused last; 0: none. The reader thread sets it. A caller that
// wants to know about a command clears it before sending.
extern std::atomic<uint8_t> LastRefusedCommand;

// Length of the longest payload of a command, and of its frame when it is wrapped.
constexpr uint32_t MaxSirfCommandPayload = 255, MaxSirfCommand = MaxSirfCommandPayload + 9;

// Frames a payload of `length` bytes, the first of which is the message id, into `frame`; wraps it if the
// receiver wraps its messages. Returns the frame's length.
uint32_t FrameSirfCommand(const uint8_t* payload, uint8_t length, uint8_t (&frame)[MaxSirfCommand]);

// Frames a payload of `length` bytes, the first of which is the message id, and sends it. Does nothing
// without an open port, or for more than 255 bytes. When the queue has no room for the whole frame, nothing
// is queued and "Buffer Full" ("SirfSend") is shown. All 16 bits of the checksum are sent, on purpose.
void SirfSend(const uint8_t* payload, uint16_t length);

void SendPollSoftwareVersion();            // answered by message id 6
void SendPollNavigationParameters();       // answered by message id 19
void SendPollParameter(uint8_t commandId); // answered by message id 43 with the settings of that command
void SendMessageRate(uint8_t mode, uint8_t messageId, uint8_t rateSeconds);
