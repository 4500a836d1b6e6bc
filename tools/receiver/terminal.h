// SPDX-License-Identifier: MIT
#pragma once
// The pseudo-terminal that acts as the serial port.

#include "big_endian.h"

#include <optional>
#include <string>

namespace receiver
{

class Terminal
{
public:
    Terminal() = default;
    ~Terminal() { Close(); }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    // Makes a terminal in raw mode at this rate; with a `link` also a symbolic link to it, which replaces an
    // older link. On failure false, with one line of text in `error`.
    bool Open(const std::string& link, uint32_t rate, std::string& error);
    void Close(); // and removes the link

    bool IsOpen() const { return Master >= 0; }
    const std::string& Path() const { return SlavePath; }

    // True if a program has the other side open. While no program has it open, nothing is written, and bytes
    // that were not read are discarded, as at a port without a listener.
    bool HostPresent();

    // The rate that the host has set, bits per second; 0 if it is an unknown rate.
    uint32_t HostRate() const;

    // These never block. Bytes that the host does not read in time are lost.
    void Write(const Bytes& bytes);
    Bytes Read();

    // Waits until the host has written or the time has passed.
    void Wait(int milliseconds);

    uint64_t BytesLost = 0;

private:
    int Master = -1;
    bool Present = false;
    std::string SlavePath, Link;
};

} // namespace receiver
