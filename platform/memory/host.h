// SPDX-License-Identifier: MIT
// The system in memory needs these parts from the platform that uses it: clock and turns, the user, ports,
// stored settings, calls that are to fail. platform/headless provides them for tests, platform/web for a
// page. Times are microseconds since the system started.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/memory/system.h"

namespace memory
{

struct Thread;

// ---- Clock and turns ----------------------------------------------------------------------------------

constexpr uint64_t Never = ~uint64_t{0}; // as a time: no time ever

uint64_t Now();
DWORD Tick();                // GetTickCount, milliseconds; it may wrap
int64_t LocalMilliseconds(); // local time since the beginning of 1601

// Called when every thread waits and none can run before `until`. Returns at that time, or earlier when an
// event from outside has ended a wait. Never: only such an event can end it.
void PassTime(uint64_t until);

// The data with which a thread takes its turn and gives it away.
struct Turn;
std::shared_ptr<Turn> MakeTurn();

// Makes a thread that calls `run` at its first turn, and never runs again after it.
void StartTurns(std::shared_ptr<Thread> thread, void (*run)(std::shared_ptr<Thread>));

// Gives the turn to another thread; returns when `me` has it again.
void SwitchTurn(Thread& me, Thread& next);

// The same from a thread that has ended, as its last act.
void LeaveTurns(std::shared_ptr<Thread> me, Thread& next);

// Prints or shows the reason why the system cannot go on, and ends it.
[[noreturn]] void Stop(const std::string& why);

// ---- Real threads -------------------------------------------------------------------------------------

// True in the program that searches for races: its threads run at the same time in the product's code, but
// one at a time in the platform's code. The compiler adds EnterPlatform and LeavePlatform to each of its
// functions.
extern const bool RealThreads;
void EnterPlatform();
void LeavePlatform();

// For the program's own code that a platform call runs, and for a pause.
class InProgram
{
public:
    InProgram();
    ~InProgram();
    InProgram(const InProgram&) = delete;
    InProgram& operator=(const InProgram&) = delete;

private:
    [[maybe_unused]] int depth; // with real threads
};
void PauseReally(); // a moment, outside of the platform

// The order that a real system guarantees, and no other: all that a thread did before it sent or posted a
// message, created a thread or ended, is complete when the other side notices this.
void HandOver(const void* what);
void TakeOver(const void* what);

// ---- Failing calls ------------------------------------------------------------------------------------

enum class Call : uint8_t;

extern bool FaultsArmed;  // FaultHit is called only then
bool FaultHit(Call call); // true if this call is to fail, with the last error set
extern bool Interleaving; // SwitchAtRandom is called only then
void SwitchAtRandom();    // at every platform call; may give the turn away

// ---- The user -----------------------------------------------------------------------------------------

bool RunUserStep();      // runs the user's next step, if one is due; on the user-interface thread
uint64_t UserStepTime(); // time of the next step, Never if none is known

struct Box {
    std::wstring text, caption;
    UINT type;
    HWND owner;
};

// Dispatches messages until the user has answered the box that is shown; returns the button. If the box was
// destroyed, the result does not matter.
int AwaitAnswer(HWND window, const Box& box);

// ---- The view -----------------------------------------------------------------------------------------

extern const bool DrawsTexts; // as patterns into the pixels; otherwise the view draws the recorded texts
extern const bool KeepsInvalidations; // Window::invalidations, which grows with each

// ---- Ports, settings, texts ---------------------------------------------------------------------------

HANDLE OpenPort(uint32_t number); // "COMn:"; INVALID_HANDLE_VALUE with the error

// The program has stored a value in the registry, or deleted it (null).
struct StoredValue {
    DWORD type;
    std::string data;
};
void ValueStored(const std::wstring& name, const StoredValue* value);

// A file that the program has written was closed.
void FileClosed(const std::wstring& path);

std::wstring ErrorText(DWORD error); // as FormatMessageW has it, with its line end

} // namespace memory
