// SPDX-License-Identifier: MIT
#include "link/serial_port.h"

#include <cstring>

#include "link/link_state.h"
#include "link/port_errors.h"
#include "link/reader_thread.h"
#include "link/serial_report.h"
#include "link/write_queue.h"
#include "text/format.h"
#include "ui/error_boxes.h"
#include "ui/waiting.h"

COMMPROP PortProperties;
DCB PortDcb;
HANDLE ReaderThreadHandle = nullptr;
DWORD ReaderThreadId = 0;

namespace
{

constexpr DWORD DcbLength = 28;
constexpr uint32_t SettleMs = 2000, PropertiesRetryMs = 1000, EndPollMs = 10;

bool IsOpening = false;

// Shows the box of a failed call. False when the port is no longer open, because the user has ended the
// program in a box.
bool GoOnAfter(BOOL succeeded, const wchar_t* caption)
{
    if (!succeeded) ShowPortError(caption, IsPortOpen());
    return IsPortOpen();
}

// ---- Query --------------------------------------------------------------------------------------------

bool ReadProperties()
{
    std::memset(&PortProperties, 0, sizeof PortProperties);
    return GetCommProperties(PortHandle.load(), &PortProperties);
}

bool QueryProperties()
{
    if (ReadProperties()) return true;
    WaitServingSentMessages(PropertiesRetryMs);
    if (!IsPortOpen()) return false;
    return ReadProperties() ||
           (GoOnAfter(FALSE, L"GetCommProperties 1") && GoOnAfter(ReadProperties(), L"GetCommProperties 2"));
}

// The driver's further settings, before anything is changed.
struct PortAsFound {
    COMMTIMEOUTS timeouts;
    DWORD errors;
    COMSTAT status;
};

// Reads all settings of the driver. False when the port is no longer open.
bool QueryPort(PortAsFound& found)
{
    found = {};
    if (!QueryProperties()) return false;
    std::memset(&PortDcb, 0, sizeof PortDcb);
    PortDcb.DCBlength = DcbLength;
    return GoOnAfter(GetCommState(PortHandle.load(), &PortDcb), L"GetCommState") &&
           GoOnAfter(GetCommTimeouts(PortHandle.load(), &found.timeouts), L"GetCommTimeouts") &&
           GoOnAfter(ClearCommError(PortHandle.load(), &found.errors, &found.status), L"ClearCommError");
}

// ---- Configure ----------------------------------------------------------------------------------------

// Everything that could delay, change or drop a byte is off; RTS is on. DTR stays as the driver has it,
// because some cables supply the receiver with power from it.
void SetLineSettings(DCB& dcb)
{
    dcb.fBinary = 1;
    dcb.fParity = 0;
    dcb.fOutxCtsFlow = 0;
    dcb.fOutxDsrFlow = 0;
    dcb.fDsrSensitivity = 0;
    dcb.fTXContinueOnXoff = 1;
    dcb.fOutX = 0;
    dcb.fInX = 0;
    dcb.fErrorChar = 0;
    dcb.fNull = 0;
    dcb.fRtsControl = 1;
    dcb.fAbortOnError = 0;
    dcb.wReserved = 0;
    dcb.ByteSize = 8;
    dcb.Parity = 0;
    dcb.StopBits = 0;
}

// Reads return immediately with the bytes that the driver has. The time for a write grows with the rate, on
// purpose.
bool SetTimeouts(COMMTIMEOUTS& timeouts, uint32_t baud)
{
    timeouts.ReadIntervalTimeout = 0xFFFFFFFF;
    timeouts.ReadTotalTimeoutMultiplier = 0;
    timeouts.ReadTotalTimeoutConstant = 0;
    timeouts.WriteTotalTimeoutMultiplier = baud / 20000 + 1; // ms per byte
    timeouts.WriteTotalTimeoutConstant = 0;
    const BOOL set = SetCommTimeouts(PortHandle.load(), &timeouts);
    ReadsMayBlock.store(!set);
    return GoOnAfter(set, L"SetCommTimeouts");
}

// Rate 0: the driver's own rate. False when the driver has none, or when the port is no longer open.
bool ConfigurePort(const wchar_t* portName, uint32_t baud, COMMTIMEOUTS& timeouts)
{
    if (baud == 0) baud = PortDcb.BaudRate;
    if (baud == 0) return false;
    PortSetBaud(baud);
    if (!IsPortOpen() || !SetTimeouts(timeouts, baud)) return false;
    return static_cast<int8_t>(portName[3] - L'0') != IrPortNumber.load() ||
           GoOnAfter(EscapeCommFunction(PortHandle.load(), SETIR), L"EscapeCommFunction SETIR");
}

// ---- Open ---------------------------------------------------------------------------------------------

bool OpenPort(const wchar_t* portName)
{
    const HANDLE port =
        CreateFileW(portName, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    PortHandle.store(port);
    if (port != INVALID_HANDLE_VALUE) return true;
    const DWORD error = GetLastError();
    if (SearchInProgress.load()) return false;
    wchar_t caption[64];
    Format(caption, L"Cannot open %s", portName);
    SetLastError(error);
    ShowPortError(caption, false);
    return false;
}

bool StartReader()
{
    ReaderThreadHandle = CreateThread(nullptr, 0, ReaderThread, nullptr, 0, &ReaderThreadId);
    if (ReaderThreadHandle) return true;
    ShowLastError(L"CreateThread");
    PortCloseHandle();
    return false;
}

bool OpenAndStart(const wchar_t* portName, uint32_t baud, const wchar_t* reportLabel)
{
    if (!OpenPort(portName)) return false;
    WaitServingSentMessages(SettleMs);
    PortAsFound found;
    if (!IsPortOpen() || !QueryPort(found)) return false;
    if (reportLabel)
        WriteSerialReport(reportLabel, PortProperties, PortDcb, found.timeouts, found.errors, found.status);
    return ConfigurePort(portName, baud, found.timeouts) && StartReader();
}

} // namespace

bool PortOpen(const wchar_t* portName, uint32_t baud, const wchar_t* reportLabel)
{
    if (IsOpening) return false; // called by a message that was served while the port was being opened
    IsOpening = true;
    const bool runs = OpenAndStart(portName, baud, reportLabel);
    IsOpening = false;
    return runs;
}

bool IsPortBusy()
{
    return IsOpening || ReaderThreadHandle;
}

void PortSetBaud(uint32_t baud)
{
    DCB wanted = PortDcb;
    SetLineSettings(wanted);
    wanted.BaudRate = baud;
    if (wanted.DCBlength > DcbLength) wanted.DCBlength = DcbLength;
    if (SetCommState(PortHandle.load(), &wanted))
        PortDcb = wanted;
    else
        ShowPortError(L"SetCommState", IsPortOpen());
    const int32_t rate = FindBaudrate(PortDcb.BaudRate);
    if (IsBaudIndex(rate)) BaudrateIdx.store(rate);
}

bool PortCloseHandle()
{
    WriteHead = WriteTail = 0;
    const HANDLE port = PortHandle.load();
    if (port == INVALID_HANDLE_VALUE) return false;
    EscapeCommFunction(port, CLRIR);        // on every port; a port that is not infrared may refuse
    PortHandle.store(INVALID_HANDLE_VALUE); // before the handle's value can be given to something else
    if (CloseHandle(port)) return true;
    ShowLastError(L"CloseHandle");
    return false;
}

void PortClose()
{
    WriteHead = WriteTail = 0;
    if (IsPortOpen()) {
        LinkClosing.store(1);
        if (ReaderThreadHandle && ReadsMayBlock.load()) CancelThreadIo(ReaderThreadHandle);
        SetCommMask(PortHandle.load(), 0); // releases a call that waits for events
        PortCloseHandle();
    } else if (!LinkClosing.load()) {
        return;
    }
    if (ReaderThreadHandle) {
        DWORD exitCode;
        do { // a message that is served here may end the program, and that waits for the reader as well
            WaitServingSentMessages(EndPollMs);
        } while (ReaderThreadHandle && GetExitCodeThread(ReaderThreadHandle, &exitCode) &&
                 exitCode == STILL_ACTIVE);
        if (ReaderThreadHandle) CloseHandle(ReaderThreadHandle);
        ReaderThreadHandle = nullptr;
    }
    LinkClosing.store(0);
}
