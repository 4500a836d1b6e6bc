// SPDX-License-Identifier: MIT
#include "app/static_navigation_switch.h"

#include "link/link_state.h"
#include "link/serial_port.h"
#include "tests/unit/support/product_test.h"

namespace
{

using namespace std::literals;

class StaticNavigationSwitch : public ProductTest
{
protected:
    // A receiver that answers the two commands in SiRF binary, with message 11, or 12 if it refuses. The
    // rates for the protocols are 57600 and 4800; the stored rate is another one.
    HeadlessPort& AddReceiver(std::string_view toStatic, std::string_view toNmea)
    {
        HeadlessPort& port = HeadlessAddPort(3);
        StoreSetting(L"SirfBaudrateIdx", 6);
        StoreSetting(L"NmeaBaudrateIdx", 2);
        StoreSetting(L"BaudrateIdx", 3);
        CommPortIdx.store(3);
        port.onWrite = [=](HeadlessPort& line, std::string_view bytes) {
            if (bytes.size() > 4 && bytes[4] == '\x8F') HeadlessReceive(line, toStatic);
            if (bytes.size() > 4 && bytes[4] == '\x81') HeadlessReceive(line, toNmea);
        };
        return port;
    }
};

constexpr std::string_view Taken("\xA0\xA2\x00\x02\x0B\x8F\x00\x9A\xB0\xB3", 10),
    Refused("\xA0\xA2\x00\x02\x0C\x8F\x00\x9B\xB0\xB3", 10),
    TakenBack("\xA0\xA2\x00\x02\x0B\x81\x00\x8C\xB0\xB3", 10),
    RefusedBack("\xA0\xA2\x00\x02\x0C\x81\x00\x8D\xB0\xB3", 10);

TEST_F(StaticNavigationSwitch, SendsTheWholeSequence)
{
    HeadlessPort& port = AddReceiver(Taken, TakenBack);
    ASSERT_TRUE(PortOpen(L"COM3:", 9600));
    const uint64_t start = HeadlessElapsed();
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

// ---- The rate for the next start ----------------------------------------------------------------------

TEST_F(StaticNavigationSwitch, SilentReceiverKeepsTheStoredRate)
{
    AddReceiver("", "");
    ASSERT_TRUE(PortOpen(L"COM3:", 9600));
    EXPECT_EQ(SwitchStaticNavigation(true), 0);
    EXPECT_EQ(Setting(L"BaudrateIdx"), 3);
}

TEST_F(StaticNavigationSwitch, ReceiverThatStaysInSirfKeepsThatRate)
{
    AddReceiver(Taken, RefusedBack);
    ASSERT_TRUE(PortOpen(L"COM3:", 9600));
    EXPECT_EQ(SwitchStaticNavigation(true), 0);
    EXPECT_EQ(Setting(L"BaudrateIdx"), 6); // as its first message has stored it
}

// The receiver refuses static navigation, but returns to NMEA.
TEST_F(StaticNavigationSwitch, RefusedStaticNavigationIsNoRefusedWayBack)
{
    AddReceiver(Refused, TakenBack);
    ASSERT_TRUE(PortOpen(L"COM3:", 9600));
    EXPECT_EQ(SwitchStaticNavigation(true), 0);
    EXPECT_EQ(Setting(L"BaudrateIdx"), 2);
}

// That refusal may arrive after the command for the way back was sent.
TEST_F(StaticNavigationSwitch, LateRefusalOfStaticNavigationIsNoRefusedWayBack)
{
    const std::string late = std::string(Refused) + std::string(TakenBack);
    AddReceiver(Taken, late);
    ASSERT_TRUE(PortOpen(L"COM3:", 9600));
    EXPECT_EQ(SwitchStaticNavigation(true), 0);
    EXPECT_EQ(Setting(L"BaudrateIdx"), 2);
}

// It used SiRF binary at another rate than the stored one, and does not get the commands.
TEST_F(StaticNavigationSwitch, SirfOfBeforeTheSwitchDoesNotCount)
{
    AddReceiver("", "");
    SirfRecognised.store(1);
    SirfMessageCount.store(100);
    ASSERT_TRUE(PortOpen(L"COM3:", 9600));
    EXPECT_EQ(SwitchStaticNavigation(true), 0);
    EXPECT_EQ(Setting(L"BaudrateIdx"), 3);
}

TEST_F(StaticNavigationSwitch, WithoutAnOpenPortGoesThroughItsStepsAndKeepsTheStoredRate)
{
    StoreSetting(L"SirfBaudrateIdx", 6);
    StoreSetting(L"NmeaBaudrateIdx", 2);
    StoreSetting(L"BaudrateIdx", 3);
    EXPECT_EQ(SwitchStaticNavigation(true), 0);
    ASSERT_EQ(HeadlessBoxes().size(), 2u);
    EXPECT_EQ(HeadlessBoxes()[0].caption, L"SetCommState");
    EXPECT_EQ(HeadlessBoxes()[1].caption, L"SetCommState");
    EXPECT_EQ(Setting(L"BaudrateIdx"), 3);
}

// ---- The window is closed meanwhile -------------------------------------------------------------------

DWORD WINAPI CloseTheWindowLater(void* after)
{
    Sleep(static_cast<DWORD>(reinterpret_cast<uintptr_t>(after)));
    SendMessageW(MainWindow.load(), WM_CLOSE, 0, 0);
    return 0;
}
LRESULT CALLBACK ClosingProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_DESTROY) MainWindow.store(nullptr);
    return DefWindowProcW(window, message, wParam, lParam);
}

TEST_F(StaticNavigationSwitch, EndsAtOnceWithTheWindow)
{
    WNDCLASSW closing = {};
    closing.lpszClassName = L"Closing";
    closing.lpfnWndProc = ClosingProcedure;
    RegisterClassW(&closing);
    HeadlessPort& port = AddReceiver(Taken, TakenBack);
    ASSERT_TRUE(PortOpen(L"COM3:", 9600));
    const struct {
        uintptr_t after;
        size_t writes;
    } rows[] = {{1000, 1}, {6000, 2}, {8500, 3}};
    for (const auto& row : rows) {
        StoreSetting(L"BaudrateIdx", 3);
        port.writes.clear();
        MainWindow.store(
            CreateWindowExW(0, L"Closing", L"", 0, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr));
        CloseHandle(
            CreateThread(nullptr, 0, CloseTheWindowLater, reinterpret_cast<void*>(row.after), 0, nullptr));
        const uint64_t start = HeadlessElapsed();
        EXPECT_EQ(SwitchStaticNavigation(true), 1);
        EXPECT_LE(HeadlessElapsed() - start, row.after + 50);
        EXPECT_EQ(port.writes.size(), row.writes);
        EXPECT_NE(Setting(L"BaudrateIdx"), 2);
        Sleep(100); // the other thread ends
    }
}

} // namespace
