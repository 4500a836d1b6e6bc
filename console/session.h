// SPDX-License-Identifier: MIT
// One port from opening to closing. Received bytes go through the reception; sent messages are framed as the
// window program does it. Only the calls below send anything.
#pragma once

#include <string>
#include <vector>

#include "console/command.h"
#include "console/event_loop.h"
#include "console/reception.h"
#include "console/system.h"

namespace console
{

using Frame = std::vector<uint8_t>;

// Frames a sentence's body of at most 255 characters, or a payload of at most 255 bytes.
Frame FrameNmea(std::string_view body);
Frame FrameSirf(std::span<const uint8_t> payload);

// The port given by the options, or the only port of the computer. Throws Failure of the kind Usage.
std::string ChoosePort(const Options& options);

class Session
{
public:
    // Opens the port; throws Failure. `context` must live longer than the session.
    Session(Context& context, const std::string& port, uint32_t rate);
    ~Session();
    Session(const Session&) = delete;

    EventLoop& Loop() { return loop_; }
    const std::string& Port() const { return name_; }
    uint32_t Rate() const { return rate_; }
    uint64_t BytesReceived() const { return bytesReceived_; }

    // Waits like EventLoop::WaitFor, and receives meanwhile. If the device disappears, throws Failure of the
    // kind Failed.
    bool WaitFor(const std::function<bool()>& done, Duration limit) { return loop_.WaitFor(done, limit); }

    // Sets the rate after everything has been sent; an incomplete message of the old rate is forgotten.
    void SetRate(uint32_t rate);

    // Sends bytes unchanged, and returns when they have left the port. Throws Failure of the kind Failed if
    // the port does not accept them within a few seconds.
    void Send(const Frame& frame);

    // Sends bytes of another program.
    void SendRaw(std::span<const uint8_t> bytes);

private:
    void Transmit(std::span<const uint8_t> bytes);
    void Read();
    void Received(const asio::error_code& error, size_t count);
    // An error of the port: the device has disappeared, or `otherwise` with the system's text.
    Failure PortFailure(const asio::error_code& error, const std::string& otherwise) const;

    Context& context_;
    EventLoop loop_;
    asio::serial_port port_;
    asio::steady_timer rest_;
    std::string name_;
    uint32_t rate_;
    uint64_t bytesReceived_ = 0;
    int failedReads_ = 0; // in a row
    uint8_t buffer_[4096];
    Listener verbose_;
};

} // namespace console
