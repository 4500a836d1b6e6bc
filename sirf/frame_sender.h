// SPDX-License-Identifier: MIT
// SiRF binary commands to the receiver; user-interface thread.
#pragma once

#include <atomic>
#include <cstdint>

// Message id into which some receivers wrap every other message.
constexpr uint8_t WrapId = 0xEE;

// Set by the decoder when the receiver wraps its messages: commands are then wrapped too. Never cleared.
// Reader thread writes.
extern std::atomic<uint8_t> WrapEE;

// Command whose settings the user has asked for, so that a refusal of the poll can name it; 0 none. Set by
// the user-interface thread before it polls, cleared by the reader thread with the answer or the refusal.
extern std::atomic<uint8_t> PendingPollId;

// Id of the command that the receiver has refused last, 0 when none. The reader thread sets it; who wants to
// know about a command clears it before sending.
extern std::atomic<uint8_t> LastRefusedCommand;

// Longest payload of a command, and its frame when it is wrapped.
constexpr uint32_t MaxSirfCommandPayload = 255, MaxSirfCommand = MaxSirfCommandPayload + 9;

// Frames a payload of `length` bytes, its first the message id, into `frame`, wrapped if the receiver wraps;
// returns the frame's length.
uint32_t FrameSirfCommand(const uint8_t* payload, uint8_t length, uint8_t (&frame)[MaxSirfCommand]);

// Frames a payload of `length` bytes, its first the message id, and sends it. Without an open port, or for
// more than 255 bytes, nothing happens. When the queue cannot take the whole frame nothing is queued and
// "Buffer Full" ("SirfSend") is shown. The checksum is sent with all its 16 bits, on purpose.
void SirfSend(const uint8_t* payload, uint16_t length);

void SendPollSoftwareVersion();            // answered by message id 6
void SendPollNavigationParameters();       // answered by message id 19
void SendPollParameter(uint8_t commandId); // answered by message id 43 with the settings of that command
void SendMessageRate(uint8_t mode, uint8_t messageId, uint8_t rateSeconds);
