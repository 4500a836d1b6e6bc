// SPDX-License-Identifier: MIT
// A pseudo-terminal that stands for a serial port. One source file for each system.
#pragma once

#include <asio.hpp>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace console
{

class PseudoTerminal
{
public:
    virtual ~PseudoTerminal() = default; // removes the link

    // For a program that has the terminal open; bytes that it does not read in time, or while none has it
    // open, are lost.
    virtual void Write(std::string_view bytes) = 0;
};

// Makes a terminal in raw mode behind a symbolic link. An older link is replaced, anything else at its place
// is not. `received` gets what is written to it. Throws Failure, of the kind Usage where the system has no
// such thing.
std::unique_ptr<PseudoTerminal> MakePseudoTerminal(asio::io_context& context, const std::string& link,
                                                   std::function<void(std::span<const uint8_t>)> received);

} // namespace console
