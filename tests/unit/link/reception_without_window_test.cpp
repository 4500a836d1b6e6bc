// SPDX-License-Identifier: MIT
// A second program with the same reception: it links the product without the window program, and receives
// without sending anything.
#include <gtest/gtest.h>

#include <string_view>

#include "headless.h"
#include "link/link_state.h"
#include "link/reader_thread.h"
#include "link/write_queue.h"
#include "nmea/sentence_decoder.h"

namespace
{

uint32_t TimesAsked = 0;

TEST(ReceptionWithoutWindow, SendsNothing)
{
    HeadlessReset();
    const HeadlessPort& port = HeadlessAddPort(3);
    PortHandle.store(
        CreateFileW(L"COM3:", GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    const std::string_view sentences = "$GPZDA,100035,21,06,2008,00,00\r\n$GPZDA\r\n";
    RouteReceived(reinterpret_cast<const uint8_t*>(sentences.data()),
                  static_cast<uint32_t>(sentences.size()));
    EXPECT_EQ(NmeaMessageCount.load(), 2u);
    EXPECT_EQ(ProtocolMode(), ProtocolNmea);
    EXPECT_EQ(TimesAsked, 1u);
    EXPECT_TRUE(port.writes.empty());
}

} // namespace

void AskForStartUpText()
{
    ++TimesAsked;
}
