// SPDX-License-Identifier: MIT
#include "sirf/switch_to_nmea_command.h"

#include "tests/unit/sirf/sirf_test.h"

namespace
{

class SwitchToNmeaCommand : public SirfTest
{
};

TEST_F(SwitchToNmeaCommand, SendsAllDefaultsAt4800)
{
    HeadlessPort& port = OpenPort();
    uint8_t seconds[NmeaRateCount];
    LoadNmeaRates(seconds);
    SendSwitchToNmea(DebugMessages::Unchanged, seconds, true, 4800);
    EXPECT_EQ(port.sent,
              HexText("A0 A2 00 18 81 02 01 01 01 01 05 01 05 01 01 01 01 01 00 01 00 01 00 01 00 01"
                      "12 C0 01 6D B0 B3"));
}

TEST_F(SwitchToNmeaCommand, FieldsStandInTheirPlaces)
{
    HeadlessPort& port = OpenPort();
    const uint8_t seconds[NmeaRateCount] = {255, 2, 3, 4, 5, 6, 7, 8, 9, 10};
    SendSwitchToNmea(DebugMessages::On, seconds, false, 38400);
    EXPECT_EQ(port.sent.substr(4, 24),
              HexText("81 00 FF 00 02 00 03 00 04 00 05 00 06 00 07 00 08 00 09 00 0A 00"
                      "96 00"));
    SendSwitchToNmea(DebugMessages::Off, seconds, false, 115200);
    EXPECT_EQ(port.writes[1].substr(4, 2), HexText("81 01"));
    EXPECT_EQ(port.writes[1].substr(26, 2), HexText("C2 00")); // the field has no room for 115200
}

TEST_F(SwitchToNmeaCommand, RatesAreKeptInTheSettings)
{
    const uint8_t seconds[NmeaRateCount] = {255, 2, 3, 4, 5, 6, 7, 8, 9, 10};
    StoreNmeaRates(seconds);
    EXPECT_EQ(Setting(L"NmeaIntervalIdx01"), 255);
    EXPECT_EQ(Setting(L"NmeaIntervalIdx10"), 10);
    uint8_t loaded[NmeaRateCount];
    LoadNmeaRates(loaded);
    for (uint32_t i = 0; i < NmeaRateCount; ++i) EXPECT_EQ(loaded[i], seconds[i]) << i;
}

TEST_F(SwitchToNmeaCommand, RateOutsideAByteReadsAsItsDefault)
{
    StoreSetting(L"NmeaIntervalIdx03", 256);
    StoreSetting(L"NmeaIntervalIdx04", -1);
    StoreSetting(L"NmeaIntervalIdx05", 0);
    uint8_t seconds[NmeaRateCount];
    LoadNmeaRates(seconds);
    EXPECT_EQ(seconds[2], 5);
    EXPECT_EQ(seconds[3], 5);
    EXPECT_EQ(seconds[4], 0);
}

} // namespace
