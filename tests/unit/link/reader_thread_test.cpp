// SPDX-License-Identifier: MIT
#include "link/reader_thread.h"

#include "link/link_state.h"
#include "link/receiver_log.h"
#include "link/serial_port.h"
#include "link/write_queue.h"
#include "tests/unit/support/product_test.h"

namespace
{

class Reader : public ProductTest
{
};

TEST_F(Reader, EndsAtOnceWhenThePortIsClosed)
{
    EXPECT_EQ(ReaderThread(nullptr), 0u);
    EXPECT_EQ(HeadlessElapsed(), 0u);
}

TEST_F(Reader, BytesOfNeitherProtocolAreCountedAndLogged)
{
    LogFileHandle.store(
        CreateFileW(L"\\log", GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    const std::string noise("\x00\x01no message\xFF", 13);
    Feed(noise);
    EXPECT_EQ(BytesReceived.load(), 13u);
    EXPECT_EQ(NmeaMessageCount.load() + SirfMessageCount.load(), 0u);
    LogClose();
    EXPECT_EQ(HeadlessFileContent(L"\\log"), noise);
}

TEST_F(Reader, DrainsThePortWithoutRestingThenPollsEvery50Ms)
{
    HeadlessPort& port = HeadlessAddPort(3);
    ASSERT_TRUE(PortOpen(L"COM3:", 4800));
    const uint64_t start = HeadlessElapsed();
    HeadlessReceive(port, std::string(5000, 'x'));
    Sleep(60);
    EXPECT_EQ(BytesReceived.load(), 5000u);
    EXPECT_EQ(HeadlessElapsed() - start, 60u);
}

// The same stream in any portions has the same outcome.
TEST_F(Reader, PortionsDoNotMatter)
{
    HeadlessPort& port = HeadlessAddPort(3);
    const std::string stream = Sentence("GPGSA,A,3,01,02,03,04,05,06,07,08,09,10,11,12,2.5,1.5,2.0") +
                               "noise" + Sentence("GPRMC,101112,A,,,,,10,20,010203,,");
    ASSERT_TRUE(PortOpen(L"COM3:", 4800));
    for (const size_t portion : {stream.size(), size_t{1}, size_t{7}, size_t{50}}) {
        const uint32_t before = NmeaMessageCount.load();
        SetTextLine(10, L"");
        for (size_t i = 0; i < stream.size(); i += portion) {
            HeadlessReceive(port, stream.substr(i, portion));
            Sleep(portion % 2 ? 130 : 10);
        }
        Sleep(100);
        EXPECT_EQ(NmeaMessageCount.load() - before, 2u) << portion;
        EXPECT_EQ(Line(10), L" VDOP: 2.0  ") << portion;
        EXPECT_EQ(Line(0), L" UTC: 2003-02-01 10:11:12") << portion;
    }
}

// With a driver without time-outs, a read waits until it has all requested bytes.
TEST_F(Reader, AsksForOneByteWhereReadsMayBlock)
{
    HeadlessPort& port = HeadlessAddPort(3);
    HeadlessFailCall("SetCommTimeouts", 1, ERROR_GEN_FAILURE);
    ASSERT_TRUE(PortOpen(L"COM3:", 4800));
    const auto reads = [&port](const char* bytes) {
        HeadlessCountCalls();
        HeadlessReceive(port, bytes);
        Sleep(60);
        for (const HeadlessCallCount& call : HeadlessCountedCalls())
            if (call.call == "ReadFile") return call.count;
        return 0u;
    };
    EXPECT_GE(reads("abcdefghij"), 10u);
    PortClose();
    ASSERT_TRUE(PortOpen(L"COM3:", 4800));
    EXPECT_LE(reads("abcdefghij"), 4u);
    EXPECT_EQ(BytesReceived.load(), 20u);
}

TEST_F(Reader, FailedReadIsNoByte)
{
    HeadlessPort& port = HeadlessAddPort(3);
    ASSERT_TRUE(PortOpen(L"COM3:", 4800));
    HeadlessFailCall("ReadFile", 1, ERROR_GEN_FAILURE, FailMode::FromHereOn);
    HeadlessReceive(port, "abc");
    Sleep(500);
    EXPECT_EQ(BytesReceived.load(), 0u);
    EXPECT_TRUE(HeadlessBoxes().empty());
}

TEST_F(Reader, FrameHoldingADollarIsFramedAllTheSame)
{
    Feed(std::string("\xA0\xA2\x00\x03$A*\x00\x8F\xB0\xB3", 11)); // 24h + 41h + 2Ah = 8Fh
    EXPECT_EQ(SirfMessageCount.load(), 1u);
    EXPECT_EQ(NmeaMessageCount.load(), 0u);
    EXPECT_EQ(ProtocolMode(), ProtocolSirf);
}

TEST_F(Reader, CountersSurviveReopening)
{
    HeadlessPort& port = HeadlessAddPort(3);
    ASSERT_TRUE(PortOpen(L"COM3:", 4800));
    HeadlessReceive(port, Sentence("GPXYZ"));
    Sleep(100);
    PortClose();
    ASSERT_TRUE(PortOpen(L"COM3:", 4800));
    HeadlessReceive(port, Sentence("GPXYZ"));
    Sleep(100);
    EXPECT_EQ(NmeaMessageCount.load(), 2u);
}

} // namespace
