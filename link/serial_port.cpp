#include "link/serial_port.h"

#include <cstring>

#include "link/link_state.h"
#include "link/reader_thread.h"
#include "link/serial_report.h"
#include "link/write_queue.h"
#include "text/format.h"
#include "ui/active_dialog.h"
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

bool ReadProperties()
{
    std::memset(&PortProperties, 0, sizeof PortProperties);
    return GetCommProperties(PortHandle.load(), &PortProperties);
}

// Shows the box of a call that failed. False when the port is no longer open, because the user has ended the
// program from a box.
bool GoOnAfter(BOOL succeeded, const wchar_t* caption)
{
    if (!succeeded) ShowLastError(caption);
    return IsPortOpen();
}

bool QueryProperties()
{
    if (ReadProperties()) return true;
    WaitServingSentMessages(PropertiesRetryMs);
    if (!IsPortOpen()) return false;
    return ReadProperties() ||
           (GoOnAfter(FALSE, L"GetCommProperties 1") && GoOnAfter(ReadProperties(), L"GetCommProperties 2"));
}

// Everything that could hold back, change or drop a byte is off, RTS is on; how DTR is driven stays as the
// driver has it, because some cables feed the receiver from it.
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

// Reads return at once with what the driver holds. The time for a write grows with the rate, on purpose.
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

} // namespace

bool PortOpen(const wchar_t* portName, uint32_t baud)
{
    const HANDLE port =
        CreateFileW(portName, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    PortHandle.store(port);
    if (port == INVALID_HANDLE_VALUE) {
        const DWORD error = GetLastError();
        if (!SearchInProgress.load()) {
            wchar_t caption[64];
            Format(caption, L"Cannot open %s", portName);
            SetLastError(error);
            ShowLastError(caption);
        }
        return false;
    }

    WaitServingSentMessages(SettleMs);
    if (!IsPortOpen() || !QueryProperties()) return false;

    std::memset(&PortDcb, 0, sizeof PortDcb);
    PortDcb.DCBlength = DcbLength;
    if (!GoOnAfter(GetCommState(PortHandle.load(), &PortDcb), L"GetCommState")) return false;
    COMMTIMEOUTS timeouts = {};
    if (!GoOnAfter(GetCommTimeouts(PortHandle.load(), &timeouts), L"GetCommTimeouts")) return false;
    DWORD errors = 0;
    COMSTAT status = {};
    if (!GoOnAfter(ClearCommError(PortHandle.load(), &errors, &status), L"ClearCommError")) return false;

    // Before anything is changed: the report tells how the port was found.
    if (ActiveDialogKind.load() == DialogKind::Communication && (!SearchInProgress.load() || baud == 0))
        WriteSerialReport(PortProperties, PortDcb, timeouts, errors, status);

    SetLineSettings(PortDcb);
    if (baud == 0) baud = PortDcb.BaudRate;
    if (baud == 0) return false;
    PortSetBaud(baud);
    if (!IsPortOpen() || !SetTimeouts(timeouts, baud)) return false;
    if (portName[3] - L'0' == IrPortNumber.load() &&
        !GoOnAfter(EscapeCommFunction(PortHandle.load(), SETIR), L"EscapeCommFunction SETIR"))
        return false;

    ReaderThreadHandle = CreateThread(nullptr, 0, ReaderThread, nullptr, 0, &ReaderThreadId);
    if (!ReaderThreadHandle) {
        ShowLastError(L"CreateThread");
        PortCloseHandle();
        return false;
    }
    return true;
}

void PortSetBaud(uint32_t baud)
{
    PortDcb.BaudRate = baud;
    const int32_t rate = FindBaudrate(baud);
    if (IsBaudIndex(rate)) BaudrateIdx.store(rate);
    if (PortDcb.DCBlength > DcbLength) PortDcb.DCBlength = DcbLength;
    if (!SetCommState(PortHandle.load(), &PortDcb)) ShowLastError(L"SetCommState");
}

bool PortCloseHandle()
{
    WriteHead = WriteTail = 0;
    const HANDLE port = PortHandle.load();
    if (port == INVALID_HANDLE_VALUE) return false;
    EscapeCommFunction(port, CLRIR);        // on every port; one that is not infrared may refuse
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
        do { // a message that is served may end the program, which has waited for the reader, too, then
            WaitServingSentMessages(EndPollMs);
        } while (ReaderThreadHandle && GetExitCodeThread(ReaderThreadHandle, &exitCode) &&
                 exitCode == STILL_ACTIVE);
        if (ReaderThreadHandle) CloseHandle(ReaderThreadHandle);
        ReaderThreadHandle = nullptr;
    }
    LinkClosing.store(0);
}
