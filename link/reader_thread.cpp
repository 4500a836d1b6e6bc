#include "link/reader_thread.h"

#include "link/link_state.h"
#include "link/receiver_log.h"
#include "link/write_queue.h"
#include "nmea/sentence_assembler.h"
#include "sirf/frame_assembler.h"

constexpr DWORD IdleSleepMs = 50;

void RouteReceivedByte(uint8_t b)
{
    NmeaAssembler(b);
    SirfFramer(b);
    BytesReceived.store(BytesReceived.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
    if (LogFileHandle.load(std::memory_order_relaxed) != INVALID_HANDLE_VALUE) LogWriteByte(b);
}

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
