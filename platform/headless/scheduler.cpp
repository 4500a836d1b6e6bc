// The virtual clock, and the threads that take turns on it. Only the thread that has the turn runs; it gives
// the turn away where it waits, to the thread whose time comes first. While only one thread lives nothing
// here takes a lock.
#include "platform/headless/internal.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <thread>

namespace headless
{

bool Interleaving;

namespace
{

constexpr DWORD FirstThreadId = 0x100;
constexpr DWORD FirstTick = 100000; // milliseconds
constexpr uint64_t DefaultTimeLimit = 10ull * 3600 * 1000000;

// Never freed: a thread that is still waiting when the process ends must find it.
struct Scheduler {
    std::vector<std::shared_ptr<Thread>> threads; // alive; the user interface's first
    uint64_t now = 0, limit = DefaultTimeLimit, tickets = 0;
    DWORD nextId = FirstThreadId, tickOffset = FirstTick;
    uint32_t random = 0;
    int64_t localSeconds = 0; // at time 0, since 1601
    WORD localMilliseconds = 0;
};

Scheduler& State()
{
    static Scheduler& state = *new Scheduler;
    return state;
}

thread_local Thread* Current; // kept alive by State, and while it runs by RunThread

struct ThreadObject : Object {
    std::shared_ptr<Thread> thread;
};

std::shared_ptr<Thread> AddThread()
{
    auto thread = std::make_shared<Thread>();
    thread->id = State().nextId++;
    State().threads.push_back(thread);
    return thread;
}

void GiveTurn(Thread& next)
{
    const std::lock_guard lock(next.mutex);
    next.hasTurn = true;
    next.turn.notify_one();
}

void AwaitTurn(Thread& me)
{
    std::unique_lock lock(me.mutex);
    me.turn.wait(lock, [&] { return me.hasTurn; });
    me.hasTurn = false;
}

Thread& PickNext()
{
    Thread* next = nullptr;
    for (const auto& thread : State().threads) {
        if (!thread->waiting || thread->wakeTime == Never) continue;
        if (!next || thread->wakeTime < next->wakeTime ||
            (thread->wakeTime == next->wakeTime && thread->ticket < next->ticket))
            next = thread.get();
    }
    if (!next) Stop("every thread waits, and nothing can end it");
    return *next;
}

// Real threads each look after their own time.
void AwaitTime(Thread& me)
{
    while (me.wakeTime > State().now) PauseReally();
    me.waiting = false;
}

void SwitchTo(Thread& me, Thread& next)
{
    if (next.wakeTime > State().now) SetNow(next.wakeTime);
    if (&next != &me) {
        GiveTurn(next);
        AwaitTurn(me);
    }
    me.waiting = false;
}

void EnterWait(Thread& me, uint64_t until, unsigned wakes, WaitReason reason)
{
    me.waiting = true;
    me.wakeTime = until;
    me.ticket = ++State().tickets;
    me.wakes = wakes;
    me.woken = 0;
    me.reason = reason;
}

void RunThread(std::shared_ptr<Thread> me, LPTHREAD_START_ROUTINE start, void* parameter)
{
    Current = me.get();
    if (!RealThreads) AwaitTurn(*me);
    TakeOver(me.get());
    me->waiting = false;
    DWORD exitCode;
    {
        const InProgram program;
        exitCode = start(parameter);
    }

    // Its windows go with it; who sent to them gets an answer.
    for (const HWND handle : AllWindows()) {
        const Window* window = FindWin(handle);
        if (window && window->thread == me.get()) Destroy(handle);
    }
    while (!me->sent.empty()) {
        SentMessage& message = *me->sent.front();
        me->sent.pop_front();
        message.done = true;
        Wake(*message.sender, WakeReply);
    }
    me->exitCode = exitCode;
    me->ended = true;
    HandOver(me.get());
    std::erase(State().threads, me);
    WakeAll(WakeEnd);
    if (RealThreads) return;
    Thread& next = PickNext();
    if (next.wakeTime > State().now) SetNow(next.wakeTime);
    GiveTurn(next);
}

// Days since 1601-01-01 of the proleptic Gregorian calendar.
int64_t DaysOfDate(int64_t year, int64_t month, int64_t day)
{
    year -= month <= 2;
    const int64_t era = year / 400, yearOfEra = year - era * 400;
    const int64_t dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    return era * 146097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - 584694;
}

void DateOfDays(int64_t days, SYSTEMTIME& time)
{
    time.wDayOfWeek = static_cast<WORD>((days + 1) % 7); // 1601-01-01 was a Monday
    days += 584694;
    const int64_t era = days / 146097, dayOfEra = days - era * 146097;
    const int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const int64_t shifted = (5 * dayOfYear + 2) / 153;
    time.wDay = static_cast<WORD>(dayOfYear - (153 * shifted + 2) / 5 + 1);
    time.wMonth = static_cast<WORD>(shifted < 10 ? shifted + 3 : shifted - 9);
    time.wYear = static_cast<WORD>(yearOfEra + era * 400 + (time.wMonth <= 2));
}

} // namespace

void SetNow(uint64_t time)
{
    Scheduler& state = State();
    state.now = time;
    if (state.limit != 0 && time > state.limit) {
        state.limit = 0;
        Stop("the time limit is over");
    }
}

Thread& Me()
{
    if (Current) [[likely]]
        return *Current;
    if (!State().threads.empty()) Stop("a call from a thread that CreateThread has not made");
    HeadlessSetLocalTime({2008, 11, 0, 16, 4, 29, 5, 0});
    Current = AddThread().get();
    return *Current;
}

Thread& UserInterfaceThread()
{
    Me();
    return *State().threads.front();
}

uint64_t Now()
{
    return State().now;
}

DWORD Tick()
{
    return static_cast<DWORD>(State().now / 1000 + State().tickOffset);
}

unsigned Wait(uint64_t until, unsigned wakes, WaitReason reason)
{
    Thread& me = Me();
    EnterWait(me, until, wakes, reason);
    if (RealThreads)
        AwaitTime(me);
    else
        SwitchTo(me, PickNext());
    return me.woken;
}

void Wake(Thread& thread, unsigned why)
{
    if (!thread.waiting || (thread.wakes & why) == 0) return;
    thread.woken |= why;
    if (thread.wakeTime <= State().now) return;
    thread.wakeTime = State().now;
    thread.ticket = ++State().tickets;
}

void WakeAll(unsigned why)
{
    for (const auto& thread : State().threads) Wake(*thread, why);
}

void YieldTurn()
{
    if (State().threads.size() > 1) Wait(State().now, 0, {"its turn"});
}

void SwitchAtRandom()
{
    Scheduler& state = State();
    if (state.threads.size() < 2) return;
    state.random ^= state.random << 13;
    state.random ^= state.random >> 17;
    state.random ^= state.random << 5;
    const uint32_t random = state.random;
    SetNow(state.now + random % 128); // calls take a little time, so that sleepers get their chance too
    if ((random >> 8) % 4 != 0) return;
    std::vector<Thread*> others;
    for (const auto& thread : state.threads)
        if (thread->waiting && thread->wakeTime <= state.now) others.push_back(thread.get());
    if (others.empty()) return;
    Thread& me = Me();
    EnterWait(me, state.now, 0, {"its turn"});
    SwitchTo(me, *others[(random >> 12) % others.size()]);
}

void Stop(const std::string& why)
{
    const Scheduler& state = State();
    std::fprintf(stderr, "headless: %s (at %" PRIu64 " ms)\n", why.c_str(), state.now / 1000);
    for (const auto& thread : state.threads) {
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

// Whether a handle of a thread belongs to one that has ended.
bool ThreadEnded(HANDLE handle, bool& isThread)
{
    const auto object = std::dynamic_pointer_cast<ThreadObject>(FindObject(handle));
    isThread = object != nullptr;
    return isThread && object->thread->ended;
}

void ResetScheduler()
{
    Scheduler& state = State();
    if (state.threads.size() > 1 || (state.threads.size() == 1 && state.threads.front().get() != Current))
        Stop("HeadlessReset while other threads live");
    state = Scheduler{};
    Interleaving = false;
    Current = nullptr;
    Me();
}

} // namespace headless

using namespace headless;

void HeadlessSetTick(uint32_t milliseconds)
{
    State().tickOffset = milliseconds - static_cast<uint32_t>(State().now / 1000);
}

void HeadlessSetLocalTime(const SYSTEMTIME& time)
{
    Scheduler& state = State();
    const int64_t seconds = DaysOfDate(time.wYear, time.wMonth, time.wDay) * 86400 + time.wHour * 3600 +
                            time.wMinute * 60 + time.wSecond;
    const int64_t milliseconds = seconds * 1000 + time.wMilliseconds - static_cast<int64_t>(state.now / 1000);
    state.localSeconds = milliseconds / 1000;
    state.localMilliseconds = static_cast<WORD>(milliseconds % 1000);
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
    return static_cast<uint32_t>(State().threads.size() - 1);
}

HANDLE CreateThread(void*, DWORD, LPTHREAD_START_ROUTINE start, void* parameter, DWORD flags, DWORD* id)
{
    if (Fails(Call::CreateThread)) return nullptr;
    if (!start || flags != 0) return Fail(ERROR_INVALID_PARAMETER), nullptr;
    Me();
    auto object = std::make_shared<ThreadObject>();
    object->thread = AddThread();
    EnterWait(*object->thread, State().now, 0, {"its turn"});
    HandOver(object->thread.get());
    std::thread(RunThread, object->thread, start, parameter).detach();
    if (id) *id = object->thread->id;
    return NewHandle(object);
}

BOOL GetExitCodeThread(HANDLE thread, DWORD* exitCode)
{
    if (Fails(Call::GetExitCodeThread)) return FALSE;
    const auto object = std::dynamic_pointer_cast<ThreadObject>(FindObject(thread));
    if (!object) return Fail(ERROR_INVALID_HANDLE);
    if (object->thread->ended) TakeOver(object->thread.get());
    *exitCode = object->thread->exitCode;
    return TRUE;
}

DWORD GetCurrentThreadId()
{
    return Me().id;
}

void Sleep(DWORD milliseconds)
{
    PlatformCall();
    Wait(milliseconds == INFINITE ? Never : State().now + uint64_t{milliseconds} * 1000, 0,
         {"the end of Sleep of", milliseconds});
}

DWORD GetTickCount()
{
    PlatformCall();
    return Tick();
}

void GetLocalTime(SYSTEMTIME* time)
{
    PlatformCall();
    Me();
    const Scheduler& state = State();
    const int64_t milliseconds =
        state.localSeconds * 1000 + state.localMilliseconds + static_cast<int64_t>(state.now / 1000);
    const int64_t seconds = milliseconds / 1000, ofDay = seconds % 86400;
    DateOfDays(seconds / 86400, *time);
    time->wHour = static_cast<WORD>(ofDay / 3600);
    time->wMinute = static_cast<WORD>(ofDay / 60 % 60);
    time->wSecond = static_cast<WORD>(ofDay % 60);
    time->wMilliseconds = static_cast<WORD>(milliseconds % 1000);
}
