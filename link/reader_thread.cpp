// SPDX-License-Identifier: MIT
#include "link/reader_thread.h"

#include "link/link_state.h"
#include "link/write_queue.h"

std::atomic<uint8_t> ReadsMayBlock{0};

constexpr DWORD IdleSleepMs = 50;
constexpr DWORD RunBytes = 1024; // more than a port at full speed receives during the sleep

DWORD WINAPI ReaderThread(void*)
{
    HANDLE port = PortHandle.load();
    while (port != INVALID_HANDLE_VALUE) {
        uint8_t run[RunBytes];
        DWORD count = 0; // a failed call must not count as a byte
        // While data arrives the handle is not tested: if it is closed, the next read fails.
        for (;;) {
            const DWORD most = ReadsMayBlock.load() ? 1 : RunBytes;
            if (!ReadFile(port, run, most, &count, nullptr) || !count) break;
            RouteReceived(run, count);
            if (count < most) break; // that was all
            port = PortHandle.load();
            count = 0;
        }
        Sleep(IdleSleepMs);
        port = PortHandle.load();
    }
    return 0;
}
