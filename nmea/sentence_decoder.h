// SPDX-License-Identifier: MIT
// Decodes NMEA sentences into text page, chart values, time and receiver text.
#pragma once

#include <cstdint>
#include <span>

// Extra characters of a sentence's buffer, after its 256: a time or date is cut into its parts inside the
// buffer, even if its field is too short, and the last part may end this far after the sentence. They hold 0.
constexpr uint32_t SentenceSlack = 16;

// A kind of sentence that the decoder knows.
struct SentenceKind {
    const char* name;
    uint32_t fieldCounts; // bit n: it is decoded if it has n fields, with its name; otherwise ignored
    int stampControl;     // in the Set Message Rate dialog: time of the last arrival
    void (*decode)();
};
template <typename... Counts> constexpr uint32_t FieldCounts(Counts... counts)
{
    return ((uint32_t{1} << counts) | ...);
}
constexpr uint32_t AnyFieldCount = UINT32_MAX;
extern const std::span<const SentenceKind> SentenceKinds;

// Takes one accepted sentence, without '$' and checksum; reader thread. The text is in a buffer as described
// above, and is changed: commas become terminators. The first sentence after a reset also announces the
// protocol, empties the text page, requests the receiver's start-up text, and stores the working port and
// rate. During a search it only announces the protocol.
void NmeaDispatcher(char* sentence);

// Requests the receiver's start-up text, which contains "Baud rate:"; reader thread. Reception never sends
// anything else. app/start_up_text.cpp provides it by a hot start. A program that links the library `product`
// without app/ provides its own; a program that must not send unasked provides an empty one.
void AskForStartUpText();

// Sets everything to its state at program start.
void ResetNmeaDecoder();
