// SPDX-License-Identifier: MIT
#include "line.h"

#include <algorithm>
#include <utility>

namespace receiver
{

namespace
{

constexpr double BitsPerByte = 10.0;     // start bit, eight data bits, stop bit
constexpr size_t HostQueueLimit = 65536; // far more than any host writes at a time

} // namespace

void Line::Direction::Carry(uint8_t byte, uint32_t senderRate, uint32_t readerRate, Bytes& read)
{
    if (senderRate == readerRate) {
        read.push_back(byte);
        return;
    }
    if (sender != senderRate || reader != readerRate) {
        sender = senderRate;
        reader = readerRate;
        uart.SetRates(sender, reader);
    }
    uart.Byte(byte, read);
}

// An idle line allows a slow reader to finish its last byte.
void Line::Direction::LieIdle(double untilSeconds, Bytes& read)
{
    if (sender == 0 || untilSeconds <= freeAt) return;
    constexpr double longest = 2000.0; // bits; after this time every reader is idle
    const double bits = std::min((untilSeconds - freeAt) * sender, longest);
    uart.Rest(static_cast<size_t>(bits), read);
}

bool Line::Damage(uint8_t& byte)
{
    if (Noise.Chance(Faults.lose)) return false;
    if (Noise.Chance(Faults.flip)) byte = static_cast<uint8_t>(byte ^ 1 << (Noise.Next() % 8));
    return true;
}

Bytes Line::ToHost(std::deque<Burst>& output, double runSeconds)
{
    Bytes read;
    for (;;) {
        if (Sending.bytes.empty()) {
            if (NoiseBytes > 0) {
                const uint32_t rate = Sending.rate;
                Sending = {Bytes(std::exchange(NoiseBytes, 0)), rate};
                for (uint8_t& byte : Sending.bytes) byte = Noise.Byte();
            } else if (!output.empty()) {
                Sending = std::move(output.front());
                output.pop_front();
            } else {
                break;
            }
            Sent = 0;
        }
        const double byteTime = BitsPerByte / Sending.rate;
        if (Down.freeAt + byteTime > runSeconds) return read;
        uint8_t byte = Sending.bytes[Sent++];
        Down.freeAt += byteTime;
        if (Damage(byte)) Down.Carry(byte, Sending.rate, HostRate == 0 ? Sending.rate : HostRate, read);
        ++BytesToHost;
        if (Sent == Sending.bytes.size()) Sending.bytes.clear();
    }
    Down.LieIdle(runSeconds, read);
    Down.freeAt = std::max(Down.freeAt, runSeconds);
    return read;
}

Bytes Line::ToReceiver(const Bytes& written, uint32_t receiverRate, double runSeconds)
{
    if (Written.size() + written.size() <= HostQueueLimit) {
        Written.insert(Written.end(), written.begin(), written.end());
    }
    Bytes read;
    const uint32_t senderRate = HostRate == 0 ? receiverRate : HostRate;
    const double byteTime = BitsPerByte / senderRate;
    while (!Written.empty() && Up.freeAt + byteTime <= runSeconds) {
        uint8_t byte = Written.front();
        Written.pop_front();
        Up.freeAt += byteTime;
        if (Damage(byte)) Up.Carry(byte, senderRate, receiverRate, read);
        ++BytesToReceiver;
    }
    if (Written.empty()) {
        Up.LieIdle(runSeconds, read);
        Up.freeAt = std::max(Up.freeAt, runSeconds);
    }
    return read;
}

} // namespace receiver
