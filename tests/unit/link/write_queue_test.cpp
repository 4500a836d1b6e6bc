// SPDX-License-Identifier: MIT
#include "link/write_queue.h"

#include "tests/unit/support/product_test.h"

namespace
{

class WriteQueueTest : public ProductTest
{
};

TEST_F(WriteQueueTest, Byte256ShowsBufferFullAndIsDropped)
{
    HeadlessPort& port = OpenPort();
    for (int i = 0; i < 255; ++i) PortWrite(static_cast<uint8_t>(i));
    EXPECT_TRUE(HeadlessBoxes().empty());
    EXPECT_EQ(WriteQueueSpace(), 0);
    PortWrite('x');
    PortWrite('x');
    ASSERT_EQ(HeadlessBoxes().size(), 2u); // each further byte shows the box again
    EXPECT_TRUE(IsBox(HeadlessBoxes()[0], L"PortWrite", L"Buffer Full"));
    PortWriteBuffer();
    EXPECT_EQ(port.sent.size(), 255u);
    EXPECT_EQ(static_cast<unsigned char>(port.sent[254]), 254);
}

TEST_F(WriteQueueTest, FlushIsOneWriteAndEmptiesTheQueue)
{
    HeadlessPort& port = OpenPort();
    for (const char c : {'a', 'b', 'c'}) PortWrite(static_cast<uint8_t>(c));
    PortWriteBuffer();
    PortWriteBuffer(); // nothing left: no write
    EXPECT_EQ(port.writes, std::vector<std::string>{"abc"});
    EXPECT_EQ(WriteHead, 0);
    EXPECT_EQ(WriteTail, 0);
}

TEST_F(WriteQueueTest, ClosedPortEmptiesTheQueueSilently)
{
    PortWrite('a');
    PortWriteBuffer();
    EXPECT_EQ(WriteQueueSpace(), 255);
    EXPECT_TRUE(HeadlessBoxes().empty());
}

TEST_F(WriteQueueTest, FailedWriteIsShownAndTheBytesDiscarded)
{
    HeadlessPort& port = OpenPort();
    HeadlessFailCall("WriteFile", 1, ERROR_GEN_FAILURE);
    PortWrite('a');
    PortWriteBuffer();
    ASSERT_EQ(HeadlessBoxes().size(), 1u);
    EXPECT_EQ(HeadlessBoxes()[0].caption, L"WriteFile 2");
    EXPECT_EQ(WriteQueueSpace(), 255);
    PortWriteBuffer();
    EXPECT_EQ(port.sent, "");
}

TEST_F(WriteQueueTest, ShortWriteIsShownAndTheRestDiscarded)
{
    HeadlessPort& port = OpenPort();
    port.acceptBytes = 2;
    for (const char c : {'a', 'b', 'c'}) PortWrite(static_cast<uint8_t>(c));
    PortWriteBuffer();
    ASSERT_EQ(HeadlessBoxes().size(), 1u);
    EXPECT_TRUE(IsBox(HeadlessBoxes()[0], L"PortWriteBuffer", L"Could only write 2 of 3 bytes."));
    EXPECT_EQ(port.sent, "ab");
    EXPECT_EQ(WriteQueueSpace(), 255);
}

TEST_F(WriteQueueTest, ReadersFailuresArePosted)
{
    HeadlessPort& port = OpenPort();
    port.acceptBytes = 1;
    UserInterfaceThread.store(GetCurrentThreadId() + 1); // as if on the reader thread
    const uint8_t bytes[] = {1, 2};
    PortWriteFromReader(bytes, 2);
    HeadlessFailCall("WriteFile", 1, ERROR_GEN_FAILURE);
    PortWriteFromReader(bytes, 2);
    EXPECT_TRUE(HeadlessBoxes().empty());
    EXPECT_EQ(port.sent, "\x01");
}

} // namespace
