// SPDX-License-Identifier: MIT
// Decodes SiRF binary messages into text page, chart channels, fix time, and the controls of the open command
// dialog.
#pragma once

#include <cstdint>
#include <span>

constexpr uint32_t MaxSirfPayload = 1023; // longest payload that a frame can have
constexpr uint32_t SirfBufferSize = 1024;

// A message for a decoder. The buffer continues after the last byte; `readable` is its whole length.
struct SirfMessage {
    const uint8_t* bytes;
    uint32_t length, readable;
};

// A kind of message that is decoded. Messages shorter than `minimumLength` are ignored.
struct SirfMessageKind {
    uint8_t id, minimumLength;
    void (*decode)(const SirfMessage& message);
};
extern const std::span<const SirfMessageKind> SirfMessageKinds;

// Takes one payload of 1 to MaxSirfPayload bytes, the first of which is the message id, in a buffer of
// SirfBufferSize; reader thread. The first message after a reset also announces the protocol, empties the
// text page and stores the working port and rate. During a search nothing is decoded after that.
//
// Messages that are unknown or too short are ignored silently. A refused command is posted as a box. Wrapped
// messages are unwrapped, also repeatedly, and set WrapEE.
void SirfMessageDecoder(const uint8_t* payload, uint32_t length);

// Sets everything to its state at program start.
void ResetSirfDecoder();

// The last message of each kind, as received; reader thread only. For the texts a fixed number of bytes is
// copied from the buffer, so a shorter text is followed by old bytes of the buffer; a NUL ends the record.
extern uint8_t NavigationRecord[41];      // message id 2
extern uint8_t TrackingRecord[188];       // 4
extern uint8_t RefusalRecord[2];          // 12
extern uint8_t GeodeticRecord[91];        // 41; its first byte is 0 until the first message
extern uint8_t InternalMessageText[1026]; // 225
extern uint8_t DevelopmentText[1025];     // 255
