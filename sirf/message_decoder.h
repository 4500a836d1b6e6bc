// SPDX-License-Identifier: MIT
// Turns SiRF binary messages into the program's navigation state: text page, chart channels, fix time, and
// the controls of the command dialog that is open.
#pragma once

#include <cstdint>
#include <span>

constexpr uint32_t MaxSirfPayload = 1023; // longest payload that a frame can have
constexpr uint32_t SirfBufferSize = 1024;

// A message as its decoder gets it. Behind its last byte the buffer goes on, to `readable` bytes in all.
struct SirfMessage {
    const uint8_t* bytes;
    uint32_t length, readable;
};

// A kind of message that is decoded; one that is shorter than `minimumLength` is ignored.
struct SirfMessageKind {
    uint8_t id, minimumLength;
    void (*decode)(const SirfMessage& message);
};
extern const std::span<const SirfMessageKind> SirfMessageKinds;

// Takes one payload of 1 to MaxSirfPayload bytes, its first the message id, in a buffer of SirfBufferSize;
// reader thread. The first message since the last reset also announces the protocol, empties the text page
// and stores the working port and rate. During a search nothing more happens.
//
// Messages that are unknown or shorter than their kind are ignored silently. A refused command is posted as a
// box. Wrapped messages are unwrapped, however often, and switch WrapEE on.
void SirfMessageDecoder(const uint8_t* payload, uint32_t length);

// Everything as when the program starts.
void ResetSirfDecoder();

// The last message of each kind, as received; reader thread only. The texts are copied from the buffer
// whatever their length, so a shorter text is followed by what the buffer still held; a NUL ends the record.
extern uint8_t NavigationRecord[41];      // message id 2
extern uint8_t TrackingRecord[188];       // 4
extern uint8_t RefusalRecord[2];          // 12
extern uint8_t GeodeticRecord[91];        // 41; its first byte is 0 until the first one
extern uint8_t InternalMessageText[1026]; // 225
extern uint8_t DevelopmentText[1025];     // 255
