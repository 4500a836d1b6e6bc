// SPDX-License-Identifier: MIT
#include "nmea/sentence_assembler.h"

#include <algorithm>
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
constexpr uint8_t ShortestMeasuredBody = 65; // shorter ones take too few ticks for a measurement

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

// Bytes that only lengthen the body.
bool IsBodyByte(uint8_t b)
{
    return IsPrintable(b) && b != '*';
}

// Eight bytes at once: most of a stream is bodies.
using Word = uint64_t;
constexpr uint32_t WordBytes = sizeof(Word);
constexpr Word EachByte = ~Word{0} / 0xFF, HighBits = 0x80 * EachByte;

Word LoadWord(const uint8_t* bytes)
{
    // One load on processors that can load from any address; no function call on others.
    const auto half = [](const uint8_t* b) {
        return static_cast<uint32_t>(b[0] | b[1] << 8 | b[2] << 16) | static_cast<uint32_t>(b[3]) << 24;
    };
    return half(bytes) | Word{half(bytes + 4)} << 32;
}

// True if all are body bytes. Each term sets the high bit of some bytes that are not: below 20 and from A0,
// 7F to FE, '*'. Borrows and carries into further bytes come only from such a byte.
bool AreBodyBytes(Word word)
{
    const Word star = word ^ '*' * EachByte;
    return !(((word - 0x20 * EachByte) | (word + EachByte) | ((star - EachByte) & ~star)) & HighBits);
}

uint8_t XorOf(const uint8_t* bytes, uint32_t count)
{
    Word words = 0;
    for (; count >= WordBytes; bytes += WordBytes, count -= WordBytes) words ^= LoadWord(bytes);
    for (uint32_t half = 4 * WordBytes; half >= 8; half /= 2) words ^= words >> half;
    uint8_t all = static_cast<uint8_t>(words);
    for (; count; --count) all ^= *bytes++;
    return all;
}

} // namespace

uint32_t NmeaQuietBytes(const uint8_t* bytes, uint32_t count)
{
    uint32_t quiet = 0;
    switch (State) {
    case AssemblerState::Idle: {
        const void* const start = std::memchr(bytes, '$', count);
        return start ? static_cast<uint32_t>(static_cast<const uint8_t*>(start) - bytes) : count;
    }
    case AssemblerState::Body:
        while (quiet + WordBytes <= count && AreBodyBytes(LoadWord(bytes + quiet))) quiet += WordBytes;
        while (quiet < count && IsBodyByte(bytes[quiet])) ++quiet;
        return quiet;
    default: return 0;
    }
}

bool NmeaIsInBody()
{
    return State == AssemblerState::Body;
}

void NmeaTakeQuiet(const uint8_t* bytes, uint32_t count)
{
    if (State != AssemblerState::Body) return;
    Checksum = static_cast<uint8_t>(Checksum ^ XorOf(bytes, count));
    while (count) {
        const uint32_t piece = std::min(count, BodyCapacity - Length);
        std::memcpy(NmeaSentenceBuffer + Length, bytes, piece);
        Length = static_cast<uint8_t>(Length + piece);
        bytes += piece;
        count -= piece;
    }
}

// Each case that keeps the sentence returns; the code after the switch drops it.
bool NmeaAssembler(uint8_t b)
{
    bool complete = false;
    switch (State) {
    case AssemblerState::Idle:
        if (b == '$') {
            Checksum = Length = 0;
            HadChecksum = false;
            StartTick = GetTickCount();
            State = AssemblerState::Body;
        }
        return false;
    case AssemblerState::Body:
        if (b == '*') {
            EndBody();
            State = AssemblerState::FirstDigit;
            return false;
        }
        if (b == Cr) {
            EndBody();
            State = AssemblerState::WantLf;
            return false;
        }
        if (IsBodyByte(b)) {
            NmeaTakeQuiet(&b, 1);
            return false;
        }
        break;
    case AssemblerState::FirstDigit:
        if (b == Cr) {
            State = AssemblerState::WantLf;
            return false;
        }
        if (IsHexDigit(b)) {
            Checksum = static_cast<uint8_t>(Checksum - 16 * HexValue(b));
            State = AssemblerState::SecondDigit;
            return false;
        }
        break;
    case AssemblerState::SecondDigit:
        if (IsHexDigit(b) && Checksum == HexValue(b)) {
            HadChecksum = true;
            State = AssemblerState::WantCr;
            return false;
        }
        break;
    case AssemblerState::WantCr:
        if (b == Cr) {
            State = AssemblerState::WantLf;
            return false;
        }
        break;
    case AssemblerState::WantLf:
        complete = b == Lf;
        if (complete) DeliverSentence();
        break;
    }
    State = AssemblerState::Idle;
    return complete;
}

void ResetNmeaAssembler()
{
    State = AssemblerState::Idle;
    Length = Checksum = 0;
    std::memset(NmeaSentenceBuffer, 0, sizeof NmeaSentenceBuffer);
}
