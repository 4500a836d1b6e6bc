// Turns NMEA sentences into the program's navigation state: text page, chart values, time, receiver text.
#pragma once

#include <cstdint>

// Characters that a sentence's buffer has behind its 256: a time or date is cut into its parts where it
// stands, however short its field is, which may end that far behind the sentence. They hold 0.
constexpr uint32_t SentenceSlack = 16;

// Takes one accepted sentence, without '$' and checksum; reader thread. The text is in a buffer as described
// above and is written into: commas become terminators. The first sentence since the last reset also
// announces the protocol, empties the text page, hot-starts the receiver, so that it prints its start-up
// text, and stores the working port and rate. During a search nothing more happens.
void NmeaDispatcher(char* sentence);

// Everything as when the program starts.
void ResetNmeaDecoder();
