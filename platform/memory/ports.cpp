// SPDX-License-Identifier: MIT
// Calls that read and set the state of serial ports.
#include "platform/memory/memory.h"

namespace memory
{

namespace
{

Line* FindLine(HANDLE handle, std::shared_ptr<Object>& object)
{
    object = FindObject(handle);
    Line* const line = dynamic_cast<Line*>(object.get());
    if (!line) Fail(ERROR_INVALID_HANDLE);
    return line;
}

// Copies one part of the driver's state.
template <typename Part> BOOL Get(HANDLE port, Part LineState::*part, Part& into)
{
    std::shared_ptr<Object> object;
    Line* const line = FindLine(port, object);
    if (!line) return FALSE;
    into = line->State().*part;
    return TRUE;
}

} // namespace

LineState OrdinaryLine()
{
    LineState line = {};
    line.properties.wPacketLength = sizeof(COMMPROP);
    line.properties.wPacketVersion = 2;
    line.properties.dwServiceMask = 1;
    line.properties.dwMaxTxQueue = 16;
    line.properties.dwMaxRxQueue = 2048;
    line.properties.dwMaxBaud = 0x20000;
    line.properties.dwProvSubType = 1;
    line.properties.dwProvCapabilities = 0xFF;
    line.properties.dwSettableParams = 0x7F;
    line.properties.dwSettableBaud = 0x6FFFF;
    line.properties.wSettableData = 0xF;
    line.properties.wSettableStopParity = 0x1F07;
    line.dcb.DCBlength = sizeof(DCB);
    line.dcb.BaudRate = 9600;
    line.dcb.fBinary = 1;
    line.dcb.fDtrControl = 1;
    line.dcb.ByteSize = 8;
    line.dcb.XonLim = line.dcb.XoffLim = 512;
    line.dcb.XonChar = 17;
    line.dcb.XoffChar = 19;
    return line;
}

// A device's name with an extension is still a device's name.
bool ParsePortName(const std::wstring& path, uint32_t& number)
{
    const std::wstring name = path.substr(0, path.find(L'.'));
    if (name.size() < 5 || name.size() > 7 || Lower(name.substr(0, 3)) != L"com" || name.back() != L':')
        return false;
    number = 0;
    for (size_t i = 3; i + 1 < name.size(); ++i) {
        if (name[i] < L'0' || name[i] > L'9') return false;
        number = number * 10 + static_cast<uint32_t>(name[i] - L'0');
    }
    return true;
}

} // namespace memory

using namespace memory;

BOOL GetCommProperties(HANDLE port, COMMPROP* properties)
{
    if (Fails(Call::GetCommProperties)) return FALSE;
    return Get(port, &LineState::properties, *properties);
}

BOOL GetCommState(HANDLE port, DCB* dcb)
{
    if (Fails(Call::GetCommState)) return FALSE;
    return Get(port, &LineState::dcb, *dcb);
}

BOOL SetCommState(HANDLE port, DCB* dcb)
{
    if (Fails(Call::SetCommState)) return FALSE;
    std::shared_ptr<Object> object;
    Line* const line = FindLine(port, object);
    if (!line) return FALSE;
    if (dcb->DCBlength != sizeof(DCB)) return Fail(ERROR_INVALID_PARAMETER);
    return line->SetState(*dcb);
}

BOOL GetCommTimeouts(HANDLE port, COMMTIMEOUTS* timeouts)
{
    if (Fails(Call::GetCommTimeouts)) return FALSE;
    return Get(port, &LineState::timeouts, *timeouts);
}

BOOL SetCommTimeouts(HANDLE port, COMMTIMEOUTS* timeouts)
{
    if (Fails(Call::SetCommTimeouts)) return FALSE;
    std::shared_ptr<Object> object;
    Line* const line = FindLine(port, object);
    if (!line) return FALSE;
    line->State().timeouts = *timeouts;
    return TRUE;
}

BOOL ClearCommError(HANDLE port, DWORD* errors, COMSTAT* status)
{
    if (Fails(Call::ClearCommError)) return FALSE;
    std::shared_ptr<Object> object;
    Line* const line = FindLine(port, object);
    if (!line) return FALSE;
    if (errors) *errors = line->State().errors;
    if (status) *status = line->State().status;
    return TRUE;
}

BOOL EscapeCommFunction(HANDLE port, DWORD function)
{
    if (Fails(Call::EscapeCommFunction)) return FALSE;
    std::shared_ptr<Object> object;
    Line* const line = FindLine(port, object);
    if (!line) return FALSE;
    line->Escape(function);
    return TRUE;
}

BOOL SetCommMask(HANDLE port, DWORD)
{
    if (Fails(Call::SetCommMask)) return FALSE;
    std::shared_ptr<Object> object;
    return FindLine(port, object) != nullptr;
}
