// SPDX-License-Identifier: MIT
// The line: time that bytes take, rates that differ, faults.

#include "receiver/line.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

using namespace receiver;

namespace
{

Bytes Text(const std::string& text)
{
    return Bytes(text.begin(), text.end());
}

const std::string Sentence = "$GPGLL,4722.6140,N,00832.5020,E,100000.000,A,A*5C\r\n";

std::deque<Burst> Queue(size_t sentences, uint32_t rate)
{
    return std::deque<Burst>(sentences, Burst{Text(Sentence), rate});
}

} // namespace

TEST(Line, BytesTakeTenBitTimesEach)
{
    Line line(1);
    auto queue = Queue(20, 4800); // 51 bytes each
    EXPECT_EQ(line.ToHost(queue, 0.002).size(), 0u);
    EXPECT_EQ(line.ToHost(queue, 0.0021).size(), 1u);
    EXPECT_EQ(line.ToHost(queue, 1.0001).size(), 479u);
    EXPECT_EQ(line.ToHost(queue, 2.0001).size(), 480u);
}

TEST(Line, AnIdleLineSavesNoTimeUp)
{
    Line line(1);
    std::deque<Burst> queue;
    line.ToHost(queue, 10.0);
    queue = Queue(20, 4800);
    EXPECT_EQ(line.ToHost(queue, 10.1).size(), 48u);
}

TEST(Line, EveryRateIsItsOwn)
{
    for (const uint32_t rate : LineRates) {
        Line line(1);
        auto queue = Queue(300, rate);
        EXPECT_NEAR(static_cast<double>(line.ToHost(queue, 1.0).size()), rate / 10.0, 1.0) << rate;
    }
}

TEST(Line, EqualRatesCarryEveryByteBothWays)
{
    Line line(1);
    line.SetHostRate(9600);
    auto queue = Queue(3, 9600);
    const Bytes read = line.ToHost(queue, 1.0);
    EXPECT_EQ(std::string(read.begin(), read.end()), Sentence + Sentence + Sentence);
    line.ToReceiver({}, 9600, 1.0);
    const Bytes heard = line.ToReceiver(Text(Sentence), 9600, 1.0);
    EXPECT_TRUE(heard.empty()); // written just now
    const Bytes later = line.ToReceiver({}, 9600, 2.0);
    EXPECT_EQ(std::string(later.begin(), later.end()), Sentence);
}

TEST(Line, HostBytesArePacedAtTheHostsRate)
{
    Line line(1);
    line.SetHostRate(1200);
    line.ToReceiver({}, 1200, 1.0);
    EXPECT_EQ(line.ToReceiver(Bytes(500), 1200, 2.0).size(), 120u);
    EXPECT_EQ(line.ToReceiver({}, 1200, 3.0).size(), 120u);
}

TEST(Line, OtherRatesMakeGarbageOfTheRightAmount)
{
    for (const uint32_t host : LineRates) {
        for (const uint32_t rate : LineRates) {
            if (host == rate) continue;
            SCOPED_TRACE(std::to_string(rate) + " read at " + std::to_string(host));
            Line line(1);
            line.SetHostRate(host);
            auto queue = Queue(3000, rate);
            const Bytes read = line.ToHost(queue, 4.0);
            EXPECT_GT(read.size(), 4u);
            // No faster than the host's own rate; a new byte may begin in the middle of a stop bit.
            EXPECT_LE(static_cast<double>(read.size()), host * 4 / 9.5 + 1);
            const std::string text(read.begin(), read.end());
            EXPECT_EQ(text.find("GPGLL"), std::string::npos);
        }
    }
}

TEST(Line, GarbageIsTheSameEachTime)
{
    const auto run = [] {
        Line line(1);
        line.SetHostRate(9600);
        auto queue = Queue(5, 4800);
        return line.ToHost(queue, 1.0);
    };
    EXPECT_EQ(run(), run());
}

TEST(Line, AFastHostSeesASlowZeroByteAsSeveral)
{
    // A byte 0 at 1200 bit/s is low for nine bit times. At 2400 those are eighteen: a byte 0 whose stop bit
    // is low too, and then nothing more, as a new start bit needs an edge.
    MismatchedUart uart;
    uart.SetRates(1200, 2400);
    Bytes read;
    uart.Byte(0x00, read);
    uart.Rest(100, read);
    EXPECT_EQ(read, Bytes{0x00});
    // 0x55 alternates: start low, then 1 0 1 0 1 0 1 0, stop high. Two samples a bit give 0 0 1 1 ...
    uart.SetRates(1200, 2400);
    read.clear();
    uart.Byte(0x55, read);
    uart.Rest(100, read);
    ASSERT_EQ(read.size(), 2u);
    EXPECT_EQ(read[0], 0x66); // 0 1 1 0 0 1 1 0 from the least significant bit on
}

TEST(Line, EqualRatesPassTheUartUnchanged)
{
    MismatchedUart uart;
    uart.SetRates(4800, 4800);
    Bytes read;
    for (int value = 0; value < 256; ++value) uart.Byte(static_cast<uint8_t>(value), read);
    uart.Rest(100, read);
    ASSERT_EQ(read.size(), 256u);
    for (size_t i = 0; i < 256; ++i) EXPECT_EQ(read[i], i);
}

TEST(Line, LostBytesAndFlippedBits)
{
    Line line(7);
    line.Faults.lose = 0.1;
    auto queue = Queue(1000, 115200);
    const size_t all = 1000 * Sentence.size();
    const size_t read = line.ToHost(queue, 100.0).size();
    EXPECT_NEAR(static_cast<double>(read), 0.9 * static_cast<double>(all), 0.01 * static_cast<double>(all));

    line.Faults = {0, 0.1};
    queue = Queue(1000, 115200);
    const Bytes flipped = line.ToHost(queue, 200.0);
    ASSERT_EQ(flipped.size(), all);
    size_t wrong = 0;
    for (size_t i = 0; i < all; ++i) {
        const int bits = std::popcount(
            static_cast<unsigned>(flipped[i] ^ static_cast<uint8_t>(Sentence[i % Sentence.size()])));
        EXPECT_LE(bits, 1);
        wrong += static_cast<size_t>(bits);
    }
    EXPECT_NEAR(static_cast<double>(wrong), 0.1 * static_cast<double>(all), 0.01 * static_cast<double>(all));
}

TEST(Line, NoiseBurstComesBetweenMessages)
{
    Line line(7);
    auto queue = Queue(1, 4800);
    line.AddNoiseBurst(100);
    const Bytes read = line.ToHost(queue, 10.0);
    ASSERT_EQ(read.size(), 100 + Sentence.size());
    EXPECT_EQ(std::string(read.begin() + 100, read.end()), Sentence);
    EXPECT_NE(std::count(read.begin(), read.begin() + 100, read[0]), 100);
    EXPECT_TRUE(line.Idle());
}
