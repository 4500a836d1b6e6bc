// SPDX-License-Identifier: MIT
// Threads that really run at the same time, for the program that looks for races with ThreadSanitizer.
//
// The sanitizer must see the product and nothing of the platform: neither the platform's reads and writes nor
// its lock, because the lock would order the two threads at every call and hide most races. So the sanitizer
// does not follow the lock in this file, and ignores what the platform does. HandOver and TakeOver report to
// it the order that a real system guarantees.
#include "platform/headless/internal.h"

#include <atomic>
#include <chrono>
#include <sched.h>
#include <unistd.h>

#include <sanitizer/tsan_interface.h>

extern "C" {
void AnnotateIgnoreReadsBegin(const char* file, int line);
void AnnotateIgnoreReadsEnd(const char* file, int line);
void AnnotateIgnoreWritesBegin(const char* file, int line);
void AnnotateIgnoreWritesEnd(const char* file, int line);
}

namespace memory
{

const bool RealThreads = true;

namespace
{

constexpr uint64_t Speed = 20; // of the clock; otherwise the program's pauses would take most of the time
constexpr useconds_t PauseMicroseconds = 20;

std::atomic_flag Taken;
thread_local int Depth = 0; // of platform functions on the stack

uint64_t RealNow()
{
    static const auto start = std::chrono::steady_clock::now();
    const auto elapsed = std::chrono::steady_clock::now() - start;
    return Speed *
           static_cast<uint64_t>(std::chrono::duration_cast<std::chrono::microseconds>(elapsed).count());
}

void Take()
{
    AnnotateIgnoreReadsBegin(__FILE__, __LINE__);
    AnnotateIgnoreWritesBegin(__FILE__, __LINE__);
    while (Taken.test_and_set(std::memory_order_acquire)) sched_yield();
}

void Leave()
{
    Taken.clear(std::memory_order_release);
    AnnotateIgnoreWritesEnd(__FILE__, __LINE__);
    AnnotateIgnoreReadsEnd(__FILE__, __LINE__);
}

} // namespace

void EnterPlatform()
{
    if (Depth++ != 0) return;
    Take();
    headless::SetNow(RealNow());
}

void LeavePlatform()
{
    if (--Depth == 0) Leave();
}

InProgram::InProgram() : depth(Depth)
{
    Depth = 0;
    if (depth != 0) Leave();
}

InProgram::~InProgram()
{
    if (depth == 0) return;
    Take();
    Depth = depth;
    headless::SetNow(RealNow());
}

void PauseReally()
{
    const InProgram program;
    usleep(PauseMicroseconds);
}

void HandOver(const void* what)
{
    __tsan_release(const_cast<void*>(what));
}

void TakeOver(const void* what)
{
    __tsan_acquire(const_cast<void*>(what));
}

} // namespace memory

// Called by the compiler's instructions at the beginning and the end of every function of the platform.
extern "C" {
void __cyg_profile_func_enter(void*, void*)
{
    memory::EnterPlatform();
}
void __cyg_profile_func_exit(void*, void*)
{
    memory::LeavePlatform();
}
}
