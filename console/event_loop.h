// SPDX-License-Identifier: MIT
// The program's one thread of events: bytes, timers and signals.
#pragma once

#include <asio.hpp>
#include <chrono>
#include <functional>
#include <optional>

#include "console/result.h"

namespace console
{

using Clock = std::chrono::steady_clock;
using Duration = Clock::duration;

inline Duration Seconds(double seconds)
{
    return std::chrono::duration_cast<Duration>(std::chrono::duration<double>(seconds));
}

class EventLoop
{
public:
    // From now on the ending signals end a wait, not the program.
    EventLoop();

    asio::io_context& Context() { return context_; }

    // Serves events until `done` holds or the time has passed; returns true if it holds. `done` is called
    // after each event; if it is empty, only the time ends the wait. Throws the failure given to Stop, and
    // Interrupted after a signal.
    bool WaitFor(const std::function<bool()>& done, Duration limit);

    // Ends the current wait, and all later ones, with this failure. Only the first failure counts.
    void Stop(Failure failure);

    bool IsInterrupted() const { return interrupted_; }

    // While an object of this class exists, signals are noted but end no wait: for a way back that must be
    // completed.
    class Hold
    {
    public:
        explicit Hold(EventLoop& loop) : loop_(loop) { ++loop_.holds_; }
        ~Hold() { --loop_.holds_; }
        Hold(const Hold&) = delete;

    private:
        EventLoop& loop_;
    };

private:
    void AwaitSignal();

    asio::io_context context_{1};
    asio::signal_set signals_;
    std::optional<Failure> failure_;
    bool interrupted_ = false;
    int holds_ = 0;
};

} // namespace console
