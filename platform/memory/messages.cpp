// SPDX-License-Identifier: MIT
// Message queues. A message sent to a window of another thread waits until that thread serves it: in
// GetMessageW and PeekMessageW, and while it itself waits for the answer to a message that it has sent.
#include "platform/memory/memory.h"

#include <algorithm>

namespace memory
{

namespace
{

constexpr size_t MostPosted = 10000;
constexpr DWORD NotEnoughQuota = 1816;
constexpr DWORD WaitsForPosted = 0x8, WaitsForTimer = 0x10, WaitsForPaint = 0x20, WaitsForKeys = 0x1,
                AllInput = 0xFF;
constexpr uint64_t ShortestTimer = 10000; // microseconds
constexpr uint32_t MostPaintRequests = 10000;
constexpr UINT_PTR FirstFreeTimer = 0x7000;

bool Passes(HWND window, UINT message, HWND filter, UINT first, UINT last)
{
    return (!filter || IsAncestor(filter, window)) &&
           ((first == 0 && last == 0) || (message >= first && message <= last));
}

Timer* DueTimer(Thread& thread, HWND filter)
{
    Timer* due = nullptr;
    for (Timer& timer : thread.timers)
        if (timer.due <= Now() && (!filter || IsAncestor(filter, timer.window)) &&
            (!due || timer.due < due->due))
            due = &timer;
    return due;
}

// The first available message: posted ones, then the end, then paints, then timers.
bool Take(Thread& me, MSG& message, HWND filter, UINT first, UINT last, bool remove)
{
    for (auto posted = me.posted.begin(); posted != me.posted.end(); ++posted) {
        if (!Passes(posted->message.hwnd, posted->message.message, filter, first, last)) continue;
        message = posted->message;
        if (remove) {
            TakeOver(&me.posted);
            me.character = posted->character;
            me.posted.erase(posted);
        }
        return true;
    }
    message = {nullptr, WM_NULL, 0, 0, Tick(), {0, 0}};
    if (me.quit) {
        message.message = WM_QUIT;
        message.wParam = static_cast<WPARAM>(me.quitCode);
        if (remove) me.quit = false;
        return true;
    }
    if (Window* window = InvalidWindow(me, filter);
        window && Passes(window->handle, WM_PAINT, filter, first, last)) {
        if (remove && ++window->paintRequests > MostPaintRequests)
            Stop("a window is asked to paint for ever, it never does");
        message.hwnd = window->handle;
        message.message = WM_PAINT;
        return true;
    }
    if (Timer* timer = DueTimer(me, filter); timer && Passes(timer->window, WM_TIMER, filter, first, last)) {
        message.hwnd = timer->window;
        message.message = WM_TIMER;
        message.wParam = timer->id;
        message.lParam = reinterpret_cast<LPARAM>(timer->procedure);
        if (remove) timer->due = Now() + timer->period;
        return true;
    }
    return false;
}

void Answer(SentMessage& message, LRESULT result)
{
    message.result = result;
    message.done = true;
    HandOver(&message);
    Wake(*message.sender, WakeReply);
}

bool IsUserInterface(const Thread& thread)
{
    return &thread == &UserInterfaceThread();
}

bool HasInput(Thread& thread, DWORD mask)
{
    if ((mask & QS_SENDMESSAGE) && !thread.sent.empty()) return true;
    if ((mask & (WaitsForPosted | WaitsForKeys)) && (!thread.posted.empty() || thread.quit)) return true;
    if ((mask & WaitsForPaint) && InvalidWindow(thread, nullptr)) return true;
    return (mask & WaitsForTimer) && DueTimer(thread, nullptr);
}

} // namespace

uint64_t NextTimer(const Thread& thread)
{
    uint64_t next = Never;
    for (const Timer& timer : thread.timers) next = std::min(next, timer.due);
    return next;
}

// Runs a window's procedure, on the window's own thread.
LRESULT CallProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    const Window* found = FindWin(window);
    if (!found) return 0;
    switch (found->kind) {
    case Kind::Plain:
        if (const WNDPROC procedure = found->windowClass.procedure) {
            const InProgram program;
            return procedure(window, message, wParam, lParam);
        }
        return DefWindowProcW(window, message, wParam, lParam);
    case Kind::Dialog: return DialogProcedure(window, message, wParam, lParam);
    default: return ControlProcedure(window, message, wParam, lParam);
    }
}

