// SPDX-License-Identifier: MIT
// Cuts SiRF binary frames out of the receiver's byte stream: A0 A2, length (2), payload, checksum (2), B0 B3,
// all numbers big-endian.
#pragma once

#include <atomic>
#include <cstdint>

// Sees each accepted frame's payload as it was sent, wrapped or not, before it is decoded. Null: nobody
// looks. Set while nothing is received; called by the reader thread.
using PayloadObserver = void (*)(const uint8_t* payload, uint32_t length);
extern std::atomic<PayloadObserver> ObservePayload;

// Feeds one byte; reader thread. A frame with the right checksum (15 bits are compared) and end goes to
// SirfMessageDecoder and is counted in SirfMessageCount; true if this byte completed one. Everything else is
// dropped silently, and the search goes on with the next byte: the byte that broke a frame never begins
// another, on purpose, so A0 A0 A2 is no start. A payload of exactly 188 bytes, the longest that comes every
// second, measures EffectiveBaud.
bool SirfFramer(uint8_t b);

// How many of the next `count` bytes are quiet: the framer would only skip them, or store them in the
// payload. The first form knows an upper bound without a look at the bytes. A byte that begins or ends
// something is not quiet, but not each one that is left out does.
uint32_t SirfQuietBytesAtMost(uint32_t count);
uint32_t SirfQuietBytes(const uint8_t* bytes, uint32_t count);

// Feeds bytes that SirfQuietBytes has found quiet, or the first of them.
void SirfTakeQuiet(const uint8_t* bytes, uint32_t count);

// Everything as when the program starts.
void ResetSirfFramer();
