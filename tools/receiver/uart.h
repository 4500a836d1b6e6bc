// SPDX-License-Identifier: MIT
#pragma once
// The bytes that a serial line interface reads if the sender has another rate: the levels on the wire,
// sampled at the wrong times. The result is the well-known garbage.

#include "big_endian.h"

#include <deque>

namespace receiver
{

// Eight data bits, no parity, one stop bit on both sides.
class MismatchedUart
{
public:
    // Forgets the state of the wire. Rates in bits per second, above 0.
    void SetRates(uint32_t sender, uint32_t reader);

    // Ten bit times of the sender with one byte, or `bits` bit times of an idle line. The bytes that the
    // reader has completed are appended to `read`.
    void Byte(uint8_t byte, Bytes& read);
    void Rest(size_t bits, Bytes& read);

private:
    void Sample(Bytes& read);
    bool Level(double senderBits) const { return Wire[static_cast<size_t>(senderBits)]; }

    double BitsPerSample = 1; // length of the reader's bit in the sender's
    double Position = 0;      // of the reader, in bits of `Wire`
    bool WasHigh = true;      // a start bit needs a falling edge
    std::deque<bool> Wire;    // one level for each bit of the sender
};

} // namespace receiver
