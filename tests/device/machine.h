// SPDX-License-Identifier: MIT
// The emulated processor. Runs one program's ARM code on as many threads as the platform starts; the platform
// lets one run at a time, so that one processor is enough.
//
// A DeviceFault is an error that stops a real device, or that it survives only by luck: an unaligned access,
// memory that is not there or is read-only, an instruction that the core does not have, a routine that
// returns with another stack pointer or other values in r4 to r11 than it was called with, more than
// StackBytes of stack. Each return from the system leaves r1 to r3, r12 and the flags different from before.
#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include "tests/device/memory.h"

constexpr uint32_t StackBytes = 0x10000;

struct MachineOptions {
    std::string core = "926";
    uint32_t stackSkew = 0;   // 0 or 4: where the stack begins, modulo 8
    bool thumbSystem = false; // the system's routines are Thumb code
};

std::vector<std::string> CoreNames();

void StartMachine(const MachineOptions& options);

// ---- From the system to the program -------------------------------------------------------------------

// Runs a routine of the program and returns its r0. `what` names it in messages.
uint32_t CallGuest(GuestAddress routine, std::initializer_list<uint32_t> arguments, const char* what);

// ---- From the program to the system -------------------------------------------------------------------

// The caller as a call of the system sees it: arguments in r0 to r3, then on the stack, a 64-bit one in two
// consecutive words at every place.
class GuestCall
{
public:
    GuestCall(const uint32_t* registers, GuestAddress stack) : Registers(registers), Stack(stack) {}
    uint32_t Word(uint32_t index) const
    {
        return index < 4 ? Registers[index] : LoadGuest<uint32_t>(Stack + 4 * (index - 4));
    }
    double Double(uint32_t index) const;

private:
    const uint32_t* Registers;
    GuestAddress Stack;
};

enum class ResultWidth : uint8_t { Word, TwoWords };

// A system routine for the program to call; returns its address. The result goes to r0, or to r0 and r1.
GuestAddress AddSystemRoutine(const std::string& name, std::function<uint64_t(const GuestCall&)> routine,
                              ResultWidth width = ResultWidth::Word);

// Ends the program: the CallGuest that runs now, which must be the outermost one, returns the code.
void EndProgram(uint32_t exitCode);

// Called before the program runs on a thread, each time.
void SetBeforeRun(std::function<void()> step);

// ---- Figures ------------------------------------------------------------------------------------------

struct ThreadFigures {
    uint64_t instructions; // of the program itself, without the system's
    uint32_t stackBytes;   // at the deepest
};
ThreadFigures MainThreadFigures();
ThreadFigures OtherThreadFigures(); // of all other threads together: the sum, and the deepest

// ---- For DeviceFault ----------------------------------------------------------------------------------

std::string WhereTheProgramIs();
void SetSymbolizer(std::function<std::string(GuestAddress)> symbolizer);
