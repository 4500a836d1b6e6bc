// SPDX-License-Identifier: MIT
#include "nmea/sentence_assembler.h"

#include <limits>

#include "link/link_state.h"
#include "link/write_queue.h"
#include "nmea/receiver_messages.h"
#include "tests/unit/support/product_test.h"

namespace
{

using namespace std::literals;

// A sentence's body in the form of the receiver text: names of unknown sentences, and the whole text after
// PSRFTXT.
class SentenceAssembler : public ProductTest
{
protected:
    SentenceAssembler() { RecogniseNmea(); }

    static uint32_t Accepted() { return NmeaMessageCount.load(); }
};

struct StreamRow {
    const char* name;
    std::string_view bytes;
    uint32_t accepted;
    const wchar_t* text; // receiver text afterwards
};

constexpr StreamRow StreamRows[] = {
    {"right checksum", "$PSRFTXTA*0E\r\n"sv, 1, L"A\r\n"},
    {"wrong checksum", "$PSRFTXTA*0F\r\n"sv, 0, L""},
    {"wrong high digit", "$PSRFTXTA*1E\r\n"sv, 0, L""},
    {"lower-case digits", "$PSRFTXTA*0e\r\n"sv, 1, L"A\r\n"},
    {"all hexadecimal letters", "$PSRFTXTabcdefABCDEF*4F\r\n"sv, 1, L"abcdefABCDEF\r\n"},
    {"no '*' at all", "$PSRFTXTA\r\n"sv, 1, L"A\r\n"},
    {"'*' without digits", "$PSRFTXTA*\r\n"sv, 1, L"A\r\n"},
    {"empty body", "$\r\n"sv, 1, L"\r\n"},
    {"CR without LF", "$PSRFTXTA\r$PSRFTXTB\r\n"sv, 0, L""},
    {"LF without CR", "$PSRFTXTA*0E\n"sv, 0, L""},
    {"LF ends a body without CR", "$PSRFTXTA\n"sv, 0, L""},
    {"zero byte in the body", "$PSRF\0TXTA\r\n"sv, 0, L""},
    {"tab in the body", "$PSRFTXT\tA\r\n"sv, 0, L""},
    {"8-bit character in the body", "$PSRFTXT\xB0\r\n"sv, 0, L""},
    {"delete character in the body", "$PSRFTXT\x7F\r\n"sv, 0, L""},
    {"highest printable character", "$PSRFTXT~\r\n"sv, 1, L"~\r\n"},
    {"second '$' is a body byte", "$AB$CD*20\r\n"sv, 1, L"AB$CD\r\n"},
    {"no hexadecimal first digit", "$PSRFTXTA*GE\r\n"sv, 0, L""},
    {"no hexadecimal second digit", "$PSRFTXTA*0G\r\n"sv, 0, L""},
    {"character between checksum and CR", "$PSRFTXTA*0E \r\n"sv, 0, L""},
    {"'$' where a digit is due is lost", "$PSRFTXTA*$PSRFTXTB\r\n"sv, 0, L""},
    {"third digit", "$PSRFTXTA*0EE\r\n"sv, 0, L""},
    {"next sentence after a dropped one", "$PSRFTXTA*00\r\n$PSRFTXTB\r\n"sv, 1, L"B\r\n"},
    {"bytes between sentences", "noise\r\n\xFF$PSRFTXTA\r\nnoise$PSRFTXTB\r\n"sv, 2, L"A\r\nB\r\n"},
};

// Bodies are checked several characters at a time: each byte at each position of such a group.
TEST_F(SentenceAssembler, EachByteAtEachPlaceIsTakenForWhatItIs)
{
    constexpr uint32_t Places = 17;
    for (uint32_t value = 0; value < 256; ++value)
        for (uint32_t place = 0; place < Places; ++place) {
            std::string text(Places, 'x');
            text[place] = static_cast<char>(value);
            const bool isPrintable = value >= 0x20 && value <= 0x7E;
            const bool isStarAtTheEnd = place == Places - 1; // '*' and the line end: no checksum
            const uint32_t before = Accepted();
            Feed("$PSRFTXT" + text + "\r\n");
            EXPECT_EQ(Accepted() - before, isPrintable && (value != '*' || isStarAtTheEnd) ? 1u : 0u)
                << value << " at " << place;
            ResetNmeaAssembler();
        }
}

TEST_F(SentenceAssembler, AcceptsAndDrops)
{
    for (const StreamRow& row : StreamRows) {
        for (const std::string_view garbage : {""sv, "garbage*00\r\n"sv}) {
            ResetNmeaAssembler();
            NmeaMessageCount.store(0);
            ReceiverMessagesText[0] = 0;
            Feed(garbage);
            Feed(row.bytes);
            EXPECT_EQ(Accepted(), row.accepted) << row.name;
            EXPECT_STREQ(ReceiverMessagesText, row.text) << row.name;
        }
    }
}

// Each position of a sentence, each byte that is not allowed there: the sentence is dropped, the next one
// accepted.
TEST_F(SentenceAssembler, EveryWrongByteDropsOneSentenceOnly)
{
    const std::string good = "$PSRFTXTA*0E\r\n";
    for (size_t position = 1; position < good.size(); ++position)
        for (int value = 0; value < 256; ++value) {
            std::string bytes = good;
            if (static_cast<unsigned char>(bytes[position]) == value) continue;
            bytes[position] = static_cast<char>(value);
            ResetNmeaAssembler();
            NmeaMessageCount.store(0);
            Feed(bytes);
            const bool lowerCase = position == 11 && value == 'e';
            const bool noChecksum = position == 9 && value >= 0x20 && value <= 0x7E; // no '*' any more
            const uint32_t expected = lowerCase || noChecksum ? 1 : 0;
            EXPECT_EQ(Accepted(), expected) << position << ' ' << value;
            Feed("\r\n" + good);
            EXPECT_EQ(Accepted(), expected + 1) << position << ' ' << value;
        }
}

TEST_F(SentenceAssembler, BodyOf300CharactersWrapsToItsLast44)
{
    std::string body = "PSRFTXT";
    while (body.size() < 256) body += 'x';
    std::string tail = "PSRFTXTTHE LAST 44 CHARACTERS OF THE BODY 12";
    ASSERT_EQ(tail.size(), 44u);
    Feed("$" + body + tail + "\r\n");
    EXPECT_EQ(Accepted(), 1u);
    EXPECT_STREQ(ReceiverMessagesText, L"THE LAST 44 CHARACTERS OF THE BODY 12\r\n");
}

TEST_F(SentenceAssembler, LongestBodyThatDoesNotWrap)
{
    const std::string text(248, 'y');
    Feed("$PSRFTXT" + text + "\r\n"); // 255 characters
    EXPECT_EQ(std::wstring(ReceiverMessagesText), std::wstring(248, L'y') + L"\r\n");
}

TEST_F(SentenceAssembler, BodyOf256CharactersIsEmpty)
{
    Feed("$PSRFTXT" + std::string(249, 'y') + "\r\n");
    EXPECT_EQ(Accepted(), 1u);
    EXPECT_STREQ(ReceiverMessagesText, L"\r\n");
}

TEST_F(SentenceAssembler, RateIsMeasuredFrom65CharactersOn)
{
    Feed("$" + std::string(64, 'a'));
    Sleep(100);
    Feed("*");
    EXPECT_EQ(EffectiveBaud.load(), 0.0f);
    ResetNmeaAssembler();
    Feed("$" + std::string(65, 'a'));
    Sleep(100);
    Feed("*");
    EXPECT_EQ(EffectiveBaud.load(), 6500.0f);
}

TEST_F(SentenceAssembler, RateIsMeasuredAtTheCrOfASentenceWithoutChecksum)
{
    Feed("$" + std::string(80, 'a'));
    Sleep(200);
    Feed("\r");
    EXPECT_EQ(EffectiveBaud.load(), 4000.0f);
}

TEST_F(SentenceAssembler, RateIsMeasuredAcrossTheTickCountersWrap)
{
    HeadlessSetTick(0xFFFFFFCE);
    Feed("$" + std::string(80, 'a'));
    Sleep(100);
    Feed("*");
    EXPECT_EQ(EffectiveBaud.load(), 8000.0f);
}

TEST_F(SentenceAssembler, RateOfBytesThatTakeNoTimeIsInfinite)
{
    Feed("$" + std::string(80, 'a') + "*");
    EXPECT_EQ(EffectiveBaud.load(), std::numeric_limits<float>::infinity());
}

TEST_F(SentenceAssembler, CountsAfterTheDispatch)
{
    // A sentence that was half received when the port closed is completed by the next bytes.
    Feed("$PSRFTXTA");
    EXPECT_EQ(Accepted(), 0u);
    Feed("\r\n");
    EXPECT_EQ(Accepted(), 1u);
}

} // namespace
