// SPDX-License-Identifier: MIT
// The threads take turns: only the thread that has the turn runs. When it waits, it gives the turn to the
// thread whose time comes first. While there is only one thread, no lock is taken.
#include "platform/memory/memory.h"

#include <algorithm>

namespace memory
{

namespace
{

constexpr DWORD FirstThreadId = 0x100;

// Never freed: a thread that is still waiting when the process ends must find it.
struct Scheduler {
    std::vector<std::shared_ptr<Thread>> threads;
    uint64_t tickets = 0;
    DWORD nextId = FirstThreadId;
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
    thread->turn = MakeTurn();
    State().threads.push_back(thread);
    return thread;
}

// The thread that can run first, if its time has come.
Thread& AwaitNext()
{
    for (;;) {
        Thread* next = nullptr;
        for (const auto& thread : State().threads) {
            if (!thread->waiting || thread->wakeTime == Never) continue;
            if (!next || thread->wakeTime < next->wakeTime ||
                (thread->wakeTime == next->wakeTime && thread->ticket < next->ticket))
                next = thread.get();
        }
        if (next && next->wakeTime <= Now()) return *next;
        PassTime(next ? next->wakeTime : Never);
    }
}

// Real threads each check their own time.
void AwaitTime(Thread& me)
{
    while (me.wakeTime > Now()) PauseReally();
    me.waiting = false;
}

void SwitchTo(Thread& me, Thread& next)
{
    if (&next != &me) {
        SwitchTurn(me, next);
        Current = &me;
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

void RunThread(std::shared_ptr<Thread> me)
{
    Current = me.get();
    TakeOver(me.get());
    me->waiting = false;
    DWORD exitCode;
    {
        const InProgram program;
        exitCode = me->start(me->parameter);
    }

    // Its windows are destroyed with it; threads that have sent messages to them get an answer.
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
    Thread& next = AwaitNext();
    LeaveTurns(std::move(me), next);
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

Thread& Me()
{
    if (Current) [[likely]]
        return *Current;
    if (!State().threads.empty()) Stop("a call from a thread that CreateThread has not made");
    Current = AddThread().get();
    return *Current;
}

Thread& UserInterfaceThread()
{
    Me();
    return *State().threads.front();
}

const std::vector<std::shared_ptr<Thread>>& Threads()
{
    return State().threads;
}

unsigned Wait(uint64_t until, unsigned wakes, WaitReason reason)
{
    Thread& me = Me();
    EnterWait(me, until, wakes, reason);
    if (RealThreads)
        AwaitTime(me);
    else
        SwitchTo(me, AwaitNext());
    return me.woken;
}

void Wake(Thread& thread, unsigned why)
{
    if (!thread.waiting || (thread.wakes & why) == 0) return;
    thread.woken |= why;
    if (thread.wakeTime <= Now()) return;
    thread.wakeTime = Now();
    thread.ticket = ++State().tickets;
}

void WakeAll(unsigned why)
{
    for (const auto& thread : State().threads) Wake(*thread, why);
}

void YieldTurn()
{
    if (State().threads.size() > 1) Wait(Now(), 0, {"its turn"});
}

void GiveWay(Thread& other)
{
    Thread& me = Me();
    EnterWait(me, Now(), 0, {"its turn"});
    SwitchTo(me, other);
}

int64_t MillisecondsOf(const SYSTEMTIME& time)
{
    const int64_t seconds = DaysOfDate(time.wYear, time.wMonth, time.wDay) * 86400 + time.wHour * 3600 +
                            time.wMinute * 60 + time.wSecond;
    return seconds * 1000 + time.wMilliseconds;
}

// True if a handle of a thread belongs to one that has ended.
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
        Stop("the system is reset while other threads live");
    state = Scheduler{};
    Current = nullptr;
    Me();
}

} // namespace memory

using namespace memory;

HANDLE CreateThread(void*, DWORD, LPTHREAD_START_ROUTINE start, void* parameter, DWORD flags, DWORD* id)
{
    if (Fails(Call::CreateThread)) return nullptr;
    if (!start || flags != 0) return Fail(ERROR_INVALID_PARAMETER), nullptr;
    Me();
    auto object = std::make_shared<ThreadObject>();
    object->thread = AddThread();
    object->thread->start = start;
    object->thread->parameter = parameter;
    EnterWait(*object->thread, Now(), 0, {"its turn"});
    HandOver(object->thread.get());
    StartTurns(object->thread, RunThread);
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
    Wait(milliseconds == INFINITE ? Never : Now() + uint64_t{milliseconds} * 1000, 0,
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
    const int64_t milliseconds = LocalMilliseconds();
    const int64_t seconds = milliseconds / 1000, ofDay = seconds % 86400;
    DateOfDays(seconds / 86400, *time);
    time->wHour = static_cast<WORD>(ofDay / 3600);
    time->wMinute = static_cast<WORD>(ofDay / 60 % 60);
    time->wSecond = static_cast<WORD>(ofDay % 60);
    time->wMilliseconds = static_cast<WORD>(milliseconds % 1000);
}
