// Where received bytes go. It stands above both protocols; the reader thread declares it.
#include "link/link_state.h"
#include "link/reader_thread.h"
#include "link/receiver_log.h"
#include "nmea/sentence_assembler.h"
#include "sirf/frame_assembler.h"

void RouteReceivedByte(uint8_t b)
{
    NmeaAssembler(b);
    SirfFramer(b);
    BytesReceived.store(BytesReceived.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
    if (LogFileHandle.load(std::memory_order_relaxed) != INVALID_HANDLE_VALUE) LogWriteByte(b);
}
