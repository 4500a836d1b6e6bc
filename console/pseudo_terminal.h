// SPDX-License-Identifier: MIT
// A pseudo-terminal that acts as a serial port. One source file for each system.
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

    // Sends bytes to the program that has the terminal open. Bytes are lost if it does not read them in time,
    // or if no program has the terminal open.
    virtual void Write(std::string_view bytes) = 0;
};

// Makes a terminal in raw mode, and a symbolic link to it. An older link is replaced; any other file at its
// place is not. `received` gets the bytes that are written to the terminal. Throws Failure; of the kind Usage
// on a system without pseudo-terminals.
std::unique_ptr<PseudoTerminal> MakePseudoTerminal(asio::io_context& context, const std::string& link,
                                                   std::function<void(std::span<const uint8_t>)> received);

} // namespace console
