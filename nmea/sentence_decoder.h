// SPDX-License-Identifier: MIT
// Turns NMEA sentences into the program's navigation state: text page, chart values, time, receiver text.
#pragma once

#include <cstdint>
#include <span>

// Characters that a sentence's buffer has behind its 256: a time or date is cut into its parts where it
// stands, however short its field is, which may end that far behind the sentence. They hold 0.
constexpr uint32_t SentenceSlack = 16;

// A kind of sentence that the decoder knows by name.
struct SentenceKind {
    const char* name;
    uint32_t fieldCounts; // bit n: it is decoded when it has n fields, its name among them; else ignored
    int stampControl;     // of the Set Message Rate dialog: when a sentence of this kind arrived last
    void (*decode)();
};
template <typename... Counts> constexpr uint32_t FieldCounts(Counts... counts)
{
    return ((uint32_t{1} << counts) | ...);
}
constexpr uint32_t AnyFieldCount = UINT32_MAX;
extern const std::span<const SentenceKind> SentenceKinds;

// Takes one accepted sentence, without '$' and checksum; reader thread. The text is in a buffer as described
// above and is written into: commas become terminators. The first sentence since the last reset also
// announces the protocol, empties the text page, asks for the receiver's start-up text, and stores the
// working port and rate. During a search nothing more happens.
void NmeaDispatcher(char* sentence);

// Asks the receiver for its start-up text, "Baud rate:" among it; reader thread. It is the only thing that
// reception ever sends. Provided by app/start_up_text.cpp, by a hot start. A program that links the library
// `product` without app/ provides its own; one that must not send unasked provides an empty one.
void AskForStartUpText();

// Everything as when the program starts.
void ResetNmeaDecoder();
