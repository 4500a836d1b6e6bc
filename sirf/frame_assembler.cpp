#include "sirf/frame_assembler.h"

#include <cstring>

#include "link/link_state.h"
#include "platform/platform.h"
#include "sirf/message_decoder.h"

std::atomic<PayloadObserver> ObservePayload{nullptr};

namespace
{

enum class FramerState : uint8_t {
    Start1,
    Start2,
    LengthHigh,
    LengthLow,
    Payload,
    ChecksumHigh,
    ChecksumLow,
    End1,
    End2
};

constexpr uint8_t StartByte1 = 0xA0, StartByte2 = 0xA2, EndByte1 = 0xB0, EndByte2 = 0xB3;
constexpr uint16_t MeasuredLength = 188;

FramerState State = FramerState::Start1;
uint16_t Length = 0;    // payload bytes expected; first its high byte alone
uint16_t Count = 0;     // payload bytes stored
uint16_t Sum = 0;       // of the payload; at the end its difference from the received checksum
uint32_t StartTick = 0; // ms, when the length was accepted
uint8_t Buffer[SirfBufferSize];

} // namespace

// A case that keeps the frame returns; falling out of the switch is the one place that drops it.
void SirfFramer(uint8_t b)
{
    switch (State) {
    case FramerState::Start1:
        if (b == StartByte1) State = FramerState::Start2;
        return;
    case FramerState::Start2:
        if (b != StartByte2) break;
        State = FramerState::LengthHigh;
        return;
    case FramerState::LengthHigh:
        Length = b;
        State = FramerState::LengthLow;
        return;
    case FramerState::LengthLow:
        Length = static_cast<uint16_t>(Length << 8 | b);
        if (Length == 0 || Length > MaxSirfPayload) break;
        Count = Sum = 0;
        StartTick = GetTickCount();
        State = FramerState::Payload;
        return;
    case FramerState::Payload:
        Sum = static_cast<uint16_t>(Sum + b);
        Buffer[Count++] = b;
        if (Count == Length) {
            if (Length == MeasuredLength) MeasureEffectiveBaud(Length, StartTick);
            State = FramerState::ChecksumHigh;
        }
        return;
    case FramerState::ChecksumHigh:
        Sum = static_cast<uint16_t>((Sum & 0x7FFF) - (b & 0x7F) * 256);
        State = FramerState::ChecksumLow;
        return;
    case FramerState::ChecksumLow:
        Sum = static_cast<uint16_t>(Sum - b);
        if (Sum != 0) break;
        State = FramerState::End1;
        return;
    case FramerState::End1:
        if (b != EndByte1) break;
        State = FramerState::End2;
        return;
    case FramerState::End2:
        if (b == EndByte2) {
            if (const PayloadObserver observe = ObservePayload.load(std::memory_order_relaxed))
                observe(Buffer, Length);
            SirfMessageDecoder(Buffer, Length);
            SirfMessageCount.store(SirfMessageCount.load(std::memory_order_relaxed) + 1,
                                   std::memory_order_relaxed);
        }
        break;
    }
    State = FramerState::Start1;
}

void ResetSirfFramer()
{
    State = FramerState::Start1;
    Length = Count = Sum = 0;
    std::memset(Buffer, 0, sizeof Buffer);
}
