// SPDX-License-Identifier: MIT
#include "sirf/frame_assembler.h"

#include <cmath>

#include "link/link_state.h"
#include "sirf/message_decoder.h"
#include "tests/unit/sirf/sirf_test.h"

namespace
{

class FrameAssembler : public SirfTest
{
protected:
    // Frames accepted and the bytes of the last one's payload, sent as a development text.
    static uint32_t Frames() { return SirfMessageCount.load(); }
    static std::string Delivered(size_t length)
    {
        return std::string(reinterpret_cast<const char*>(DevelopmentText), length);
    }
};

TEST_F(FrameAssembler, DeliversAFrame)
{
    Feed(HexText("A0 A2 00 02 84 00 00 84 B0 B3"));
    EXPECT_EQ(Frames(), 1u);
    EXPECT_EQ(ProtocolMode(), ProtocolSirf);
}

TEST_F(FrameAssembler, HandsThePayloadOn)
{
    Feed(HexText("A0 A2 00 04 FF 41 42 43 01 C5 B0 B3"));
    EXPECT_EQ(Delivered(4), "\xFF"
                            "ABC");
}

TEST_F(FrameAssembler, CountsAfterTheDecoder)
{
    // The decoder's first message clears the page; the count follows, so a search that sees it finds both.
    SetTextLine(3, L"old");
    Feed(HexText("A0 A2 00 02 84 00 00 84 B0"));
    EXPECT_EQ(Frames(), 0u);
    EXPECT_EQ(Line(3), L"old");
    Feed("\xB3");
    EXPECT_EQ(Frames(), 1u);
    EXPECT_EQ(Line(3), L"");
}

struct FrameRow {
    const char* legend;
    const char* bytes;
    uint32_t frames;
};
constexpr FrameRow FrameRows[] = {
    {"good", "A0 A2 00 02 84 00 00 84 B0 B3", 1},
    {"two in a row", "A0 A2 00 02 84 00 00 84 B0 B3 A0 A2 00 01 07 00 07 B0 B3", 2},
    {"top bit of the checksum's high byte is ignored", "A0 A2 00 02 84 00 80 84 B0 B3", 1},
    {"another bit of it is not", "A0 A2 00 02 84 00 40 84 B0 B3", 0},
    {"checksum low byte off by one", "A0 A2 00 02 84 00 00 85 B0 B3", 0},
    {"checksum high byte counts", "A0 A2 00 02 84 84 01 08 B0 B3", 1},
    {"checksum without its high byte", "A0 A2 00 02 84 84 00 08 B0 B3", 0},
    {"second start byte wrong", "A0 A3 00 02 84 00 00 84 B0 B3", 0},
    {"A0 A0 A2 is no start", "A0 A0 A2 00 02 84 00 00 84 B0 B3", 0},
    {"first end byte wrong", "A0 A2 00 02 84 00 00 84 B1 B3", 0},
    {"second end byte wrong", "A0 A2 00 02 84 00 00 84 B0 B2", 0},
    {"length 0", "A0 A2 00 00 00 00 B0 B3", 0},
    {"length with its top bit set", "A0 A2 80 02 84 00 00 84 B0 B3", 0},
    {"the byte that broke a frame begins none: checksum", "A0 A2 00 01 07 00 A0 A2 00 01 07 00 07 B0 B3", 0},
    {"the byte that broke a frame begins none: end", "A0 A2 00 01 07 00 07 A0 A2 00 01 07 00 07 B0 B3", 0},
    {"the byte that broke a frame begins none: end 2", "A0 A2 00 01 07 00 07 B0 A0 A2 00 01 07 00 07 B0 B3",
     0},
    {"good behind a broken one", "A0 A2 00 01 07 00 08 A0 A2 00 01 07 00 07 B0 B3", 1},
    {"a start inside the payload is payload", "A0 A2 00 03 FF A0 A2 02 41 B0 B3", 1},
    {"an end inside the payload is payload", "A0 A2 00 03 FF B0 B3 02 62 B0 B3", 1},
};

TEST_F(FrameAssembler, AcceptsAndDrops)
{
    for (const FrameRow& row : FrameRows)
        for (const char* garbage : {"", "00", "B3", "24 47 50", "A0 00"}) {
            const uint32_t before = Frames();
            Feed(HexText(garbage) + HexText(row.bytes));
            EXPECT_EQ(Frames() - before, row.frames) << row.legend << ", behind " << garbage;
            ResetSirfFramer();
        }
}

TEST_F(FrameAssembler, NextFrameIsFoundBehindEachDroppedOne)
{
    for (const FrameRow& row : FrameRows) {
        Feed(HexText(row.bytes));
        Feed(std::string(16, '\0')); // the bytes for which an unfinished frame still waits
        const uint32_t before = Frames();
        Feed(HexText("A0 A2 00 01 07 00 07 B0 B3"));
        EXPECT_EQ(Frames() - before, 1u) << row.legend;
    }
}

TEST_F(FrameAssembler, Length1023IsAcceptedAnd1024IsNot)
{
    Feed(Frame(Payload(255, 1023).At(1022, "5A")));
    EXPECT_EQ(Frames(), 1u);
    EXPECT_EQ(DevelopmentText[1022], 0x5A);
    Feed(Frame(Payload(255, 1024)));
    EXPECT_EQ(Frames(), 1u);
    // Refused at the second length byte: the very next byte may begin a frame.
    Feed(HexText("A0 A2 04 00 A0 A2 00 01 07 00 07 B0 B3"));
    EXPECT_EQ(Frames(), 2u);
}

TEST_F(FrameAssembler, SumBeyond15BitsIsCompared)
{
    Payload payload(255, 1023); // 1023 * FFh = 3FB01h: 7B01h in 15 bits
    for (uint8_t& b : payload.bytes) b = 0xFF;
    std::string frame = HexText("A0 A2 03 FF") + std::string(1023, '\xFF');
    Feed(frame + HexText("7B 01 B0 B3"));
    EXPECT_EQ(Frames(), 1u);
    Feed(frame + HexText("FB 01 B0 B3"));
    EXPECT_EQ(Frames(), 2u);
    Feed(frame + HexText("7A 01 B0 B3"));
    EXPECT_EQ(Frames(), 2u);
}

TEST_F(FrameAssembler, OutcomeDoesNotDependOnTheProtocolRecognised)
{
    NmeaRecognised.store(1);
    Feed(HexText("A0 A2 00 02 84 00 00 84 B0 B3"));
    EXPECT_EQ(Frames(), 1u);
    EXPECT_EQ(ProtocolMode(), ProtocolNmea | ProtocolSirf);
}

TEST_F(FrameAssembler, FrameWithDollarSignsIsFramedAndSoIsTheSentenceBehindIt)
{
    RecogniseNmea();
    Feed(HexText("A0 A2 00 03 FF 24 24 01 47 B0 B3")); // the other assembler drops its start at B0
    EXPECT_EQ(Frames(), 1u);
    FeedSentence("GPXYZ");
    EXPECT_EQ(NmeaMessageCount.load(), 1u);
}

TEST_F(FrameAssembler, FrameBrokenByASentenceIsLostAndTheNextIsNot)
{
    RecogniseNmea();
    const std::string frame = Frame(Payload(7, 20));
    Feed(frame.substr(0, 10));
    FeedSentence("GPXYZ");
    Feed(frame.substr(10));
    EXPECT_EQ(Frames(), 0u);
    EXPECT_EQ(NmeaMessageCount.load(), 1u);
    Feed(frame);
    EXPECT_EQ(Frames(), 1u);
}

// ---- Line rate ----------------------------------------------------------------------------------------

// Feeds a frame whose payload takes `milliseconds` from its length to its last byte; time also passes before
// and after it.
void FeedTimed(const std::string& frame, uint32_t milliseconds,
               const std::function<void(std::string_view)>& feed)
{
    const std::string_view bytes = frame;
    HeadlessSetTick(1000);
    feed(bytes.substr(0, 3));
    HeadlessSetTick(2000);
    feed(bytes.substr(3, 1));
    HeadlessSetTick(2000 + milliseconds);
    feed(bytes.substr(4, bytes.size() - 8));
    HeadlessSetTick(9000);
    feed(bytes.substr(bytes.size() - 4));
}

TEST_F(FrameAssembler, PayloadOf188BytesMeasuresTheLine)
{
    FeedTimed(Frame(Payload(4, 188)), 400, [](std::string_view b) { Feed(b); });
    EXPECT_EQ(EffectiveBaud.load(), 4700.0f); // 188 bytes of ten bits in 0.4 s
}

TEST_F(FrameAssembler, PayloadsOf187And189BytesDoNot)
{
    EffectiveBaud.store(1.0f);
    for (const size_t length : {187u, 189u})
        FeedTimed(Frame(Payload(4, length)), 400, [](std::string_view b) { Feed(b); });
    EXPECT_EQ(Frames(), 2u);
    EXPECT_EQ(EffectiveBaud.load(), 1.0f);
}

TEST_F(FrameAssembler, MeasuresEvenWhenTheChecksumIsWrong)
{
    std::string frame = Frame(Payload(4, 188));
    frame[frame.size() - 3] ^= 1;
    FeedTimed(frame, 200, [](std::string_view b) { Feed(b); });
    EXPECT_EQ(Frames(), 0u);
    EXPECT_EQ(EffectiveBaud.load(), 9400.0f);
}

TEST_F(FrameAssembler, FrameWithinOneMillisecondMeasuresInfinity)
{
    Feed(Frame(Payload(4, 188)));
    EXPECT_TRUE(std::isinf(EffectiveBaud.load()));
}

TEST_F(FrameAssembler, TickMayWrapWhileAFrameArrives)
{
    const std::string frame = Frame(Payload(4, 188));
    HeadlessSetTick(0xFFFFFFF0u);
    Feed(frame.substr(0, 4));
    HeadlessSetTick(0x10u);
    Feed(frame.substr(4));
    EXPECT_EQ(EffectiveBaud.load(), 58750.0f); // 32 ms
}

} // namespace
