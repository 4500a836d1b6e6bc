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

// True if a protocol is recognised at this rate of the open port.
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

// True if a protocol is recognised in the bytes that the driver has received, at its own rate, while the port
// was being opened. So the driver's rate is tried before all others. Without this step these bytes would
// count for the first rate that is tried; they still do so if the table does not have the driver's rate.
bool TryDriversRate(HWND dialog)
{
    WaitServingSentMessages(PassMs);
    const int32_t rate = FindBaudrate(PortDcb.BaudRate);
    if (ProtocolMode() == ProtocolNone || !IsBaudIndex(rate)) return false;
    SelectListEntry(dialog, CONTROL_COM_BAUDRATE, rate);
    return true;
}

// True if a receiver was found at the port, which is then open at the receiver's rate.
bool TryPort(HWND dialog, int32_t port)
{
    CommPortIdx.store(port);
    SelectListEntry(dialog, CONTROL_COM_PORT, port);
    ResetProtocolMode(); // messages of another port do not count for this one
    wchar_t label[PortLabelCapacity] = L"";
    GetSelectedListText(dialog, CONTROL_COM_PORT, label, PortLabelCapacity);
    if (!PortOpen(PortNameTable[port], 0, label)) return false;
    if (TryDriversRate(dialog)) return true;
    for (int32_t rate = 0; rate < BaudCount && IsWindow(dialog); ++rate)
        if (TryRate(dialog, rate)) return true;
    PortClose();
    // A message that was completed just after the last check belongs to this port and its last rate.
    return IsWindow(dialog) && ProtocolMode() != ProtocolNone &&
           PortOpen(PortNameTable[port], BaudTable[BaudCount - 1]);
}

} // namespace

bool SearchPorts(HWND dialog, int32_t first, int32_t last)
{
    SearchInProgress.store(1);
    bool found = false;
    // The user may end the program in a box that is shown while a port is opened.
    for (int32_t port = first; port <= last && !found && IsWindow(dialog); ++port)
        found = TryPort(dialog, port);
    SearchInProgress.store(0);
    return found;
}
