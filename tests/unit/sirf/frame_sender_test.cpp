// SPDX-License-Identifier: MIT
#include "sirf/frame_sender.h"

#include "link/write_queue.h"
#include "tests/unit/sirf/sirf_test.h"

namespace
{

class FrameSender : public SirfTest
{
protected:
    static void Send(const Payload& payload)
    {
        SirfSend(payload.bytes.data(), static_cast<uint16_t>(payload.bytes.size()));
    }
    static void Fill(int bytes)
    {
        for (int i = 0; i < bytes; ++i) PortWrite('x');
    }
};

TEST_F(FrameSender, FixedCommands)
{
    HeadlessPort& port = OpenPort();
    SendPollSoftwareVersion();
    SendPollNavigationParameters();
    SendPollParameter(0x8F);
    SendMessageRate(1, 41, 5);
    ASSERT_EQ(port.writes.size(), 4u); // one write each
    EXPECT_EQ(port.writes[0], HexText("A0 A2 00 02 84 00 00 84 B0 B3"));
    EXPECT_EQ(port.writes[1], HexText("A0 A2 00 02 98 00 00 98 B0 B3"));
    EXPECT_EQ(port.writes[2], HexText("A0 A2 00 02 A8 8F 01 37 B0 B3"));
    EXPECT_EQ(port.writes[3], HexText("A0 A2 00 08 A6 01 29 05 00 00 00 00 00 D5 B0 B3"));
}

TEST_F(FrameSender, WrapsOnceTheReceiverHasWrapped)
{
    HeadlessPort& port = OpenPort();
    Feed(Frame(Payload("EE 07")));
    SendPollSoftwareVersion();
    EXPECT_EQ(port.sent, HexText("A0 A2 00 03 EE 84 00 01 72 B0 B3"));
}

TEST_F(FrameSender, ChecksumIsSentWith16Bits)
{
    HeadlessPort& port = OpenPort();
    Payload payload(0xFF, 200);
    for (uint8_t& b : payload.bytes) b = 0xFF; // 200 * FFh = C738h
    Send(payload);
    EXPECT_EQ(port.sent.substr(204), HexText("C7 38 B0 B3"));
}

TEST_F(FrameSender, NothingWithoutAPort)
{
    SendPollSoftwareVersion();
    EXPECT_EQ(WriteQueueSpace(), 255);
    EXPECT_TRUE(HeadlessBoxes().empty());
}

TEST_F(FrameSender, MoreThan255BytesAreNotSentSilently)
{
    HeadlessPort& port = OpenPort();
    Send(Payload(1, 256));
    EXPECT_EQ(port.sent, "");
    EXPECT_TRUE(HeadlessBoxes().empty());
}

TEST_F(FrameSender, LongestFrameFillsTheQueueExactly)
{
    HeadlessPort& port = OpenPort();
    Send(Payload(1, 247));
    ASSERT_EQ(port.writes.size(), 1u);
    EXPECT_EQ(port.sent.size(), 255u);
    EXPECT_EQ(port.sent.substr(253), HexText("B0 B3"));
}

TEST_F(FrameSender, OneByteMoreShowsBufferFullAndSendsNothing)
{
    HeadlessPort& port = OpenPort();
    for (const size_t length : {248u, 255u}) {
        HeadlessClearBoxes();
        Send(Payload(1, length));
        ASSERT_EQ(HeadlessBoxes().size(), 1u);
        EXPECT_TRUE(IsBox(HeadlessBoxes()[0], L"SirfSend", L"Buffer Full"));
    }
    EXPECT_EQ(port.sent, "");
    EXPECT_EQ(WriteQueueSpace(), 255);
}

TEST_F(FrameSender, WrapByteCountsWhenTheSpaceIsTested)
{
    HeadlessPort& port = OpenPort();
    WrapEE.store(1);
    Send(Payload(1, 247));
    ASSERT_EQ(HeadlessBoxes().size(), 1u);
    EXPECT_TRUE(IsBox(HeadlessBoxes()[0], L"SirfSend", L"Buffer Full"));
    EXPECT_EQ(port.sent, "");
    Send(Payload(1, 246));
    EXPECT_EQ(port.sent.size(), 255u);
    EXPECT_EQ(port.sent.substr(0, 5), HexText("A0 A2 00 F7 EE"));
}

TEST_F(FrameSender, SpaceIsWhatTheQueueHasLeft)
{
    HeadlessPort& port = OpenPort();
    Fill(246); // 9 bytes left for 10
    SendPollSoftwareVersion();
    ASSERT_EQ(HeadlessBoxes().size(), 1u);
    EXPECT_TRUE(IsBox(HeadlessBoxes()[0], L"SirfSend", L"Buffer Full"));
    EXPECT_EQ(WriteQueueSpace(), 9); // nothing of it was queued
    PortWriteBuffer();
    Fill(245);
    SendPollSoftwareVersion();
    EXPECT_EQ(port.sent, std::string(246 + 245, 'x') + HexText("A0 A2 00 02 84 00 00 84 B0 B3"));
}

} // namespace
