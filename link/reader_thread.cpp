#include "link/reader_thread.h"

#include "link/link_state.h"
#include "link/write_queue.h"

constexpr DWORD IdleSleepMs = 50;

DWORD WINAPI ReaderThread(void*)
{
    HANDLE port = PortHandle.load();
    while (port != INVALID_HANDLE_VALUE) {
        uint8_t b;
        DWORD count = 0; // a failed call must not count as a byte
        // While data flows the handle is not tested: a closed one fails the next read.
        while (ReadFile(port, &b, 1, &count, nullptr) && count == 1) {
            RouteReceivedByte(b);
            port = PortHandle.load();
            count = 0;
        }
        Sleep(IdleSleepMs);
        port = PortHandle.load();
    }
    return 0;
}
