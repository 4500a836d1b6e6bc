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
// SirfMessageDecoder and is counted in SirfMessageCount. Everything else is dropped silently, and the search
// goes on with the next byte: the byte that broke a frame never begins another, on purpose, so A0 A0 A2 is no
// start. A payload of exactly 188 bytes, the longest that comes every second, measures EffectiveBaud.
void SirfFramer(uint8_t b);

// Everything as when the program starts.
void ResetSirfFramer();
