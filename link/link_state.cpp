// SPDX-License-Identifier: MIT
#include "link/link_state.h"

#include "platform/platform.h"

std::atomic<uint8_t> NmeaRecognised{0}, SirfRecognised{0};
std::atomic<uint8_t> SearchInProgress{0};
std::atomic<uint8_t> LinkClosing{0};
std::atomic<uint8_t> CommandLinePending{0};
std::atomic<uint32_t> BytesReceived{0};
std::atomic<uint32_t> NmeaMessageCount{0};
std::atomic<uint32_t> SirfMessageCount{0};
std::atomic<uint32_t> NmeaReportedBaud{0};
std::atomic<float> EffectiveBaud{0};
std::atomic<int32_t> CommPortIdx{-1}, BaudrateIdx{-1};
std::atomic<int8_t> IrPortNumber{-1};

uint8_t ProtocolMode()
{
    return static_cast<uint8_t>((NmeaRecognised.load() ? ProtocolNmea : 0) |
                                (SirfRecognised.load() ? ProtocolSirf : 0));
}

void ResetProtocolMode()
{
    NmeaRecognised.store(0);
    SirfRecognised.store(0);
}

const wchar_t* ProtocolName(uint8_t mode)
{
    return mode == ProtocolNmea ? L"NMEA" : mode == ProtocolSirf ? L"SiRF" : L"-";
}

void MeasureEffectiveBaud(uint32_t bytes, uint32_t startTick)
{
    // Bytes that the driver had collected already take no time at all. The result is an infinite rate, which
    // is stored and shown as it is.
    const float elapsed = static_cast<float>(static_cast<uint32_t>(GetTickCount() - startTick));
    EffectiveBaud.store(static_cast<float>(bytes) * 10000.0f / elapsed);
}

int32_t FindBaudrate(int64_t baud)
{
    for (int32_t i = 0; i < BaudCount; ++i)
        if (BaudTable[i] == baud) return i;
    return -1;
}

void ResetLinkState()
{
    ResetProtocolMode();
    SearchInProgress.store(0);
    LinkClosing.store(0);
    CommandLinePending.store(0);
    BytesReceived.store(0);
    NmeaMessageCount.store(0);
    SirfMessageCount.store(0);
    NmeaReportedBaud.store(0);
    EffectiveBaud.store(0);
    CommPortIdx.store(-1);
    BaudrateIdx.store(-1);
    IrPortNumber.store(-1);
}