LRESULT Send(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    const Window* found = NeedWindow(window);
    if (!found) return 0;
    Thread& me = Me();
    if (found->thread == &me) return CallProcedure(window, message, wParam, lParam);
    SentMessage sent{window, message, wParam, lParam, &me, false, 0};
    HandOver(&sent);
    found->thread->sent.push_back(&sent);
    Wake(*found->thread, WakeSent);
    while (!sent.done) {
        ServeSent();
        if (!sent.done) Wait(Never, WakeSent | WakeReply, {"the answer to message", message, found->thread});
    }
    TakeOver(&sent);
    return sent.result;
}

void ServeSent()
{
    Thread& me = Me();
    while (!me.sent.empty()) {
        SentMessage& sent = *me.sent.front();
        me.sent.pop_front();
        TakeOver(&sent);
        Answer(sent, CallProcedure(sent.window, sent.message, sent.wParam, sent.lParam));
    }
}

bool Post(Thread& thread, const MSG& message, wchar_t character)
{
    if (thread.posted.size() >= MostPosted) return Fail(NotEnoughQuota);
    thread.posted.push_back({message, character});
    HandOver(&thread.posted);
    Wake(thread, WakeInput);
    return true;
}

// For a window that has been destroyed: its messages are not delivered, and senders get 0.
void ForgetMessages(const Window& window)
{
    Thread& thread = *window.thread;
    std::erase_if(thread.posted,
                  [&](const PostedMessage& posted) { return posted.message.hwnd == window.handle; });
    std::erase_if(thread.timers, [&](const Timer& timer) { return timer.window == window.handle; });
    std::erase_if(thread.sent, [&](SentMessage* sent) {
        if (sent->window != window.handle) return false;
        Answer(*sent, 0);
        return true;
    });
}

void Translate(const MSG& message)
{
    Thread& me = Me();
    if (message.message != WM_KEYDOWN || me.character == 0) return;
    MSG character = message;
    character.message = WM_CHAR;
    character.wParam = static_cast<WPARAM>(me.character);
    me.character = 0;
    me.posted.push_front({character, 0});
}

LRESULT Dispatch(const MSG& message)
{
    if (message.message == WM_TIMER && message.lParam != 0) {
        reinterpret_cast<TIMERPROC>(message.lParam)(message.hwnd, WM_TIMER, message.wParam, message.time);
        return 0;
    }
    return FindWin(message.hwnd)
               ? CallProcedure(message.hwnd, message.message, message.wParam, message.lParam)
               : 0;
}

Next NextMessage(MSG& message, HWND window, UINT first, UINT last, const std::function<bool()>& stop,
                 Idle idle)
{
    Thread& me = Me();
    bool yielded = false;
    for (;;) {
        ServeSent();
        if (stop && stop()) return Next::Stopped;
        // If the reader really runs at the same time, there may always be something to paint.
        if (RealThreads && IsUserInterface(me) && RunUserStep()) continue;
        if (Take(me, message, window, first, last, true))
            return message.message == WM_QUIT ? Next::Quit : Next::Message;
        // Other threads that can run now may have messages for this thread; only after them it is idle.
        if (!yielded) {
            yielded = true;
            YieldTurn();
            continue;
        }
        yielded = false;
        const bool user = IsUserInterface(me);
        if (user && RunUserStep()) continue;
        const uint64_t step = user ? UserStepTime() : Never;
        if (idle == Idle::Return && step == Never) return Next::Stopped;
        Wait(std::min(NextTimer(me), step), WakeSent | WakeInput, {"a message"});
    }
}

// Dispatches the present messages. The end of the program stays in the queue for the outer loop.
void PumpMessages()
{
    Thread& me = Me();
    MSG message;
    for (ServeSent(); Take(me, message, nullptr, 0, 0, false) && message.message != WM_QUIT; ServeSent()) {
        Take(me, message, nullptr, 0, 0, true);
        Translate(message);
        if (!DialogKey(message)) Dispatch(message);
    }
}

} // namespace memory

