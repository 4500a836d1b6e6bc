// SPDX-License-Identifier: MIT
#include "link/write_queue.h"

#include "link/port_errors.h"
#include "ui/error_boxes.h"

std::atomic<HANDLE> PortHandle{INVALID_HANDLE_VALUE};
uint8_t WriteQueue[256];
uint8_t WriteHead = 0;
uint8_t WriteTail = 0;

bool IsPortOpen()
{
    return PortHandle.load() != INVALID_HANDLE_VALUE;
}

uint8_t WriteQueueSpace()
{
    return static_cast<uint8_t>(WriteTail - WriteHead - 1);
}

void PortWrite(uint8_t b)
{
    if (WriteQueueSpace() == 0) {
        InfoBox(L"PortWrite", L"Buffer Full");
        return;
    }
    WriteQueue[WriteHead++] = b;
}

void PortWriteBuffer()
{
    // Every flush and close sets the empty ring to index 0, so the bytes are contiguous.
    const HANDLE port = PortHandle.load();
    const uint8_t count = static_cast<uint8_t>(WriteHead - WriteTail);
    const uint8_t* const bytes = WriteQueue + WriteTail;
    DWORD written = 0;
    if (port != INVALID_HANDLE_VALUE && count) {
        if (!WriteFile(port, bytes, count, &written, nullptr))
            ShowPortError(L"WriteFile 2", true);
        else if (written != count)
            ShowShortWrite(written, count);
    }
    WriteHead = WriteTail = 0;
}

void PortWriteFromReader(const uint8_t* bytes, uint32_t count)
{
    const HANDLE port = PortHandle.load();
    DWORD written = 0;
    if (port == INVALID_HANDLE_VALUE) return;
    if (!WriteFile(port, bytes, count, &written, nullptr))
        ShowLastError(L"WriteFile 2");
    else if (written != count)
        PostBox(PostedBox::CouldOnlyWrite, written << 16 | count);
}
