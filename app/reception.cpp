// SPDX-License-Identifier: MIT
// Distributes the received bytes. It needs both protocols, so it is here; the reader thread declares it.
#include "graph/repaint.h"
#include "link/link_state.h"
#include "link/reader_thread.h"
#include "link/receiver_log.h"
#include "nmea/sentence_assembler.h"
#include "sirf/frame_assembler.h"

uint32_t RouteUpToMessage(const uint8_t* bytes, uint32_t count)
{
    uint32_t routed = 0;
    bool complete = false;
    while (routed < count && !complete) {
        // Bytes on which neither assembler does anything that can be noticed are passed on together. So
        // everything that can be noticed happens in the same order as byte by byte.
        const uint8_t* const next = bytes + routed;
        uint32_t quiet = SirfQuietBytesAtMost(count - routed); // costs nothing, and shortens the search
        if (quiet) quiet = NmeaQuietBytes(next, quiet);
        if (quiet && !NmeaIsInBody()) quiet = SirfQuietBytes(next, quiet);
        if (quiet) {
            NmeaTakeQuiet(next, quiet);
            SirfTakeQuiet(next, quiet);
            routed += quiet;
            if (routed == count) break;
        }
        const uint8_t b = bytes[routed++];
        const bool completesSentence = NmeaAssembler(b), completesFrame = SirfFramer(b);
        complete = completesSentence || completesFrame;
    }
    BytesReceived.store(BytesReceived.load(std::memory_order_relaxed) + routed, std::memory_order_relaxed);
    if (LogFileHandle.load(std::memory_order_relaxed) != INVALID_HANDLE_VALUE) LogWrite(bytes, routed);
    return routed;
}

void RouteReceived(const uint8_t* bytes, uint32_t count)
{
    CollectRepaints();
    for (uint32_t routed = 0; routed < count;) routed += RouteUpToMessage(bytes + routed, count - routed);
    RequestCollectedRepaint();
}
