// SPDX-License-Identifier: MIT
// Platform calls that fail on request.
#include "platform/headless/internal.h"

#include <array>

using namespace memory;

namespace
{

constexpr std::array CallNames = {
#define MEMORY_CALL(name) #name,
    MEMORY_FAILABLE_CALLS(MEMORY_CALL)
#undef MEMORY_CALL
};

struct Fault {
    bool any;
    Call call;
    uint32_t
        remaining; // calls until the failing one, which is included; 0: used up or, in FromHereOn, failing
    DWORD error;
    FailMode mode;
};

std::vector<Fault> Faults;
std::string FailedCall;
std::array<uint32_t, CallNames.size()> Counts;

// Boxes show other failures, so "any call" does not include them.
bool Concerns(const Fault& fault, Call call)
{
    return fault.any ? call != Call::MessageBoxW : fault.call == call;
}

void Arm(const Fault& fault)
{
    if (fault.remaining == 0) Stop("a failing call is counted from 1");
    if (Faults.empty()) FailedCall.clear();
    Faults.push_back(fault);
    FaultsArmed = true;
}

} // namespace

namespace memory
{

bool FaultsArmed;

bool FaultHit(Call call)
{
    ++Counts[static_cast<size_t>(call)];
    bool hit = false;
    for (Fault& fault : Faults) {
        if (!Concerns(fault, call)) continue;
        if (fault.remaining == 0) {
            if (fault.mode == FailMode::Once) continue;
        } else if (--fault.remaining > 0) {
            continue;
        }
        if (hit) continue;
        hit = true;
        Me().lastError = fault.error;
        if (FailedCall.empty()) FailedCall = CallNames[static_cast<size_t>(call)];
    }
    return hit;
}

} // namespace memory

namespace headless
{

void ResetFaults()
{
    Faults.clear();
    FailedCall.clear();
    FaultsArmed = false;
}

} // namespace headless

void HeadlessFailCall(const char* call, uint32_t n, DWORD error, FailMode mode)
{
    for (size_t i = 0; i < CallNames.size(); ++i)
        if (std::string_view(CallNames[i]) == call) return Arm({false, static_cast<Call>(i), n, error, mode});
    Stop(std::string("no call that can fail: ") + call);
}

void HeadlessFailAnyCall(uint32_t n, DWORD error, FailMode mode)
{
    Arm({true, Call{}, n, error, mode});
}

void HeadlessClearFaults()
{
    headless::ResetFaults();
}

void HeadlessCountCalls()
{
    Counts = {};
    FaultsArmed = true;
}

std::vector<HeadlessCallCount> HeadlessCountedCalls()
{
    std::vector<HeadlessCallCount> counted;
    for (size_t i = 0; i < Counts.size(); ++i)
        if (Counts[i] != 0) counted.push_back({CallNames[i], Counts[i]});
    return counted;
}

std::string HeadlessFailedCall()
{
    return FailedCall;
}
