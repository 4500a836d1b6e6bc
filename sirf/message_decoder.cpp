#include "sirf/message_decoder.h"

#include "link/link_state.h"
#include "link/protocol_recognition.h"

void SirfMessageDecoder(const uint8_t*, uint32_t)
{
    if (LinkClosing.load(std::memory_order_relaxed)) return;
    if (!SirfRecognised.load()) {
        BeginProtocol(SirfRecognised);
        StoreWorkingPort();
    }
}
