// SPDX-License-Identifier: MIT
// Passes received bytes through the product's own reception, and reports what was recognised.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string_view>

namespace console
{

enum class Protocol { Nmea, Sirf };

// "NMEA" and "SiRF binary", or "nmea" and "sirf".
const char* ProtocolTitle(Protocol protocol);
const char* ProtocolKey(Protocol protocol);

// An accepted sentence, without '$' and checksum.
struct Sentence {
    std::string_view body;
    bool hadChecksum;

    // Field of a sentence, 0 is its name; empty if the sentence does not have the field.
    std::string_view Field(unsigned index) const;

    // "GGA" of "GPGGA"; for a manufacturer's own sentence, its whole name.
    std::string_view Kind() const;
};

// The payload of an accepted frame; its first byte is the message id.
struct Message {
    std::span<const uint8_t> payload; // unwrapped; never empty
    std::span<const uint8_t> wire;    // as it was sent

    uint8_t Id() const { return payload[0]; }
};

// Listens to the reception as long as it exists. There may be several listeners, and each member may be
// empty. No listener may be created or destroyed while one of them is called.
class Listener
{
public:
    Listener();
    ~Listener();
    Listener(const Listener&) = delete;

    std::function<void(std::span<const uint8_t>)> bytes; // as read, before they are decoded
    std::function<void(const Sentence&)> sentence;       // before it is decoded
    std::function<void(const Message&)> message;         // the same
    std::function<void()> sample;  // after the decoder has stored a fix as the chart's next sample
    std::function<void()> decoded; // after a sentence or message has been decoded
};

// Feeds bytes. Order of the calls: `bytes`; then for each message its listeners, the decoder, `sample`,
// `decoded`.
void Feed(std::span<const uint8_t> bytes);

// Forgets an incomplete message, because the next bytes are received at another rate. Decoded values stay.
void ForgetPartialMessage();

} // namespace console
