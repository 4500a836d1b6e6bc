// SPDX-License-Identifier: MIT
#pragma once
// The serial line between receiver and host: bytes take their time, different rates change them to garbage,
// and there are configurable faults. It uses no device and no clock: the caller passes the time of the run.

#include "random.h"
#include "receiver.h"
#include "uart.h"

namespace receiver
{

struct LineFaults {
    double lose = 0; // chance per byte, both directions
    double flip = 0; // chance per byte that one bit is wrong, both directions
};

class Line
{
public:
    explicit Line(uint64_t seed) : Noise(seed ^ 0x6C696E65u) {}

    // Rate that the host has set, bits per second; 0 means the same as the receiver's.
    void SetHostRate(uint32_t rate) { HostRate = rate; }

    // Runs the line up to this moment, in seconds of the run. Takes bursts from `output` when there is room
    // on the wire, and returns the bytes that have reached the host by now.
    Bytes ToHost(std::deque<Burst>& output, double runSeconds);

    // The same for the other direction: `written` contains the host's bytes since the last call,
    // `receiverRate` is the receiver's rate. Returns the bytes that the receiver reads by now.
    Bytes ToReceiver(const Bytes& written, uint32_t receiverRate, double runSeconds);

    // Random bytes, sent next.
    void AddNoiseBurst(size_t count) { NoiseBytes += count; }

    bool Idle() const { return Sending.bytes.empty() && NoiseBytes == 0; }
    size_t WaitingForReceiver() const { return Written.size(); }

    LineFaults Faults;
    uint64_t BytesToHost = 0, BytesToReceiver = 0;

private:
    struct Direction {
        MismatchedUart uart;
        uint32_t sender = 0, reader = 0;
        double freeAt = 0; // time at which the wire has carried the last byte
        void Carry(uint8_t byte, uint32_t senderRate, uint32_t readerRate, Bytes& read);
        void LieIdle(double untilSeconds, Bytes& read);
    };
    bool Damage(uint8_t& byte); // false: the byte is lost

    Random Noise;
    uint32_t HostRate = 0;
    Direction Down, Up;
    Burst Sending; // the burst that is now on the wire
    size_t Sent = 0;
    size_t NoiseBytes = 0;
    std::deque<uint8_t> Written;
};

} // namespace receiver
