// Turns SiRF binary messages into the program's navigation state.
#pragma once

#include <cstdint>

// Takes one payload of 1 to 1023 bytes, its first the message id, in a buffer of SirfBufferSize; reader
// thread. The first message since the last reset also announces the protocol, empties the text page and
// stores the working port and rate. During a search nothing more happens.
void SirfMessageDecoder(const uint8_t* payload, uint32_t length);
