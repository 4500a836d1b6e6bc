// SPDX-License-Identifier: MIT
// The program's threads as fibers, and the page's clock. A step runs the program from the page's call until
// every thread waits; then the page continues, and knows the time of the next step.
#include "platform/web/web.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include <emscripten.h>
#include <emscripten/fiber.h>

#include "messages.h"

extern "C" {                  // imports.js
double toravane_local_time(); // milliseconds since 1970
void toravane_send(const void* message, size_t length);
}

namespace memory
{

struct Turn {
    static constexpr size_t StackBytes = 256 * 1024;

    emscripten_fiber_t fiber;
    alignas(16) char stack[StackBytes];      // the stack of the code itself
    alignas(16) char savedStack[StackBytes]; // copy of the stack while it waits
    std::shared_ptr<Thread> starting;
    void (*run)(std::shared_ptr<Thread>) = nullptr;
};

namespace
{

constexpr uint64_t FirstTick = 100000; // milliseconds
constexpr double Milliseconds1601To1970 = 11644473600000.0;
constexpr uint64_t LongestPause = 60'000'000;

emscripten_fiber_t Page;
alignas(16) char PageStack[16 * 1024];
emscripten_fiber_t* Running = nullptr; // the fiber that continues in the next step
std::shared_ptr<Thread> Dead;          // freed by the thread that runs next
double Pause = 0;                      // milliseconds until the next step, -1 none

uint64_t Ahead = 0, HurryEnd = 0; // of the page's clock, microseconds
double Beginning = -1;

void Swap(emscripten_fiber_t& from, emscripten_fiber_t& to)
{
    emscripten_fiber_swap(&from, &to);
    Dead.reset();
}

void SwapToPage(emscripten_fiber_t& from)
{
    Running = &from;
    Swap(from, Page);
}

void Begin(void* argument)
{
    Dead.reset();
    Turn& turn = *static_cast<Turn*>(argument);
    turn.run(std::move(turn.starting));
}

Turn* Current = nullptr;

} // namespace

uint64_t Now()
{
    if (Beginning < 0) Beginning = emscripten_get_now();
    return Ahead + static_cast<uint64_t>((emscripten_get_now() - Beginning) * 1000);
}

DWORD Tick()
{
    return static_cast<DWORD>(Now() / 1000 + FirstTick);
}

int64_t LocalMilliseconds()
{
    return static_cast<int64_t>(toravane_local_time() + Milliseconds1601To1970);
}

std::shared_ptr<Turn> MakeTurn()
{
    return std::make_shared<Turn>();
}

void StartTurns(std::shared_ptr<Thread> thread, void (*run)(std::shared_ptr<Thread>))
{
    Turn& turn = *thread->turn;
    turn.run = run;
    turn.starting = std::move(thread);
    emscripten_fiber_init(&turn.fiber, Begin, &turn, turn.stack, sizeof turn.stack, turn.savedStack,
                          sizeof turn.savedStack);
}

void SwitchTurn(Thread& me, Thread& next)
{
    Current = next.turn.get();
    Swap(me.turn->fiber, next.turn->fiber);
}

void LeaveTurns(std::shared_ptr<Thread> me, Thread& next)
{
    Current = next.turn.get();
    Turn& mine = *me->turn;
    Dead = std::move(me);
    emscripten_fiber_swap(&mine.fiber, &next.turn->fiber);
}

void PassTime(uint64_t until)
{
    const uint64_t now = Now();
    if (until <= HurryEnd) {
        Ahead += until > now ? until - now : 0;
        return;
    }
    const uint64_t left = std::min(until - std::min(until, now), LongestPause);
    Pause = until == Never ? -1 : std::ceil(static_cast<double>(left) / 1000);
    SwapToPage(Current->fiber);
}

void Stop(const std::string& why)
{
    emscripten_log(EM_LOG_ERROR, "%s", why.c_str());
    std::abort();
}

} // namespace memory

namespace web
{

using namespace memory;

namespace
{

bool Ended = false;
std::string Message; // from the page

void RunToEnd(std::shared_ptr<Thread>)
{
    const int exitCode = Start();
    UpdateView();
    ToPageEnded(exitCode);
    Ended = true;
    PassTime(Never);
}

} // namespace

void HandOut(const std::string& message)
{
    toravane_send(message.data(), message.size());
}

void HurryUntil(uint64_t time)
{
    HurryEnd = time;
}

void Breathe()
{
    Pause = 0;
    SwapToPage(Current->fiber);
}

double PageTime()
{
    return emscripten_get_now();
}

void OnStart()
{
    if (Running) return;
    emscripten_fiber_init_from_current_context(&Page, PageStack, sizeof PageStack);
    Current = Me().turn.get();
    StartTurns(Threads().front(), RunToEnd);
    Running = &Current->fiber;
}

} // namespace web

extern "C" {

// Returns the address of a buffer for a message of this number of bytes to the program.
EMSCRIPTEN_KEEPALIVE void* toravane_buffer(size_t length)
{
    web::Message.resize(length);
    return web::Message.data();
}

EMSCRIPTEN_KEEPALIVE void toravane_receive()
{
    const std::string message = std::move(web::Message);
    if (!web::Receive(message)) memory::Stop("a message that the program does not know");
}

EMSCRIPTEN_KEEPALIVE void toravane_step()
{
    if (!memory::Running || web::Ended) return;
    emscripten_fiber_swap(&memory::Page, memory::Running);
    if (web::Ended) return;
    web::AfterStep();
    web::UpdateView();
}

EMSCRIPTEN_KEEPALIVE double toravane_pause()
{
    return memory::Running && !web::Ended ? memory::Pause : -1;
}
}
