// SPDX-License-Identifier: MIT
// The virtual clock: when every thread waits, it moves directly to the next event.
#include "platform/headless/internal.h"

#include <cinttypes>
#include <cstdio>
#include <cstdlib>

using namespace memory;

namespace
{

constexpr DWORD FirstTick = 100000; // milliseconds
constexpr uint64_t DefaultTimeLimit = 10ull * 3600 * 1000000;
constexpr SYSTEMTIME FirstLocalTime = {2008, 11, 0, 16, 4, 29, 5, 0};

// Never freed, because threads may still wait for it.
struct Clock {
    uint64_t now = 0, limit = DefaultTimeLimit;
    DWORD tickOffset = FirstTick;
    int64_t local = MillisecondsOf(FirstLocalTime); // at time 0
    uint32_t random = 0;
};

Clock& State()
{
    static Clock& state = *new Clock;
    return state;
}

} // namespace

namespace headless
{

void SetNow(uint64_t time)
{
    Clock& state = State();
    state.now = time;
    if (state.limit != 0 && time > state.limit) {
        state.limit = 0;
        Stop("the time limit is over");
    }
}

void ResetClock()
{
    State() = Clock{};
    Interleaving = false;
}

} // namespace headless

namespace memory
{

bool Interleaving;

uint64_t Now()
{
    return State().now;
}

DWORD Tick()
{
    return static_cast<DWORD>(State().now / 1000 + State().tickOffset);
}

int64_t LocalMilliseconds()
{
    return State().local + static_cast<int64_t>(State().now / 1000);
}

void PassTime(uint64_t until)
{
    if (until == Never) Stop("every thread waits, and nothing can end it");
    headless::SetNow(until);
}

void SwitchAtRandom()
{
    if (Threads().size() < 2) return;
    uint32_t& random = State().random;
    random ^= random << 13;
    random ^= random >> 17;
    random ^= random << 5;
    const uint32_t drawn = random;
    headless::SetNow(Now() + drawn % 128); // calls take a little time, so that sleeping threads can run, too
    if ((drawn >> 8) % 4 != 0) return;
    std::vector<Thread*> others;
    for (const auto& thread : Threads())
        if (thread->waiting && thread->wakeTime <= Now()) others.push_back(thread.get());
    if (!others.empty()) GiveWay(*others[(drawn >> 12) % others.size()]);
}

void Stop(const std::string& why)
{
    std::fprintf(stderr, "headless: %s (at %" PRIu64 " ms)\n", why.c_str(), Now() / 1000);
    for (const auto& thread : Threads()) {
        std::fprintf(stderr, "  thread %#x: ", thread->id);
        const WaitReason& reason = thread->reason;
        if (!thread->waiting) {
            std::fprintf(stderr, "runs\n");
            continue;
        }
        std::fprintf(stderr, "waits for %s %#" PRIx64, reason.what, reason.number);
        if (reason.from) std::fprintf(stderr, " from thread %#x", reason.from->id);
        if (thread->wakeTime != Never) std::fprintf(stderr, " until %" PRIu64 " ms", thread->wakeTime / 1000);
        std::fprintf(stderr, "\n");
    }
    std::fflush(stderr);
    std::abort();
}

} // namespace memory

void HeadlessSetTick(uint32_t milliseconds)
{
    State().tickOffset = milliseconds - static_cast<uint32_t>(State().now / 1000);
}

void HeadlessSetLocalTime(const SYSTEMTIME& time)
{
    State().local = MillisecondsOf(time) - static_cast<int64_t>(State().now / 1000);
}

uint64_t HeadlessElapsed()
{
    return State().now / 1000;
}

void HeadlessSetTimeLimit(uint64_t milliseconds)
{
    State().limit = milliseconds * 1000;
}

void HeadlessInterleave(uint32_t seed)
{
    State().random = seed;
    Interleaving = seed != 0;
}

uint32_t HeadlessLiveThreads()
{
    Me();
    return static_cast<uint32_t>(Threads().size() - 1);
}
