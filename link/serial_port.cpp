#include "link/serial_port.h"

#include <cstring>

#include "app/active_dialog.h"
#include "app/error_boxes.h"
#include "app/waiting.h"
#include "link/link_state.h"
#include "link/reader_thread.h"
#include "link/serial_report.h"
#include "link/write_queue.h"
#include "text/format.h"

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

void QueryProperties()
{
    if (ReadProperties()) return;
    WaitServingSentMessages(PropertiesRetryMs);
    if (ReadProperties()) return;
    ShowLastError(L"GetCommProperties 1");
    if (!ReadProperties()) ShowLastError(L"GetCommProperties 2");
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
void SetTimeouts(COMMTIMEOUTS& timeouts, uint32_t baud)
{
    timeouts.ReadIntervalTimeout = 0xFFFFFFFF;
    timeouts.ReadTotalTimeoutMultiplier = 0;
    timeouts.ReadTotalTimeoutConstant = 0;
    timeouts.WriteTotalTimeoutMultiplier = baud / 20000 + 1; // ms per byte
    timeouts.WriteTotalTimeoutConstant = 0;
    if (!SetCommTimeouts(PortHandle.load(), &timeouts)) ShowLastError(L"SetCommTimeouts");
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
    QueryProperties();
    if (!IsPortOpen()) return false; // the user ended the program from a box

    std::memset(&PortDcb, 0, sizeof PortDcb);
    PortDcb.DCBlength = DcbLength;
    if (!GetCommState(PortHandle.load(), &PortDcb)) ShowLastError(L"GetCommState");
    COMMTIMEOUTS timeouts = {};
    if (!GetCommTimeouts(PortHandle.load(), &timeouts)) ShowLastError(L"GetCommTimeouts");
    DWORD errors = 0;
    COMSTAT status = {};
    if (!ClearCommError(PortHandle.load(), &errors, &status)) ShowLastError(L"ClearCommError");

    if (!IsPortOpen()) return false;

    // Before anything is changed: the report tells how the port was found.
    if (ActiveDialogKind.load() == DialogKind::Communication && (!SearchInProgress.load() || baud == 0))
        WriteSerialReport(PortProperties, PortDcb, timeouts, errors, status);

    SetLineSettings(PortDcb);
    if (baud == 0) baud = PortDcb.BaudRate;
    if (baud == 0) return false;
    PortSetBaud(baud);
    SetTimeouts(timeouts, baud);
    if (portName[3] - L'0' == IrPortNumber.load() && !EscapeCommFunction(PortHandle.load(), SETIR))
        ShowLastError(L"EscapeCommFunction SETIR");
    if (!IsPortOpen()) return false;

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
    for (int32_t i = 0; i < BaudCount; ++i)
        if (BaudTable[i] == baud) BaudrateIdx.store(i);
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
    if (!IsPortOpen()) return;
    LinkClosing.store(1);
    if (ReaderThreadHandle) CancelThreadIo(ReaderThreadHandle);
    SetCommMask(PortHandle.load(), 0); // releases a call that waits for events
    PortCloseHandle();
    if (ReaderThreadHandle) {
        DWORD exitCode;
        do {
            WaitServingSentMessages(EndPollMs);
        } while (GetExitCodeThread(ReaderThreadHandle, &exitCode) && exitCode == STILL_ACTIVE);
        CloseHandle(ReaderThreadHandle);
        ReaderThreadHandle = nullptr;
    }
    LinkClosing.store(0);
}
