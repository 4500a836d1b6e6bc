// SPDX-License-Identifier: MIT
#pragma once
// The pseudo-terminal that stands for the serial port.

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

    // Makes a terminal in raw mode at this rate; with a `link` also a symbolic link to it, in place of an
    // older link. False with a one-line text in `error`.
    bool Open(const std::string& link, uint32_t rate, std::string& error);
    void Close(); // and removes the link

    bool IsOpen() const { return Master >= 0; }
    const std::string& Path() const { return SlavePath; }

    // True if a program has the other side open. While none has, nothing is written, and what was
    // written and not read is thrown away, as with a port that nobody listens to.
    bool HostPresent();

    // The rate that the host has set, bits per second; 0 when it is none that we know.
    uint32_t HostRate() const;

    // Never block. What the host does not take in time is lost.
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
