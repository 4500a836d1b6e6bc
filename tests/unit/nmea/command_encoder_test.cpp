// SPDX-License-Identifier: MIT
#include "nmea/command_encoder.h"

#include "link/write_queue.h"
#include "tests/unit/support/product_test.h"

namespace
{

class CommandEncoder : public ProductTest
{
};

TEST_F(CommandEncoder, FramesABody)
{
    HeadlessPort& port = OpenPort();
    EXPECT_EQ(NmeaSend("PSRF105,1"), 0);
    ASSERT_EQ(port.writes.size(), 1u);
    EXPECT_EQ(port.writes[0], "$PSRF105,1*3E\r\n");
    EXPECT_EQ(port.writes[0].size(), 15u);
}

TEST_F(CommandEncoder, ChecksumHasTwoDigitsBelow10Hexadecimal)
{
    HeadlessPort& port = OpenPort();
    NmeaSend("AB"); // 41h xor 42h = 03h
    EXPECT_EQ(port.sent, "$AB*03\r\n");
}

TEST_F(CommandEncoder, BytesAboveAsciiCountInTheChecksum)
{
    HeadlessPort& port = OpenPort();
    NmeaSend("\xF0\x0F");
    EXPECT_EQ(port.sent, "$\xF0\x0F*FF\r\n");
}

TEST_F(CommandEncoder, NothingWithoutAPort)
{
    EXPECT_EQ(NmeaSend("PSRF105,1"), -1);
    EXPECT_TRUE(HeadlessBoxes().empty());
    EXPECT_EQ(WriteHead, 0);
}

TEST_F(CommandEncoder, SentenceThatJustFitsIsSent)
{
    HeadlessPort& port = OpenPort();
    for (int i = 0; i < 240; ++i) PortWrite('x'); // 15 bytes left
    NmeaSend("PSRF105,1");
    EXPECT_EQ(port.sent, std::string(240, 'x') + "$PSRF105,1*3E\r\n");
    EXPECT_TRUE(HeadlessBoxes().empty());
}

TEST_F(CommandEncoder, SentenceThatLacksOneByteIsDroppedWithABox)
{
    HeadlessPort& port = OpenPort();
    for (int i = 0; i < 241; ++i) PortWrite('x'); // 14 bytes left
    NmeaSend("PSRF105,1");
    EXPECT_EQ(port.sent, "");
    ASSERT_EQ(HeadlessBoxes().size(), 1u);
    EXPECT_TRUE(IsBox(HeadlessBoxes()[0], L"NmeaSend", L"Buffer Full"));
    PortWriteBuffer();
    EXPECT_EQ(port.sent, std::string(241, 'x')); // nothing of the sentence was queued
}

TEST_F(CommandEncoder, LongestBodies)
{
    HeadlessPort& port = OpenPort();
    const std::string fits(249, 'z'), tooLong(250, 'z');
    NmeaSend(fits.c_str(), 249);
    EXPECT_EQ(port.sent, "$" + fits + "*7A\r\n");
    NmeaSend(tooLong.c_str(), 250);
    EXPECT_EQ(port.writes.size(), 1u);
    EXPECT_EQ(HeadlessBoxes().size(), 1u);
}

TEST_F(CommandEncoder, MessageRateFromDigitCharacters)
{
    HeadlessPort& port = OpenPort();
    SendPsrf103('3', '0', '5', '1');
    EXPECT_EQ(port.sent, "$PSRF103,03,00,05,01*22\r\n");
}

TEST_F(CommandEncoder, ReaderWritesPastTheQueue)
{
    HeadlessPort& port = OpenPort();
    PortWrite('q');                                    // a command that is being put together
    NmeaSendFromReader(std::string(256, 'A').c_str()); // cannot be a command
    NmeaSendFromReader("PSRF105,1");
    ASSERT_EQ(port.writes.size(), 1u);
    EXPECT_EQ(port.writes[0], "$PSRF105,1*3E\r\n");
    EXPECT_EQ(WriteHead, 1);
}

} // namespace
