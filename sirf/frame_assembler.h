// SPDX-License-Identifier: MIT
// Finds SiRF binary frames in the receiver's byte stream: A0 A2, length (2), payload, checksum (2), B0 B3,
// all numbers big-endian.
#pragma once

#include <atomic>
#include <cstdint>

// Is called with the payload of each accepted frame, as it was sent (wrapped or not), before it is decoded.
// May be null. Set it while nothing is received; the reader thread calls it.
using PayloadObserver = void (*)(const uint8_t* payload, uint32_t length);
extern std::atomic<PayloadObserver> ObservePayload;

// Takes one byte; reader thread. A frame with the right checksum (15 bits are compared) and end is passed to
// SirfMessageDecoder and counted in SirfMessageCount. Returns true if this byte completed one. All other
// bytes are dropped silently, and the search goes on with the next byte. The byte that broke a frame never
// begins another one, on purpose; so A0 A0 A2 is no start. A payload of exactly 188 bytes, the longest one
// that is sent every second, is used to measure EffectiveBaud.
bool SirfFramer(uint8_t b);

// Number of the next `count` bytes that are quiet: the assembler would only skip them, or store them in the
// payload. The first routine returns an upper bound without reading the bytes. Bytes that begin or end a
// frame are never quiet; some other bytes are not counted, either.
uint32_t SirfQuietBytesAtMost(uint32_t count);
uint32_t SirfQuietBytes(const uint8_t* bytes, uint32_t count);

// Takes bytes that SirfQuietBytes has found to be quiet, or the first part of them.
void SirfTakeQuiet(const uint8_t* bytes, uint32_t count);

// Sets everything to its state at program start.
void ResetSirfFramer();
