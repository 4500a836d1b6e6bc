// SPDX-License-Identifier: MIT
#include "uart.h"

#include <cmath>

namespace receiver
{

void MismatchedUart::SetRates(uint32_t sender, uint32_t reader)
{
    BitsPerSample = static_cast<double>(sender) / static_cast<double>(reader);
    Position = 0;
    WasHigh = true;
    Wire.clear();
}

void MismatchedUart::Byte(uint8_t byte, Bytes& read)
{
    Wire.push_back(false);
    for (int bit = 0; bit < 8; ++bit) Wire.push_back((byte >> bit & 1) != 0);
    Wire.push_back(true);
    Sample(read);
}

void MismatchedUart::Rest(size_t bits, Bytes& read)
{
    Wire.insert(Wire.end(), bits, true);
    Sample(read);
}

void MismatchedUart::Sample(Bytes& read)
{
    // A reader samples sixteen times per bit to find the falling edge; then it samples the middle of each of
    // ten bits.
    const double step = BitsPerSample / 16.0;
    while (Position + 10.0 * BitsPerSample < static_cast<double>(Wire.size())) {
        const bool high = Level(Position);
        if (!WasHigh || high) {
            WasHigh = high;
            Position += step;
            continue;
        }
        uint8_t byte = 0;
        for (int bit = 0; bit < 8; ++bit) {
            if (Level(Position + (1.5 + bit) * BitsPerSample)) byte = static_cast<uint8_t>(byte | 1 << bit);
        }
        read.push_back(byte); // drivers deliver the byte even without a correct stop bit
        Position += 9.5 * BitsPerSample;
        WasHigh = Level(Position);
    }
    const double whole = std::floor(Position);
    if (whole > 0) {
        const auto passed = static_cast<std::ptrdiff_t>(std::min(whole, static_cast<double>(Wire.size())));
        Wire.erase(Wire.begin(), Wire.begin() + passed);
        Position -= static_cast<double>(passed);
    }
}

} // namespace receiver
