// SPDX-License-Identifier: MIT
#include "sirf/frame_sender.h"

#include "link/write_queue.h"
#include "ui/error_boxes.h"

std::atomic<uint8_t> WrapEE{0}, PendingPollId{0}, LastRefusedCommand{0};

namespace
{

void PutWord(uint8_t*& place, uint32_t value)
{
    *place++ = static_cast<uint8_t>(value >> 8);
    *place++ = static_cast<uint8_t>(value);
}

} // namespace

uint32_t FrameSirfCommand(const uint8_t* payload, uint8_t length, uint8_t (&frame)[MaxSirfCommand])
{
    const bool wrap = WrapEE.load();
    uint8_t* place = frame;
    PutWord(place, 0xA0A2);
    PutWord(place, length + (wrap ? 1u : 0u));
    uint32_t sum = 0;
    if (wrap) {
        *place++ = WrapId;
        sum = WrapId;
    }
    for (uint32_t i = 0; i < length; ++i) {
        *place++ = payload[i];
        sum += payload[i];
    }
    PutWord(place, sum);
    PutWord(place, 0xB0B3);
    return static_cast<uint32_t>(place - frame);
}

void SirfSend(const uint8_t* payload, uint16_t length)
{
    if (length > MaxSirfCommandPayload || !IsPortOpen()) return;
    uint8_t frame[MaxSirfCommand];
    const uint32_t count = FrameSirfCommand(payload, static_cast<uint8_t>(length), frame);
    if (WriteQueueSpace() < count) {
        InfoBox(L"SirfSend", L"Buffer Full");
        return;
    }
    for (uint32_t i = 0; i < count; ++i) PortWrite(frame[i]);
    PortWriteBuffer();
}

void SendPollSoftwareVersion()
{
    const uint8_t payload[] = {132, 0};
    SirfSend(payload, sizeof payload);
}

void SendPollNavigationParameters()
{
    const uint8_t payload[] = {152, 0};
    SirfSend(payload, sizeof payload);
}

void SendPollParameter(uint8_t commandId)
{
    const uint8_t payload[] = {168, commandId};
    SirfSend(payload, sizeof payload);
}

void SendMessageRate(uint8_t mode, uint8_t messageId, uint8_t rateSeconds)
{
    const uint8_t payload[] = {166, mode, messageId, rateSeconds, 0, 0, 0, 0};
    SirfSend(payload, sizeof payload);
}
