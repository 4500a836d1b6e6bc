// SPDX-License-Identifier: MIT
#include "tests/device/callbacks.h"

#include <algorithm>
#include <array>
#include <utility>

#include "tests/device/fault.h"
#include "tests/device/machine.h"
#include "tests/device/messages.h"

namespace
{

constexpr size_t MostWindowProcedures = 64, MostThreadProcedures = 4;

std::array<GuestAddress, MostWindowProcedures> WindowRoutines;
std::array<GuestAddress, MostThreadProcedures> ThreadRoutines;

LRESULT RunWindowProcedure(GuestAddress routine, HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    uint32_t guestW, guestL;
    AfterCall after;
    MessageToGuest(message, wParam, lParam, guestW, guestL, after);
    const auto handle = static_cast<uint32_t>(reinterpret_cast<uintptr_t>(window));
    const uint32_t result =
        CallGuest(routine, {handle, message, guestW, guestL}, "a window or dialog procedure");
    for (const auto& step : after) step();
    return static_cast<int32_t>(result);
}

template <size_t Index> LRESULT WindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    return RunWindowProcedure(WindowRoutines[Index], window, message, wParam, lParam);
}

template <size_t Index> DWORD ThreadProcedure(void* parameter)
{
    return CallGuest(ThreadRoutines[Index], {static_cast<uint32_t>(reinterpret_cast<uintptr_t>(parameter))},
                     "a thread's routine");
}

constexpr auto WindowProcedures = []<size_t... Index>(std::index_sequence<Index...>)
{
    return std::array<WNDPROC, sizeof...(Index)>{WindowProcedure<Index>...};
}
(std::make_index_sequence<MostWindowProcedures>());
constexpr auto ThreadProcedures = []<size_t... Index>(std::index_sequence<Index...>)
{
    return std::array<LPTHREAD_START_ROUTINE, sizeof...(Index)>{ThreadProcedure<Index>...};
}
(std::make_index_sequence<MostThreadProcedures>());

// The procedure that has the routine already, or the first free one.
template <typename Procedures, typename Routines>
auto ProcedureFor(GuestAddress routine, const Procedures& procedures, Routines& routines)
{
    if (routine == 0) return typename Procedures::value_type{nullptr};
    const auto found = std::find_if(routines.begin(), routines.end(),
                                    [&](GuestAddress taken) { return taken == routine || taken == 0; });
    if (found == routines.end()) DeviceFault("the program has more callbacks than there is room for");
    *found = routine;
    return procedures[static_cast<size_t>(found - routines.begin())];
}

} // namespace

WNDPROC WindowProcedureFor(GuestAddress routine)
{
    return ProcedureFor(routine, WindowProcedures, WindowRoutines);
}

LPTHREAD_START_ROUTINE ThreadProcedureFor(GuestAddress routine)
{
    return ProcedureFor(routine, ThreadProcedures, ThreadRoutines);
}
