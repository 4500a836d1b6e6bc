// SPDX-License-Identifier: MIT
#include "link/port_errors.h"

#include "platform/platform.h"
#include "ui/error_boxes.h"

namespace
{

constexpr wchar_t NoDevice[] = L"There is no device at this port. Is the receiver plugged in?";
constexpr wchar_t InUse[] = L"Another program uses this port. End it first.";
constexpr wchar_t Refused[] = L"Another program uses this port, or you have no permission to use it.";
constexpr wchar_t Gone[] = L"The device no longer answers. Is the receiver still plugged in?";
constexpr wchar_t NotSerial[] = L"The device at this port is not a serial port.";

struct PortProblem {
    DWORD error;
    const wchar_t* sentence;
};

// Error numbers of the system; some platforms have no names for all of them.
constexpr PortProblem Problems[] = {
    {2, NoDevice},   // file not found
    {3, NoDevice},   // path not found
    {20, NoDevice},  // bad unit
    {55, NoDevice},  // device does not exist
    {433, NoDevice}, // no such device
    {5, Refused},    // access denied; some systems also return it when the port is open elsewhere
    {32, InUse},     // sharing violation
    {170, InUse},    // busy
    {2404, InUse},   // device in use
    {21, Gone},      // not ready
    {22, Gone},      // bad command
    {1167, Gone},    // not connected
};

// Error numbers of calls to an open port.
constexpr PortProblem OpenPortProblems[] = {
    {1, NotSerial},  // invalid function
    {6, NotSerial},  // invalid handle: of this kind of call
    {50, NotSerial}, // not supported
};

template <size_t Count> const wchar_t* Find(const PortProblem (&problems)[Count], DWORD error)
{
    for (const PortProblem& problem : problems)
        if (problem.error == error) return problem.sentence;
    return nullptr;
}

} // namespace

void ShowPortError(const wchar_t* caption, bool portIsOpen)
{
    const DWORD error = GetLastError();
    const wchar_t* sentence = Find(Problems, error);
    if (!sentence && portIsOpen) sentence = Find(OpenPortProblems, error);
    if (sentence)
        InfoBox(caption, sentence);
    else
        ShowLastError(caption);
}
