// SPDX-License-Identifier: MIT
// Finds NMEA 0183 sentences in the receiver's byte stream.
#pragma once

#include <atomic>
#include <cstdint>

// Is called with each accepted sentence before it is decoded: its body without '$' and checksum, and whether
// it had a checksum. May be null. Set it while nothing is received; the reader thread calls it.
using SentenceObserver = void (*)(const char* body, uint32_t length, bool hadChecksum);
extern std::atomic<SentenceObserver> ObserveSentence;

// Takes one byte; reader thread. A sentence that ends correctly, with the right checksum or without one, is
// passed to NmeaDispatcher and counted in NmeaMessageCount. Returns true if this byte completed one. All
// other bytes are dropped silently. Bodies of more than 64 characters are used to measure EffectiveBaud.
//
// It accepts some faults on purpose: a sentence with '*' directly before the line end, or without '*', is not
// tested. A '$' within a sentence is an ordinary character. A body of more than 255 characters wraps to the
// start of its buffer: only the part after the wrap is dispatched.
bool NmeaAssembler(uint8_t b);

// Number of the next `count` bytes that are quiet: the assembler would only skip them, or store them in the
// body. Bytes that begin or end a sentence are never quiet; some other bytes are not counted, either.
uint32_t NmeaQuietBytes(const uint8_t* bytes, uint32_t count);

// True within a body. Quiet bytes are then printable characters, which cannot begin a message of the other
// protocol.
bool NmeaIsInBody();

// Takes bytes that NmeaQuietBytes has found to be quiet, or the first part of them.
void NmeaTakeQuiet(const uint8_t* bytes, uint32_t count);

// Sets everything to its state at program start.
void ResetNmeaAssembler();
