// SPDX-License-Identifier: MIT
#include "link/link_state.h"
#include "nmea/receiver_messages.h"
#include "tests/unit/support/product_test.h"

namespace
{

class ReceiverText : public ProductTest
{
protected:
    ReceiverText() { RecogniseNmea(); }
};

TEST_F(ReceiverText, StandsBehindTheNameOrInTheFirstField)
{
    FeedSentence("PSRFTXTVersion 1");
    FeedSentence("PSRFTXT,Version 2");
    FeedSentence("PSRFTXTlost,Version 3,and this too");
    EXPECT_STREQ(ReceiverMessagesText, L"Version 1\r\nVersion 2\r\nVersion 3\r\n");
}

TEST_F(ReceiverText, OfUnknownSentencesIsTheirName)
{
    FeedSentence("GPXYZ,1,2,3");
    EXPECT_STREQ(ReceiverMessagesText, L"GPXYZ\r\n");
}

TEST_F(ReceiverText, ReportedRate)
{
    FeedSentence("PSRFTXT,Baud rate: 4800");
    EXPECT_EQ(NmeaReportedBaud.load(), 4800u);
    FeedSentence("PSRFTXTBaud rate: 57600");
    EXPECT_EQ(NmeaReportedBaud.load(), 57600u);
    FeedSentence("PSRFTXT, Baud rate: 9600");
    EXPECT_EQ(NmeaReportedBaud.load(), 57600u); // must begin with it
    FeedSentence("PSRFTXTBaud rate:");
    EXPECT_EQ(NmeaReportedBaud.load(), 0u);
}

TEST_F(ReceiverText, FlagMakesTheNextLineBeginAnew)
{
    FeedSentence("PSRFTXTold");
    ClearOnNextAppend.store(1);
    EXPECT_STREQ(ReceiverMessagesText, L"old\r\n");
    FeedSentence("PSRFTXTfirst answer");
    FeedSentence("PSRFTXTsecond answer");
    EXPECT_STREQ(ReceiverMessagesText, L"first answer\r\nsecond answer\r\n");
    EXPECT_EQ(ClearOnNextAppend.load(), 0);
}

TEST_F(ReceiverText, StopsGrowingWhenFull)
{
    const std::string line(200, 'x'); // 202 characters with its end: ten of them are 2020
    for (int i = 0; i < 11; ++i) FeedSentence("PSRFTXT" + line);
    EXPECT_EQ(std::wstring(ReceiverMessagesText).size(), 2020u);
    FeedSentence("PSRFTXT" + std::string(26, 'y')); // 2020 + 26 + 2 = 2048: too long by one
    EXPECT_EQ(std::wstring(ReceiverMessagesText).size(), 2020u);
    FeedSentence("PSRFTXT" + std::string(25, 'y'));
    EXPECT_EQ(std::wstring(ReceiverMessagesText).size(), 2047u);
    FeedSentence("PSRFTXT");
    EXPECT_EQ(std::wstring(ReceiverMessagesText).size(), 2047u);
}

} // namespace
