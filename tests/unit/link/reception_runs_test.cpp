// SPDX-License-Identifier: MIT
// The receiver's bytes arrive in portions of any size. All visible effects are the same for all sizes.
#include <fstream>
#include <iterator>

#include "graph/channels.h"
#include "graph/recorder.h"
#include "link/link_state.h"
#include "link/reader_thread.h"
#include "link/receiver_log.h"
#include "nmea/receiver_messages.h"
#include "tests/unit/support/product_test.h"

namespace
{

using namespace std::literals;

// A frame with right length and checksum around the payload.
std::string Frame(std::string_view payload)
{
    uint32_t sum = 0;
    for (const char c : payload) sum += static_cast<unsigned char>(c);
    const auto word = [](size_t value) {
        return std::string{static_cast<char>(value >> 8 & 0x7F), static_cast<char>(value)};
    };
    return "\xA0\xA2" + word(payload.size()) + std::string(payload) + word(sum) + "\xB0\xB3";
}

class ReceptionRuns : public ProductTest
{
protected:
    // The effects of a stream that begins in a new program and arrives in portions that end at the given
    // places: page, chart values, counters, texts, commands, log.
    static std::string Outcome(std::string_view bytes, const std::vector<size_t>& ends)
    {
        ReceptionRuns fresh;
        const HeadlessPort& port = fresh.OpenPort();
        LogFileHandle.store(
            CreateFileW(L"\\log", GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
        size_t begin = 0;
        for (const size_t end : ends) {
            Feed(bytes.substr(begin, end - begin));
            begin = end;
        }
        Feed(bytes.substr(begin));
        std::string text = std::to_string(NmeaMessageCount.load()) + " sentences, " +
                           std::to_string(SirfMessageCount.load()) + " frames, " +
                           std::to_string(BytesReceived.load()) + " bytes, mode " +
                           std::to_string(ProtocolMode()) + ", " + std::to_string(GraphSampleCount.load()) +
                           " samples, " + std::to_string(NmeaReportedBaud.load()) + " bits/s, rate " +
                           std::to_string(EffectiveBaud.load()) + "\n";
        for (uint32_t line = 0; line < TextLineCount; ++line)
            for (const wchar_t c : Line(line) + L"\n") text += static_cast<char>(c);
        for (const GraphChannelRecord& channel : GraphChannel) text += std::to_string(channel.Value) + " ";
        for (const wchar_t* c = ReceiverMessagesText; *c; ++c) text += static_cast<char>(*c);
        for (const std::string& command : port.writes) text += "sent " + command;
        LogClose();
        EXPECT_EQ(HeadlessFileContent(L"\\log"), bytes);
        return text;
    }

    static std::vector<size_t> EachOf(size_t portion, size_t size)
    {
        std::vector<size_t> ends;
        for (size_t end = portion; end < size; end += portion) ends.push_back(end);
        return ends;
    }

    void TestBody() override {}
};

// Sizes of portions that have no common factor with the messages' lengths, and some round ones.
constexpr size_t Portions[] = {2, 3, 7, 31, 61, 64, 65, 127, 256, 1024, 4093};

class RecordedLogs : public testing::TestWithParam<const char*>
{
};

class Runs : public ReceptionRuns
{
public:
    using ReceptionRuns::EachOf;
    using ReceptionRuns::Outcome;
};

TEST_P(RecordedLogs, AreTakenTheSameInAnyPortions)
{
    std::ifstream file(std::string(TEST_DATA "/") + GetParam(), std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(file), {});
    ASSERT_GT(bytes.size(), 1000u);
    const std::string expected = Runs::Outcome(bytes, Runs::EachOf(1, bytes.size()));
    EXPECT_EQ(Runs::Outcome(bytes, {}), expected) << "whole";
    for (const size_t portion : Portions)
        EXPECT_EQ(Runs::Outcome(bytes, Runs::EachOf(portion, bytes.size())), expected) << portion;
}

INSTANTIATE_TEST_SUITE_P(All, RecordedLogs,
                         testing::Values("cold-start.srf", "cold-start.txt", "noisy-line.srf",
                                         "noisy-line.txt", "walk-south-west.srf", "walk-south-west.txt",
                                         "wrapped.srf"));

const std::string Rmc = Sentence("GPRMC,101112,A,3723.2475,N,12158.3416,W,10,20,010203,,");
const std::string Fix = Frame("\x02" + std::string(22, '\0') + "\x07" + "\x00\x55\xD4\xA8"s + "\x05" +
                              std::string(12, '\0')); // 56250.00 s: 15:37:30

// Both protocols in one run, one after the other, apart and within the other's messages: the page shows the
// last message, so the order is important.
TEST(ReceptionOrder, OfBothProtocolsIsThatOfTheirLastBytes)
{
    const std::string nmeaLast = Fix + Rmc, sirfLast = Rmc + Fix;
    const std::string sentenceInFrame = Frame("\xFF" + Rmc);
    const std::string sentenceInFrameThenFix = sentenceInFrame + Fix;
    const std::string brokenFrameThenSentence = Fix.substr(0, 20) + Rmc + Fix;
    const std::string brokenSentenceThenFix = "$GPRMC,1011" + Fix + Rmc;
    for (const std::string& stream : {nmeaLast, sirfLast, sentenceInFrame, sentenceInFrameThenFix,
                                      brokenFrameThenSentence, brokenSentenceThenFix}) {
        const std::string expected = Runs::Outcome(stream, Runs::EachOf(1, stream.size()));
        EXPECT_EQ(Runs::Outcome(stream, {}), expected);
        for (size_t cut = 1; cut < stream.size(); ++cut)
            EXPECT_EQ(Runs::Outcome(stream, {cut}), expected) << cut;
    }
    EXPECT_NE(Runs::Outcome(nmeaLast, {}).find(" UTC: 2003-02-01 10:11:12"), std::string::npos);
    EXPECT_NE(Runs::Outcome(sirfLast, {}).find(" UTC: 2003-02-01 15:37:30"), std::string::npos);
    EXPECT_NE(Runs::Outcome(sentenceInFrame, {}).find("1 sentences, 1 frames"), std::string::npos);
}

// A run may end with the byte that begins a message, or anywhere in it.
TEST(ReceptionOrder, AMessageMayBeCutAtEachPlaceAndInThree)
{
    const std::string body(200, 'x');
    for (const std::string& message : {Sentence("PSRFTXT" + body), Frame("\xE1" + body), Fix}) {
        const std::string stream = "\xA0" + message + "$" + message;
        const std::string expected = Runs::Outcome(stream, Runs::EachOf(1, stream.size()));
        for (size_t first = 1; first < stream.size(); first += 1)
            EXPECT_EQ(Runs::Outcome(stream, {first, std::min(first + 66, stream.size())}), expected) << first;
    }
}

// A routing that stops at messages stops at each, after its last byte, and takes the rest in one piece.
TEST(ReceptionOrder, RoutingUpToAMessageStopsBehindItsLastByte)
{
    const std::string stream = "noise" + Rmc + Fix + Frame("\xFF" + Rmc) + "more noise";
    const std::vector<uint32_t> expected = {static_cast<uint32_t>(5 + Rmc.size()),
                                            static_cast<uint32_t>(Fix.size()),
                                            static_cast<uint32_t>(4 + 1 + Rmc.size()), 4, 10};
    Runs fresh;
    std::vector<uint32_t> taken;
    for (size_t place = 0; place < stream.size(); place += taken.back())
        taken.push_back(RouteUpToMessage(reinterpret_cast<const uint8_t*>(stream.data()) + place,
                                         static_cast<uint32_t>(stream.size() - place)));
    EXPECT_EQ(taken, expected);
}

// The rate is measured from the time between a message's start and end, wherever the portions end.
TEST(ReceptionOrder, TheRateIsMeasuredWhereTheMessageIsInTheStream)
{
    Runs fresh;
    const std::string text = Sentence("PSRFTXT" + std::string(93, 'x')); // a body of 100 characters
    const auto feed = [](std::string_view bytes) {
        RouteReceived(reinterpret_cast<const uint8_t*>(bytes.data()), static_cast<uint32_t>(bytes.size()));
    };
    feed("before" + text.substr(0, 50));
    Sleep(250);
    feed(text.substr(50) + "after");
    EXPECT_EQ(EffectiveBaud.load(), 4000.0f); // 1000 bits in 250 ms

    const std::string frame = Frame("\xFF" + std::string(187, 'x'));
    feed(frame.substr(0, 4));
    Sleep(500);
    feed(frame.substr(4));
    EXPECT_EQ(EffectiveBaud.load(), 3760.0f);
}

} // namespace
