// SPDX-License-Identifier: MIT
#pragma once
// For all of the receiver's tests: bytes as hexadecimal text, and a started receiver that takes commands.

#include "receiver/receiver.h"

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

inline receiver::Bytes FromHex(std::string_view text)
{
    receiver::Bytes bytes;
    unsigned value = 0;
    int digits = 0;
    for (const char c : text) {
        if (c == ' ') continue;
        value = value * 16 + static_cast<unsigned>(c <= '9' ? c - '0' : c - 'A' + 10);
        if (++digits % 2 == 0) {
            bytes.push_back(static_cast<uint8_t>(value));
            value = 0;
        }
    }
    return bytes;
}

inline std::string ToHex(std::span<const uint8_t> bytes)
{
    std::string text;
    for (const uint8_t byte : bytes) {
        char two[4];
        std::snprintf(two, sizeof two, "%02X", byte);
        text += (text.empty() ? "" : " ") + std::string(two);
    }
    return text;
}

// A receiver just after its start-up text, with an empty output queue.
struct Bench {
    explicit Bench(receiver::Protocol protocol, uint32_t rate = 38400) : Bench(ConfigFor(protocol, rate)) {}
    explicit Bench(const receiver::Config& config) : sim(config)
    {
        sim.Advance(0.9);
        sim.Output.clear();
    }

    static receiver::Config ConfigFor(receiver::Protocol protocol, uint32_t rate)
    {
        receiver::Config config;
        config.protocol = protocol;
        config.lineRate = rate;
        config.start = {898077614000}; // 2008-06-21 10:00:00 UTC
        return config;
    }

    void Say(std::string_view text)
    {
        for (const char c : text) sim.HostByte(static_cast<uint8_t>(c));
    }
    void SayHex(std::string_view hex)
    {
        for (const uint8_t byte : FromHex(hex)) sim.HostByte(byte);
    }

    // The bursts that were queued since the last call.
    std::vector<receiver::Burst> Bursts()
    {
        std::vector<receiver::Burst> bursts(sim.Output.begin(), sim.Output.end());
        sim.Output.clear();
        return bursts;
    }
    std::string Text()
    {
        std::string text;
        for (const receiver::Burst& burst : Bursts()) text.append(burst.bytes.begin(), burst.bytes.end());
        return text;
    }
    std::string Hex()
    {
        receiver::Bytes all;
        for (const receiver::Burst& burst : Bursts()) {
            all.insert(all.end(), burst.bytes.begin(), burst.bytes.end());
        }
        return ToHex(all);
    }
    // Payloads of the SiRF frames with this message id.
    std::vector<receiver::Bytes> Payloads(uint8_t mid)
    {
        std::vector<receiver::Bytes> payloads;
        for (const receiver::Burst& burst : Bursts()) {
            if (burst.bytes[4] == mid) payloads.emplace_back(burst.bytes.begin() + 4, burst.bytes.end() - 4);
        }
        return payloads;
    }

    receiver::Receiver sim;
};
