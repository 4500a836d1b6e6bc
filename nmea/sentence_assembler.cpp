#include "nmea/sentence_assembler.h"

#include <cstring>

#include "link/link_state.h"
#include "nmea/sentence_decoder.h"
#include "platform/platform.h"

std::atomic<SentenceObserver> ObserveSentence{nullptr};

namespace
{

enum class AssemblerState : uint8_t { Idle, Body, FirstDigit, SecondDigit, WantCr, WantLf };

constexpr uint8_t Cr = '\r', Lf = '\n';
constexpr uint32_t BodyCapacity = 256;
constexpr uint8_t ShortestMeasuredBody = 65; // shorter ones take too few ticks to measure a rate

AssemblerState State = AssemblerState::Idle;
char NmeaSentenceBuffer[BodyCapacity + SentenceSlack];
uint8_t Length = 0; // 8 bits on purpose: an overlong body wraps
uint8_t Checksum = 0;
bool HadChecksum = false;
uint32_t StartTick = 0; // ms, at the '$'

bool IsPrintable(uint8_t b)
{
    return b >= 0x20 && b <= 0x7E;
}

bool IsHexDigit(uint8_t b)
{
    return (b >= '0' && b <= '9') || (b >= 'A' && b <= 'F') || (b >= 'a' && b <= 'f');
}

uint8_t HexValue(uint8_t b)
{
    return static_cast<uint8_t>(b < 'A' ? b - '0' : b < 'G' ? b - 'A' + 10 : b - 'a' + 10);
}

void EndBody()
{
    if (Length >= ShortestMeasuredBody) MeasureEffectiveBaud(Length, StartTick);
}

void DeliverSentence()
{
    NmeaSentenceBuffer[Length] = 0;
    if (const SentenceObserver observe = ObserveSentence.load(std::memory_order_relaxed))
        observe(NmeaSentenceBuffer, Length, HadChecksum);
    NmeaDispatcher(NmeaSentenceBuffer);
    NmeaMessageCount.store(NmeaMessageCount.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
}

} // namespace

// A case that keeps the sentence returns; falling out of the switch is the one place that drops it.
void NmeaAssembler(uint8_t b)
{
    switch (State) {
    case AssemblerState::Idle:
        if (b == '$') {
            Checksum = Length = 0;
            HadChecksum = false;
            StartTick = GetTickCount();
            State = AssemblerState::Body;
        }
        return;
    case AssemblerState::Body:
        if (b == '*') {
            EndBody();
            State = AssemblerState::FirstDigit;
            return;
        }
        if (b == Cr) {
            EndBody();
            State = AssemblerState::WantLf;
            return;
        }
        if (IsPrintable(b)) {
            NmeaSentenceBuffer[Length++] = static_cast<char>(b);
            Checksum = static_cast<uint8_t>(Checksum ^ b);
            return;
        }
        break;
    case AssemblerState::FirstDigit:
        if (b == Cr) {
            State = AssemblerState::WantLf;
            return;
        }
        if (IsHexDigit(b)) {
            Checksum = static_cast<uint8_t>(Checksum - 16 * HexValue(b));
            State = AssemblerState::SecondDigit;
            return;
        }
        break;
    case AssemblerState::SecondDigit:
        if (IsHexDigit(b) && Checksum == HexValue(b)) {
            HadChecksum = true;
            State = AssemblerState::WantCr;
            return;
        }
        break;
    case AssemblerState::WantCr:
        if (b == Cr) {
            State = AssemblerState::WantLf;
            return;
        }
        break;
    case AssemblerState::WantLf:
        if (b == Lf) DeliverSentence();
        break;
    }
    State = AssemblerState::Idle;
}

void ResetNmeaAssembler()
{
    State = AssemblerState::Idle;
    Length = Checksum = 0;
    std::memset(NmeaSentenceBuffer, 0, sizeof NmeaSentenceBuffer);
}
