// SPDX-License-Identifier: MIT
// One port from its opening to its end: what arrives goes through reception, what is sent is framed as the
// program frames it. Nothing is sent but by the calls below.
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

// A sentence's body, of at most 255 characters, or a payload of at most 255 bytes as it goes out on the line.
Frame FrameNmea(std::string_view body);
Frame FrameSirf(std::span<const uint8_t> payload);

// The port that the options name, or the only one there is. Throws Failure of the kind Usage.
std::string ChoosePort(const Options& options);

class Session
{
public:
    // Opens the port; throws Failure. `context` outlives the session.
    Session(Context& context, const std::string& port, uint32_t rate);
    ~Session();
    Session(const Session&) = delete;

    EventLoop& Loop() { return loop_; }
    const std::string& Port() const { return name_; }
    uint32_t Rate() const { return rate_; }
    uint64_t BytesReceived() const { return bytesReceived_; }

    // Waits as EventLoop::WaitFor does while bytes arrive. A device that vanishes ends it with Failed.
    bool WaitFor(const std::function<bool()>& done, Duration limit) { return loop_.WaitFor(done, limit); }

    // Sets the rate when all has been sent; what was received at the old rate is forgotten.
    void SetRate(uint32_t rate);

    // Sends bytes as they are, and returns when they have gone over the line. Throws Failed when the port
    // does not take them within a few seconds.
    void Send(const Frame& frame);

    // Sends bytes that are no message of ours, without noting them for --verbose.
    void SendRaw(std::span<const uint8_t> bytes);

private:
    void Read();
    void Received(const asio::error_code& error, size_t count);
    // An error of the port: that the device has vanished, else `otherwise` and the system's text.
    Failure PortFailure(const asio::error_code& error, const std::string& otherwise) const;

    Context& context_;
    EventLoop loop_;
    asio::serial_port port_;
    asio::steady_timer rest_;
    std::string name_;
    uint32_t rate_;
    uint64_t bytesReceived_ = 0;
    uint8_t buffer_[4096];
    Listener verbose_;
};

} // namespace console