using namespace memory;

LRESULT SendMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    PlatformCall();
    return Send(window, message, wParam, lParam);
}

BOOL PostMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (Fails(Call::PostMessageW)) return FALSE;
    if (!window) return Post(Me(), {nullptr, message, wParam, lParam, Tick(), {0, 0}});
    const Window* found = NeedWindow(window);
    return found && Post(*found->thread, {window, message, wParam, lParam, Tick(), {0, 0}});
}

void PostQuitMessage(int exitCode)
{
    PlatformCall();
    Me().quit = true;
    Me().quitCode = exitCode;
}

BOOL GetMessageW(MSG* message, HWND window, UINT first, UINT last)
{
    if (Fails(Call::GetMessageW)) return -1;
    if (window && !NeedWindow(window)) return -1;
    return NextMessage(*message, window, first, last, nullptr, Idle::Wait) == Next::Message;
}

BOOL PeekMessageW(MSG* message, HWND window, UINT first, UINT last, UINT flags)
{
    PlatformCall();
    ServeSent();
    const UINT kinds = flags >> 16;
    if (kinds != 0 && (kinds & ~QS_SENDMESSAGE) == 0) return FALSE; // only sent messages were requested
    return Take(Me(), *message, window, first, last, (flags & PM_REMOVE) != 0);
}

BOOL TranslateMessage(const MSG* message)
{
    PlatformCall();
    Translate(*message);
    return message->message == WM_KEYDOWN;
}

LRESULT DispatchMessageW(const MSG* message)
{
    PlatformCall();
    return Dispatch(*message);
}

UINT_PTR SetTimer(HWND window, UINT_PTR id, UINT period, TIMERPROC procedure)
{
    if (Fails(Call::SetTimer)) return 0;
    Thread& me = Me();
    if (window) {
        const Window* found = NeedWindow(window);
        if (!found) return 0;
        if (found->thread != &me) return Fail(ERROR_ACCESS_DENIED);
    } else {
        id = FirstFreeTimer;
        for (const Timer& timer : me.timers) id = std::max(id, timer.id + 1);
    }
    std::erase_if(me.timers, [&](const Timer& timer) { return timer.window == window && timer.id == id; });
    const uint64_t microseconds = std::max(ShortestTimer, uint64_t{period} * 1000);
    me.timers.push_back({window, id, microseconds, Now() + microseconds, procedure});
    return id != 0 ? id : 1;
}

BOOL KillTimer(HWND window, UINT_PTR id)
{
    if (Fails(Call::KillTimer)) return FALSE;
    if (window && !NeedWindow(window)) return FALSE;
    const size_t killed = std::erase_if(
        Me().timers, [&](const Timer& timer) { return timer.window == window && timer.id == id; });
    return killed != 0 || Fail(ERROR_INVALID_PARAMETER);
}

DWORD MsgWaitForMultipleObjectsEx(DWORD count, const HANDLE* handles, DWORD milliseconds, DWORD wakeMask,
                                  DWORD)
{
    if (Fails(Call::MsgWaitForMultipleObjectsEx)) return WAIT_FAILED;
    Thread& me = Me();
    const uint64_t end = milliseconds == INFINITE ? Never : Now() + uint64_t{milliseconds} * 1000;
    for (;;) {
        for (DWORD i = 0; i < count; ++i) {
            bool isThread = false;
            const bool ended = ThreadEnded(handles[i], isThread);
            if (!isThread) return Fail(ERROR_INVALID_HANDLE), WAIT_FAILED;
            if (ended) return WAIT_OBJECT_0 + i;
        }
        if (HasInput(me, wakeMask)) return WAIT_OBJECT_0 + count;
        if (Now() >= end) return WAIT_TIMEOUT;
        const unsigned wakes = WakeEnd | (wakeMask & QS_SENDMESSAGE ? WakeSent : 0u) |
                               (wakeMask & AllInput & ~QS_SENDMESSAGE ? WakeInput : 0u);
        Wait(wakeMask & WaitsForTimer ? std::min(end, NextTimer(me)) : end, wakes,
             {"MsgWaitForMultipleObjectsEx"});
    }
}
