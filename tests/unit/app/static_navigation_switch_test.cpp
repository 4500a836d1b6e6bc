#include "app/static_navigation_switch.h"

#include "link/serial_port.h"
#include "tests/unit/support/product_test.h"

namespace
{

using namespace std::literals;

class StaticNavigationSwitch : public ProductTest
{
};

TEST_F(StaticNavigationSwitch, SendsTheWholeSequence)
{
    HeadlessPort& port = HeadlessAddPort(3);
    ASSERT_TRUE(PortOpen(L"COM3:", 9600));
    const uint64_t start = HeadlessElapsed();
    StoreSetting(L"SirfBaudrateIdx", 6);
    StoreSetting(L"NmeaBaudrateIdx", 2);
    EXPECT_EQ(SwitchStaticNavigation(true), 0);
    ASSERT_EQ(port.writes.size(), 3u);
    EXPECT_EQ(port.writes[0], "$PSRF100,0,57600,8,1,0*37\r\n");
    EXPECT_EQ(port.writes[1], "\xA0\xA2\x00\x02\x8F\x01\x00\x90\xB0\xB3"s);
    // 129, leave debug, GGA 1 GLL 1 GSA 5 GSV 5 RMC 1 VTG 1, others 0, each with checksum, 4800 = 12C0h
    EXPECT_EQ(port.writes[2], "\xA0\xA2\x00\x18"
                              "\x81\x02\x01\x01\x01\x01\x05\x01\x05\x01\x01\x01\x01\x01"
                              "\x00\x01\x00\x01\x00\x01\x00\x01\x12\xC0"
                              "\x01\x6D\xB0\xB3"s);
    EXPECT_EQ(port.rates, (std::vector<DWORD>{9600, 57600, 4800}));
    EXPECT_EQ(HeadlessElapsed() - start, 9000u); // 5 s, 3 s and 1 s
    EXPECT_EQ(Setting(L"BaudrateIdx"), 2);       // so that the next start opens at the rate of NMEA
    EXPECT_TRUE(HeadlessBoxes().empty());
}

TEST_F(StaticNavigationSwitch, OffSendsZero)
{
    HeadlessPort& port = OpenPort();
    StoreSetting(L"SirfBaudrateIdx", 0);
    StoreSetting(L"NmeaBaudrateIdx", 7);
    StoreSetting(L"NmeaIntervalIdx01", 10);
    StoreSetting(L"NmeaIntervalIdx10", 255);
    StoreSetting(L"NmeaIntervalIdx03", 256); // no number of seconds: the default
    StoreSetting(L"NmeaIntervalIdx04", -7);
    EXPECT_EQ(SwitchStaticNavigation(false), 0);
    ASSERT_EQ(port.writes.size(), 3u);
    EXPECT_EQ(port.writes[0], Sentence("PSRF100,0,1200,8,1,0"));
    EXPECT_EQ(port.writes[1], "\xA0\xA2\x00\x02\x8F\x00\x00\x8F\xB0\xB3"s);
    // 115200 = 1C200h does not fit: its low 16 bits
    EXPECT_EQ(port.writes[2].substr(4, 24), "\x81\x02\x0A\x01\x01\x01\x05\x01\x05\x01\x01\x01\x01\x01"
                                            "\x00\x01\x00\x01\x00\x01\xFF\x01\xC2\x00"s);
}

TEST_F(StaticNavigationSwitch, NeedsTheRateOfSirfBinary)
{
    HeadlessPort& port = OpenPort();
    for (const int32_t stored : {-12345, -1, 8}) {
        if (stored != -12345) StoreSetting(L"SirfBaudrateIdx", stored);
        StoreSetting(L"NmeaBaudrateIdx", 2);
        HeadlessClearBoxes();
        EXPECT_EQ(SwitchStaticNavigation(true), 4) << stored;
        ASSERT_EQ(HeadlessBoxes().size(), 1u);
        EXPECT_TRUE(IsBox(HeadlessBoxes()[0], L"CmdLine", L"Unknown baudrate for switching to SiRF"));
    }
    EXPECT_EQ(port.sent, "");
}

TEST_F(StaticNavigationSwitch, NeedsTheRateOfNmea)
{
    HeadlessPort& port = OpenPort();
    StoreSetting(L"SirfBaudrateIdx", 6);
    EXPECT_EQ(SwitchStaticNavigation(true), 5);
    ASSERT_EQ(HeadlessBoxes().size(), 1u);
    EXPECT_TRUE(IsBox(HeadlessBoxes()[0], L"CmdLine", L"Unknown baudrate for switching to NMEA"));
    EXPECT_EQ(port.sent, "");
}

TEST_F(StaticNavigationSwitch, WithoutAnOpenPortGoesThroughItsStepsAllTheSame)
{
    StoreSetting(L"SirfBaudrateIdx", 6);
    StoreSetting(L"NmeaBaudrateIdx", 2);
    EXPECT_EQ(SwitchStaticNavigation(true), 0);
    ASSERT_EQ(HeadlessBoxes().size(), 2u);
    EXPECT_EQ(HeadlessBoxes()[0].caption, L"SetCommState");
    EXPECT_EQ(HeadlessBoxes()[1].caption, L"SetCommState");
    EXPECT_EQ(Setting(L"BaudrateIdx"), 2);
}

} // namespace
