#include "sirf/frame_sender.h"

#include "link/write_queue.h"
#include "ui/error_boxes.h"

std::atomic<uint8_t> WrapEE{0}, PendingPollId{0};

namespace
{

constexpr uint32_t FrameBytes = 8; // start, length, checksum and end
constexpr uint32_t MaxSentPayload = 255;

void PutWord(uint32_t value)
{
    PortWrite(static_cast<uint8_t>(value >> 8));
    PortWrite(static_cast<uint8_t>(value));
}

} // namespace

void SirfSend(const uint8_t* payload, uint16_t length)
{
    if (length > MaxSentPayload || !IsPortOpen()) return;
    const bool wrap = WrapEE.load();
    const uint32_t wireLength = length + (wrap ? 1u : 0u);
    if (WriteQueueSpace() < wireLength + FrameBytes) {
        InfoBox(L"SirfSend", L"Buffer Full");
        return;
    }
    PutWord(0xA0A2);
    PutWord(wireLength & 0x7FFF);
    uint32_t sum = 0;
    if (wrap) {
        PortWrite(WrapId);
        sum = WrapId;
    }
    for (uint32_t i = 0; i < length; ++i) {
        PortWrite(payload[i]);
        sum += payload[i];
    }
    PutWord(sum);
    PutWord(0xB0B3);
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
