// SPDX-License-Identifier: MIT
#include "resources/resource_ids.h"
#include "sirf/dialogs/command_dialog.h"

#include "link/link_state.h"
#include "link/serial_port.h"
#include "tests/unit/sirf/dialogs/dialog_test.h"
#include "ui/dialog_controls.h"

namespace
{

constexpr int Rates = CONTROL_TO_NMEA_RATES, Checksums = CONTROL_TO_NMEA_CHECKSUMS,
              Baudrate = CONTROL_TO_NMEA_BAUDRATE, Debug = CONTROL_TO_NMEA_DEBUG, Set = CONTROL_TO_NMEA_SET,
              Follow = CONTROL_TO_NMEA_FOLLOW, Help = CONTROL_TO_NMEA_HELP;
constexpr const char* AllDefaults =
    "A0A2 0018 81 02 01 01 01 01 05 01 05 01 01 01 01 01 00 01 00 01 00 01 00 01"
    "12C0 016D B0B3";

class SwitchToNmeaDialog : public SirfDialogTest
{
protected:
    SwitchToNmeaDialog()
    {
        PortDcb = Port.dcb;
        PortDcb.BaudRate = 4800;
        InitializeSent.store(0);
    }
    ~SwitchToNmeaDialog() override { PortDcb = {}; }

