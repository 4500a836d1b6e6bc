// SPDX-License-Identifier: MIT
#include "nmea/command_encoder.h"

#include <cstring>

#include "link/write_queue.h"
#include "ui/error_boxes.h"

uint32_t FrameNmeaCommand(const char* body, uint8_t length, uint8_t (&sentence)[MaxNmeaCommand])
{
    constexpr char HexDigits[] = "0123456789ABCDEF";
    uint32_t count = 0;
    uint8_t checksum = 0;
    sentence[count++] = '$';
    for (uint32_t i = 0; i < length; ++i) {
        const uint8_t b = static_cast<uint8_t>(body[i]);
        sentence[count++] = b;
        checksum = static_cast<uint8_t>(checksum ^ b);
    }
    sentence[count++] = '*';
    sentence[count++] = static_cast<uint8_t>(HexDigits[checksum >> 4]);
    sentence[count++] = static_cast<uint8_t>(HexDigits[checksum & 15]);
    sentence[count++] = '\r';
    sentence[count++] = '\n';
    return count;
}

int32_t NmeaSend(const char* body, uint8_t length)
{
    if (!IsPortOpen()) return -1;
    uint8_t sentence[MaxNmeaCommand];
    const uint32_t count = FrameNmeaCommand(body, length, sentence);
    if (WriteQueueSpace() < count) {
        InfoBox(L"NmeaSend", L"Buffer Full");
        return 0;
    }
    for (uint32_t i = 0; i < count; ++i) PortWrite(sentence[i]);
    PortWriteBuffer();
    return 0;
}

int32_t NmeaSend(const char* body)
{
    const size_t length = std::strlen(body);
    return length <= MaxNmeaBody ? NmeaSend(body, static_cast<uint8_t>(length)) : -1;
}

void NmeaSendFromReader(const char* body)
{
    const size_t length = std::strlen(body);
    if (length > MaxNmeaBody) return;
    uint8_t sentence[MaxNmeaCommand];
    PortWriteFromReader(sentence, FrameNmeaCommand(body, static_cast<uint8_t>(length), sentence));
}

int32_t SendPsrf103(char message, char mode, char rate, char checksum)
{
    char body[] = "PSRF103,0_,0_,0_,0_";
    body[9] = message;
    body[12] = mode;
    body[15] = rate;
    body[18] = checksum;
    return NmeaSend(body);
}
