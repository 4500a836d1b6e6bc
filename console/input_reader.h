// SPDX-License-Identifier: MIT
// Reads a file or standard input in portions, so that a signal ends the program even while no input arrives.
#pragma once

#include <memory>
#include <string>

#include "console/event_loop.h"

namespace console
{

class InputReader
{
public:
    // "-" is standard input. Throws Failure when the file cannot be opened.
    InputReader(EventLoop& loop, const std::string& name);
    InputReader(const InputReader&) = delete;

    // The next portion; false at the end. Throws Failure when it cannot be read, and Interrupted.
    bool Next(std::string& portion);

    uint64_t BytesRead() const { return bytesRead_; }

private:
    struct Shared;

    EventLoop& loop_;
    std::string name_;
    std::shared_ptr<Shared> shared_;
    uint64_t bytesRead_ = 0;
};

} // namespace console
