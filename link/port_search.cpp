// SPDX-License-Identifier: MIT
#include "link/port_search.h"

#include "link/link_state.h"
#include "link/serial_port.h"
#include "link/serial_report.h"
#include "resources/resource_ids.h"
#include "ui/dialog_controls.h"
#include "ui/dialog_support.h"
#include "ui/waiting.h"

namespace
{

constexpr uint32_t RatePasses = 30, PassMs = 50;

// Whether a protocol is recognised at this rate of the open port.
bool TryRate(HWND dialog, int32_t rate)
{
    SelectListEntry(dialog, CONTROL_COM_BAUDRATE, rate);
    PortSetBaud(BaudTable[rate]);
    for (uint32_t pass = 0; pass < RatePasses && IsWindow(dialog); ++pass) {
        WaitServingSentMessages(PassMs);
        if (ProtocolMode() != ProtocolNone) return true;
    }
    return false;
}

// Whether a protocol is recognised in what the driver has received, at the rate that it had, while the port
// was being opened. Else it would pass for the first rate that is tried, as it does when the driver's rate is
// none of the table's.
bool TryDriversRate(HWND dialog)
{
    WaitServingSentMessages(PassMs);
    const int32_t rate = FindBaudrate(PortDcb.BaudRate);
    if (ProtocolMode() == ProtocolNone || !IsBaudIndex(rate)) return false;
    SelectListEntry(dialog, CONTROL_COM_BAUDRATE, rate);
    return true;
}

// Whether a receiver speaks on the port, which is then open at the receiver's rate.
bool TryPort(HWND dialog, int32_t port)
{
    CommPortIdx.store(port);
    SelectListEntry(dialog, CONTROL_COM_PORT, port);
    ResetProtocolMode(); // what another port sent is not this one's
    wchar_t label[PortLabelCapacity] = L"";
    GetSelectedListText(dialog, CONTROL_COM_PORT, label, PortLabelCapacity);
    if (!PortOpen(PortNameTable[port], 0, label)) return false;
    if (TryDriversRate(dialog)) return true;
    for (int32_t rate = 0; rate < BaudCount && IsWindow(dialog); ++rate)
        if (TryRate(dialog, rate)) return true;
    PortClose();
    // A message that was complete just after the last look belongs to this port and its last rate.
    return IsWindow(dialog) && ProtocolMode() != ProtocolNone &&
           PortOpen(PortNameTable[port], BaudTable[BaudCount - 1]);
}

} // namespace

bool SearchPorts(HWND dialog, int32_t first, int32_t last)
{
    SearchInProgress.store(1);
    bool found = false;
    // The user may end the program from a box that the opening of a port shows.
    for (int32_t port = first; port <= last && !found && IsWindow(dialog); ++port)
        found = TryPort(dialog, port);
    SearchInProgress.store(0);
    return found;
}
