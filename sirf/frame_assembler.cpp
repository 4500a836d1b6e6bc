// SPDX-License-Identifier: MIT
#include "sirf/frame_assembler.h"

#include <algorithm>
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

// Number of bytes that are searched for a start at once. It is small, because the other assembler may stop at
// any of them, and then the rest would be searched again.
constexpr uint32_t SearchedBytes = 64;

} // namespace

uint32_t SirfQuietBytesAtMost(uint32_t count)
{
    switch (State) {
    case FramerState::Start1: return std::min(count, SearchedBytes);
    case FramerState::Payload: return std::min<uint32_t>(count, Length - Count - 1u);
    default: return 0;
    }
}

uint32_t SirfQuietBytes(const uint8_t* bytes, uint32_t count)
{
    count = SirfQuietBytesAtMost(count);
    if (State != FramerState::Start1) return count;
    const void* const start = std::memchr(bytes, StartByte1, count);
    return start ? static_cast<uint32_t>(static_cast<const uint8_t*>(start) - bytes) : count;
}

void SirfTakeQuiet(const uint8_t* bytes, uint32_t count)
{
    if (State != FramerState::Payload) return;
    uint32_t sum = Sum;
    for (uint32_t i = 0; i < count; ++i) sum += bytes[i];
    Sum = static_cast<uint16_t>(sum);
    std::memcpy(Buffer + Count, bytes, count);
    Count = static_cast<uint16_t>(Count + count);
}

// Each case that keeps the frame returns; the code after the switch drops it.
bool SirfFramer(uint8_t b)
{
    bool complete = false;
    switch (State) {
    case FramerState::Start1:
        if (b == StartByte1) State = FramerState::Start2;
        return false;
    case FramerState::Start2:
        if (b != StartByte2) break;
        State = FramerState::LengthHigh;
        return false;
    case FramerState::LengthHigh:
        Length = b;
        State = FramerState::LengthLow;
        return false;
    case FramerState::LengthLow:
        Length = static_cast<uint16_t>(Length << 8 | b);
        if (Length == 0 || Length > MaxSirfPayload) break;
        Count = Sum = 0;
        StartTick = GetTickCount();
        State = FramerState::Payload;
        return false;
    case FramerState::Payload:
        SirfTakeQuiet(&b, 1);
        if (Count == Length) {
            if (Length == MeasuredLength) MeasureEffectiveBaud(Length, StartTick);
            State = FramerState::ChecksumHigh;
        }
        return false;
    case FramerState::ChecksumHigh:
        Sum = static_cast<uint16_t>((Sum & 0x7FFF) - (b & 0x7F) * 256);
        State = FramerState::ChecksumLow;
        return false;
    case FramerState::ChecksumLow:
        Sum = static_cast<uint16_t>(Sum - b);
        if (Sum != 0) break;
        State = FramerState::End1;
        return false;
    case FramerState::End1:
        if (b != EndByte1) break;
        State = FramerState::End2;
        return false;
    case FramerState::End2:
        complete = b == EndByte2;
        if (complete) {
            if (const PayloadObserver observe = ObservePayload.load(std::memory_order_relaxed))
                observe(Buffer, Length);
            SirfMessageDecoder(Buffer, Length);
            SirfMessageCount.store(SirfMessageCount.load(std::memory_order_relaxed) + 1,
                                   std::memory_order_relaxed);
        }
        break;
    }
    State = FramerState::Start1;
    return complete;
}

void ResetSirfFramer()
{
    State = FramerState::Start1;
    Length = Count = Sum = 0;
    std::memset(Buffer, 0, sizeof Buffer);
}
