// SPDX-License-Identifier: MIT
// What the system in memory leaves to the platform that is made of it: clock and turns, the user, ports,
// stored settings, calls that are to fail. platform/headless provides all of it for tests, platform/web for a
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

// Called when every thread waits and none can run before `until`: returns when that time has come, or earlier
// when something from outside has ended a wait. Never: only such a thing can.
void PassTime(uint64_t until);

// What a thread needs to have the turn and to give it away.
struct Turn;
std::shared_ptr<Turn> MakeTurn();

// Makes a thread that calls `run` when it gets the turn first, and then never runs again.
void StartTurns(std::shared_ptr<Thread> thread, void (*run)(std::shared_ptr<Thread>));

// Gives the turn to another thread; returns when `me` has it again.
void SwitchTurn(Thread& me, Thread& next);

// The same from a thread that has ended, as its last act.
void LeaveTurns(std::shared_ptr<Thread> me, Thread& next);

// Prints or shows why the system cannot go on, and ends it.
[[noreturn]] void Stop(const std::string& why);

// ---- Real threads -------------------------------------------------------------------------------------

// True in the program that looks for races: its threads run at the same time in the product's code, and one
// at a time in the platform's. The compiler puts EnterPlatform and LeavePlatform around every function of it.
extern const bool RealThreads;
void EnterPlatform();
void LeavePlatform();

// Around the program's own code that a platform call runs, and around a pause.
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

// What a real system orders, and nothing else does: what a thread did before it sent or posted a message,
// made a thread or ended is over when the other side sees that.
void HandOver(const void* what);
void TakeOver(const void* what);

// ---- Failing calls ------------------------------------------------------------------------------------

enum class Call : uint8_t;

extern bool FaultsArmed;  // FaultHit is asked only then
bool FaultHit(Call call); // true if this call is to fail, with the last error set
extern bool Interleaving; // SwitchAtRandom is called only then
void SwitchAtRandom();    // at every platform call; may give the turn away

// ---- The user -----------------------------------------------------------------------------------------

bool RunUserStep();      // the user's next act, if one is due; on the user-interface thread
uint64_t UserStepTime(); // when the next act is due, Never if none is known

struct Box {
    std::wstring text, caption;
    UINT type;
    HWND owner;
};

// Dispatches messages until the user has answered the box that is up; returns the button. What it returns
// after the box was destroyed does not matter.
int AwaitAnswer(HWND window, const Box& box);

// ---- The view -----------------------------------------------------------------------------------------

extern const bool DrawsTexts;         // as patterns into the pixels; else the view draws what is recorded
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
