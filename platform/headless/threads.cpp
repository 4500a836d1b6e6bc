// SPDX-License-Identifier: MIT
// Threads of the operating system, of which only one runs at a time.
#include "platform/headless/internal.h"

#include <condition_variable>
#include <mutex>
#include <thread>

namespace memory
{

struct Turn {
    std::mutex mutex;
    std::condition_variable given;
    bool has = false;
};

namespace
{

void Give(Turn& turn)
{
    const std::lock_guard lock(turn.mutex);
    turn.has = true;
    turn.given.notify_one();
}

void Await(Turn& turn)
{
    std::unique_lock lock(turn.mutex);
    turn.given.wait(lock, [&] { return turn.has; });
    turn.has = false;
}

void Begin(std::shared_ptr<Thread> thread, void (*run)(std::shared_ptr<Thread>))
{
    if (!RealThreads) Await(*thread->turn);
    run(std::move(thread));
}

} // namespace

std::shared_ptr<Turn> MakeTurn()
{
    return std::make_shared<Turn>();
}

void StartTurns(std::shared_ptr<Thread> thread, void (*run)(std::shared_ptr<Thread>))
{
    std::thread(Begin, std::move(thread), run).detach();
}

void SwitchTurn(Thread& me, Thread& next)
{
    Give(*next.turn);
    Await(*me.turn);
}

void LeaveTurns(std::shared_ptr<Thread>, Thread& next)
{
    Give(*next.turn);
}

} // namespace memory
