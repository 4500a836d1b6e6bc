// SPDX-License-Identifier: MIT
#include "console/event_loop.h"

#include "console/system.h"

namespace console
{

EventLoop::EventLoop() : signals_(context_)
{
    for (const int number : EndingSignals()) signals_.add(number);
    AwaitSignal();
}

void EventLoop::AwaitSignal()
{
    signals_.async_wait([this](const asio::error_code& error, int) {
        if (error) return;
        interrupted_ = true;
        AwaitSignal();
    });
}

void EventLoop::Stop(Failure failure)
{
    if (!failure_) failure_ = std::move(failure);
}

bool EventLoop::WaitFor(const std::function<bool()>& done, Duration limit)
{
    const Clock::time_point end = Clock::now() + limit;
    for (;;) {
        if (done && done()) return true;
        if (failure_) throw Failure(*failure_);
        if (interrupted_ && !holds_) Fail(FailureKind::Interrupted, "interrupted");
        if (Clock::now() >= end) return false;
        if (context_.stopped()) context_.restart();
        context_.run_one_until(end);
    }
}

} // namespace console
