// SPDX-License-Identifier: MIT
// Cuts NMEA 0183 sentences out of the receiver's byte stream.
#pragma once

#include <atomic>
#include <cstdint>

// Sees each accepted sentence before it is decoded: its body without '$' and checksum, and if it had a
// checksum. Null: nobody looks. Set while nothing is received; called by the reader thread.
using SentenceObserver = void (*)(const char* body, uint32_t length, bool hadChecksum);
extern std::atomic<SentenceObserver> ObserveSentence;

// Feeds one byte; reader thread. A sentence that ends properly, with the right checksum or without one, goes
// to NmeaDispatcher and is counted in NmeaMessageCount; true if this byte completed one. Everything else is
// dropped silently. Bodies of more than 64 characters measure EffectiveBaud.
//
// Lenient on purpose: a '*' directly before the line end passes untested; so does a sentence without a '*'.
// A '$' within a sentence is a character like any other. A body of more than 255 characters wraps to the
// start of its buffer: what is dispatched is the part behind the wrap.
bool NmeaAssembler(uint8_t b);

// How many of the next `count` bytes are quiet: the assembler would only skip them, or store them in the
// body. A byte that begins or ends something is not quiet, but not each one that is left out ends something.
uint32_t NmeaQuietBytes(const uint8_t* bytes, uint32_t count);

// True within a body. Quiet bytes are printable characters then, which begin no message of the other
// protocol.
bool NmeaIsInBody();

// Feeds bytes that NmeaQuietBytes has found quiet, or the first of them.
void NmeaTakeQuiet(const uint8_t* bytes, uint32_t count);

// Everything as when the program starts.
void ResetNmeaAssembler();