    void Work(const std::function<void(HWND)>& user) { With(DIALOG_SIRF_SWITCH_TO_NMEA, user); }
    void ExpectRefusal(HWND dialog, const std::wstring& caption, const std::wstring& text)
    {
        HeadlessClearBoxes();
        HeadlessClick(dialog, Set);
        ASSERT_EQ(HeadlessBoxes().size(), 1u);
        EXPECT_TRUE(IsBox(HeadlessBoxes()[0], caption, text));
        EXPECT_TRUE(Written().empty());
        EXPECT_FALSE(HeadlessEnabled(dialog, Follow));
        EXPECT_EQ(InitializeSent.load(), 0);
    }
};

TEST_F(SwitchToNmeaDialog, OpensWithTheDefaultsAndThePortsRate)
{
    const std::wstring defaults[] = {L"1", L"1", L"5", L"5", L"1", L"1", L"0", L"0", L"0", L"0"};
    Work([&](HWND dialog) {
        for (int i = 0; i < 10; ++i) {
            EXPECT_EQ(HeadlessText(dialog, Rates + i), defaults[i]) << i;
            EXPECT_EQ(HeadlessItems(dialog, Rates + i),
                      (std::vector<std::wstring>{L"0", L"1", L"2", L"5", L"10"}));
        }
        EXPECT_EQ(HeadlessItems(dialog, Baudrate),
                  (std::vector<std::wstring>{L"1200", L"2400", L"4800", L"9600", L"19200", L"38400", L"57600",
                                             L"115200"}));
        EXPECT_EQ(HeadlessSelection(dialog, Baudrate), 2);
        EXPECT_EQ(HeadlessCheck(dialog, Checksums), BST_CHECKED);
        EXPECT_EQ(HeadlessCheck(dialog, Debug), BST_INDETERMINATE);
        EXPECT_FALSE(HeadlessEnabled(dialog, Follow));
    });
}

TEST_F(SwitchToNmeaDialog, ProposesTheStoredRateElseThePorts)
{
    const struct {
        int32_t stored; // -12345 none
        uint32_t port;
        int selection;
    } rows[] = {
        {-12345, 1200, -1},  {-12345, 2400, -1}, {-12345, 4800, 2},   {-12345, 9600, 3},
        {-12345, 19200, 4},  {-12345, 38400, 5}, {-12345, 57600, 6},  {-12345, 115200, -1},
        {-12345, 14400, -1}, {-12345, 0, -1},    {0, 4800, 0},        {7, 4800, 7},
        {8, 4800, 2},        {-1, 9600, 3},      {1000000, 1200, -1},
    };
    for (const auto& row : rows) {
        if (row.stored != -12345) StoreSetting(L"NmeaBaudrateIdx", row.stored);
        PortDcb.BaudRate = row.port;
        Work([&](HWND dialog) {
            EXPECT_EQ(HeadlessSelection(dialog, Baudrate), row.selection) << row.stored << ", " << row.port;
        });
    }
}

TEST_F(SwitchToNmeaDialog, ShowsStoredRatesAndThoseThatTheListDoesNotOffer)
{
    StoreSetting(L"NmeaIntervalIdx01", 10);
    StoreSetting(L"NmeaIntervalIdx02", 255);
    StoreSetting(L"NmeaIntervalIdx10", 7);
    StoreSetting(L"NmeaIntervalIdx03", 256); // no rate: the default
    Work([&](HWND dialog) {
        EXPECT_EQ(HeadlessText(dialog, Rates), L"10");
        EXPECT_EQ(HeadlessText(dialog, Rates + 1), L"255");
        EXPECT_EQ(HeadlessText(dialog, Rates + 2), L"5");
        EXPECT_EQ(HeadlessText(dialog, Rates + 9), L"7");
        HeadlessClick(dialog, Set);
        ASSERT_EQ(Port.writes.size(), 1u);
        EXPECT_EQ(Port.writes[0].substr(6, 20),
                  HexText("0A 01 FF 01 05 01 05 01 01 01 01 01 00 01 00 01 00 01 07 01"));
    });
}

TEST_F(SwitchToNmeaDialog, SetSendsStoresAndForgetsTheProtocol)
{
    SirfRecognised.store(1);
    Port.onWrite = [&](HeadlessPort&, std::string_view) { EXPECT_EQ(ProtocolMode(), ProtocolSirf); };
    Work([&](HWND dialog) {
        HeadlessClick(dialog, Set);
        EXPECT_EQ(Written(), std::vector{HexText(AllDefaults)});
        EXPECT_EQ(ProtocolMode(), ProtocolNone);
        EXPECT_EQ(InitializeSent.load(), 1);
        EXPECT_TRUE(HeadlessEnabled(dialog, Follow));
        EXPECT_EQ(Setting(L"NmeaIntervalIdx01"), 1);
        EXPECT_EQ(Setting(L"NmeaIntervalIdx03"), 5);
        EXPECT_EQ(Setting(L"NmeaIntervalIdx10"), 0);
    });
    EXPECT_TRUE(HeadlessBoxes().empty());
    Port.onWrite = nullptr;
}

TEST_F(SwitchToNmeaDialog, KeypadSendsTheSameBytesButForItsDecidedBox)
{
    UseKeypad();
    StoreSetting(L"NmeaIntervalIdx02", 1);
    Work([&](HWND dialog) {
        EXPECT_EQ(HeadlessCheck(dialog, Debug), BST_UNCHECKED);
        EXPECT_EQ(HeadlessSelection(dialog, Rates + 2), 3);
        Enter(dialog, Ticked(Debug, BST_INDETERMINATE));
        HeadlessClick(dialog, Set);
        EXPECT_EQ(Written(), std::vector{HexText(AllDefaults)});
    });
}

// Its list always shows an entry: this entry is sent.
TEST_F(SwitchToNmeaDialog, KeypadSelectsTheRateThatItShows)
{
    UseKeypad();
    const struct {
        uint32_t port;
        int selection;
    } rows[] = {{1200, 0}, {2400, 1}, {4800, 2}, {57600, 6}, {115200, 7}, {14400, 2}, {0, 2}};
    for (const auto& row : rows) {
        PortDcb.BaudRate = row.port;
        Work([&](HWND dialog) { EXPECT_EQ(HeadlessSelection(dialog, Baudrate), row.selection) << row.port; });
    }
}

TEST_F(SwitchToNmeaDialog, KeypadKeepsAStoredRateThatItsListDoesNotOffer)
{
    UseKeypad();
    StoreSetting(L"NmeaIntervalIdx01", 30);
    Work([&](HWND dialog) {
        EXPECT_EQ(HeadlessSelection(dialog, Rates), -1);
        HeadlessClick(dialog, Set);
        ASSERT_EQ(Port.writes.size(), 1u);
        EXPECT_EQ(Port.writes[0].substr(4, 4), HexText("81 01 1E 01"));
    });
}

TEST_F(SwitchToNmeaDialog, RatesAreRefusedInTheirOrder)
{
    const std::wstring names[] = {L"GGA", L"GLL", L"GSA",    L"GSV", L"RMC",
                                  L"VTG", L"MSS", L"User 8", L"ZDA", L"User 10"};
    Work([&](HWND dialog) {
        for (int i = 0; i < 10; ++i) Enter(dialog, Typed(Rates + i, i % 2 ? L"256" : L"-1"));
        for (int i = 0; i < 10; ++i) {
            ExpectRefusal(dialog, names[i] + L" Update Rate", L"Range 0-255 s");
            Enter(dialog, Typed(Rates + i, i % 2 ? L"255" : L"0"));
        }
        HeadlessClick(dialog, Set);
        ASSERT_EQ(Port.writes.size(), 1u);
        EXPECT_EQ(Port.writes[0].substr(6, 20),
                  HexText("00 01 FF 01 00 01 FF 01 00 01 FF 01 00 01 FF 01 00 01 FF 01"));
        EXPECT_EQ(Setting(L"NmeaIntervalIdx02"), 255);
    });
}

TEST_F(SwitchToNmeaDialog, NumbersOfMoreThan32BitsAreRefused)
{
    Work([&](HWND dialog) {
        for (const wchar_t* number : {L"4294967296", L"-4294967296", L"99999999999999999999999"}) {
            Enter(dialog, Typed(Rates, number));
            ExpectRefusal(dialog, L"GGA Update Rate", L"Range 0-255 s");
        }
    });
}

// A fifth of a second is not 0, which would switch the sentence off.
TEST_F(SwitchToNmeaDialog, NumbersWithSomethingLeftOverAreRefused)
{
    Work([&](HWND dialog) {
        for (const wchar_t* number : {L"0.2", L"5,0", L"1e2", L"5 s", L"- 5"}) {
            Enter(dialog, Typed(Rates, number));
            ExpectRefusal(dialog, L"GGA Update Rate", L"Range 0-255 s");
        }
    });
}

TEST_F(SwitchToNmeaDialog, WhereNoNumberStandsTheRateStays)
{
    Work([&](HWND dialog) {
        Enter(dialog, Typed(Rates, L"20"));
        HeadlessClick(dialog, Set);
        Enter(dialog, Typed(Rates, L"x"));
        Enter(dialog, Typed(Rates + 1, L""));
        HeadlessClick(dialog, Set);
        ASSERT_EQ(Port.writes.size(), 2u);
        EXPECT_EQ(Port.writes[1].substr(6, 4), HexText("14 01 01 01"));
    });
}

TEST_F(SwitchToNmeaDialog, BoxesChooseChecksumsAndDebugMessages)
{
    const struct {
        UINT checksums, debug;
        const char *mode, *flag;
    } rows[] = {{BST_CHECKED, BST_UNCHECKED, "01", "01"},
                {BST_UNCHECKED, BST_CHECKED, "00", "00"},
                {BST_UNCHECKED, BST_INDETERMINATE, "02", "00"}};
    Work([&](HWND dialog) {
        for (const auto& row : rows) {
            Enter(dialog, Ticked(Checksums, row.checksums));
            Enter(dialog, Ticked(Debug, row.debug));
            HeadlessClick(dialog, Set);
            const std::string& frame = Port.writes.back();
            EXPECT_EQ(frame.substr(5, 1), HexText(row.mode));
            for (size_t i = 0; i < 10; ++i) EXPECT_EQ(frame.substr(7 + 2 * i, 1), HexText(row.flag)) << i;
        }
    });
}

TEST_F(SwitchToNmeaDialog, Baudrates)
{
    const struct {
        const wchar_t* typed; // null: the entry is chosen
        int chosen;
        const char* bytes; // null: refused
    } rows[] = {
        {L"1200", -1, "04B0"},   {L"2400", -1, "0960"}, {L"57600", -1, "E100"},  {L"115200", -1, "C200"},
        {nullptr, 0, "04B0"},    {nullptr, 7, "C200"},  {L"14400", -1, nullptr}, {L"0", -1, nullptr},
        {L"-4800", -1, nullptr}, {L"", -1, nullptr},    {L"fast", -1, nullptr},
    };
    for (const auto& row : rows)
        Work([&](HWND dialog) {
            InitializeSent.store(0);
            Written();
            if (row.typed)
                Enter(dialog, Typed(Baudrate, row.typed));
            else
                HeadlessChoose(dialog, Baudrate, row.chosen);
            if (!row.bytes) {
                ExpectRefusal(dialog, L"Baudrate", L"Select a baudrate.\n\nSee Help for more information.");
                return;
            }
            HeadlessClick(dialog, Set);
            EXPECT_EQ(Port.writes.back().substr(26, 2), HexText(row.bytes));
        });
}

TEST_F(SwitchToNmeaDialog, TypedRateIsLearntWhenTheReceiverIsHeard)
{
    StoreSetting(L"NmeaBaudrateIdx", 4);
    Work([&](HWND dialog) {
        Enter(dialog, Typed(Baudrate, L"9600"));
        HeadlessClick(dialog, Set);
        EXPECT_EQ(Setting(L"NmeaBaudrateIdx"), 4); // not before
        FeedSentence("PSRFTXT,Version");
        EXPECT_EQ(Setting(L"NmeaBaudrateIdx"), 3);
        ResetProtocolMode();
        Enter(dialog, Typed(Baudrate, L"9600 bits"));
        SelectListEntry(dialog, Baudrate, -1);
        FeedSentence("PSRFTXT,Version");
        EXPECT_EQ(Setting(L"NmeaBaudrateIdx"), 3); // no rate
    });
}

TEST_F(SwitchToNmeaDialog, NothingIsStoredWhenItIsRefused)
{
    Work([&](HWND dialog) {
        Enter(dialog, Typed(Rates, L"7"));
        Enter(dialog, Typed(Baudrate, L""));
        ExpectRefusal(dialog, L"Baudrate", L"Select a baudrate.\n\nSee Help for more information.");
        EXPECT_EQ(Setting(L"NmeaIntervalIdx01"), -12345);
    });
}

TEST_F(SwitchToNmeaDialog, PortFollowsAndTheProtocolIsForgottenOnceMore)
{
    Work([&](HWND dialog) {
        HeadlessChoose(dialog, Baudrate, 5);
        HeadlessClick(dialog, Set);
        SirfRecognised.store(1); // by a message that was still on its way
        InitializeSent.store(0);
        HeadlessClick(dialog, Follow);
        EXPECT_EQ(Port.rates, std::vector<DWORD>{38400});
        EXPECT_EQ(PortDcb.BaudRate, 38400u);
        EXPECT_EQ(BaudrateIdx.load(), 5);
        EXPECT_EQ(ProtocolMode(), ProtocolNone);
        EXPECT_EQ(InitializeSent.load(), 1);
        Enter(dialog, Typed(Baudrate, L"none"));
        HeadlessClick(dialog, Follow);
        EXPECT_EQ(Port.rates.size(), 1u);
    });
}

TEST_F(SwitchToNmeaDialog, HelpSaysWhichRatesAreSafe)
{
    Work([&](HWND dialog) { HeadlessClick(dialog, Help); });
    ASSERT_EQ(HeadlessBoxes().size(), 1u);
    EXPECT_TRUE(IsBox(
        HeadlessBoxes()[0], L"Switching Baudrate",
        L"Switching the SiRF chip to another baudrate is dangerous on some devices. To get an indication "
        L"of a safe baudrate, go to NMEA, Navigation Initialization, execute a Hot Start, or power "
        L"off/on, look for a baudrate in the scrollable grey window. If Toravane detects a protocol only "
        L"when the comm port is opened with a specific baudrate it should be safe. Bluetooth devices "
        L"usually support only 38400. SD-501/502 are unsafe."));
}

// The first sentence after the switch stores the rate that the dialog shows.
TEST_F(SwitchToNmeaDialog, RateIsStoredWhenNmeaArrives)
{
    Work([&](HWND dialog) {
        HeadlessChoose(dialog, Baudrate, 3);
        HeadlessClick(dialog, Set);
        EXPECT_EQ(Setting(L"NmeaBaudrateIdx"), -12345);
        FeedSentence("GPZDA,183725.50,21,06,2026,00,00");
        EXPECT_EQ(Setting(L"NmeaBaudrateIdx"), 3);
        EXPECT_EQ(ProtocolMode(), ProtocolNmea);
    });
}

} // namespace
