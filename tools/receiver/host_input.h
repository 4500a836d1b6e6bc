// SPDX-License-Identifier: MIT
#pragma once
// Splits the host's bytes into commands. A receiver is strict: it ignores a command with a wrong checksum.

#include "big_endian.h"

#include <optional>
#include <string>

namespace receiver
{

// "$body*hh CR LF" -> body. A '$' always starts a new sentence; bodies over 250 characters are dropped.
class NmeaInput
{
public:
    std::optional<std::string> Feed(uint8_t byte); // the body, with the byte that ends a sentence
    void Reset() { Sentence.clear(); }

private:
    std::string Sentence; // from '$' on; empty: waiting for it
};

// A0 A2, length, payload, checksum, B0 B3 -> payload, without a leading EE. Payloads of 1 to 1023 bytes.
class SirfInput
{
public:
    std::optional<Bytes> Feed(uint8_t byte); // the payload, with the last byte of a frame
    void Reset() { Frame.clear(); }

private:
    Bytes Frame; // from A0 on; empty: waiting for it
};

} // namespace receiver
