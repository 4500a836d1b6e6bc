#include "link/receiver_log.h"

#include "app/error_boxes.h"

std::atomic<HANDLE> LogFileHandle{INVALID_HANDLE_VALUE};

bool LogClose()
{
    const HANDLE log = ExchangeHandle(LogFileHandle, INVALID_HANDLE_VALUE);
    if (log == INVALID_HANDLE_VALUE) return false;
    if (CloseHandle(log)) return true;
    ShowLastError(L"CloseHandle File");
    return false;
}

void LogWriteByte(uint8_t b)
{
    const HANDLE log = LogFileHandle.load();
    if (log == INVALID_HANDLE_VALUE) return;
    DWORD written = 0;
    if (WriteFile(log, &b, 1, &written, nullptr)) return;
    const DWORD error = GetLastError();
    if (!ReplaceHandle(LogFileHandle, log, INVALID_HANDLE_VALUE)) return;
    SetLastError(error);
    ShowLastError(L"WriteFile File");
    if (!CloseHandle(log)) ShowLastError(L"CloseHandle File");
}
