// SPDX-License-Identifier: MIT
#include "nmea/dialogs/command_dialog.h"

#include "link/serial_port.h"
#include "resources/resource_ids.h"
#include "tests/unit/nmea/dialogs/command_dialog_test.h"
#include "ui/dialog_controls.h"

namespace
{

constexpr int Rate = CONTROL_TO_SIRF_BAUDRATE, Protocol = CONTROL_SERIAL_PROTOCOL, Help = CONTROL_SERIAL_HELP,
              Set = CONTROL_SERIAL_SET, Follow = CONTROL_SERIAL_FOLLOW;
constexpr int PortsRate = 3; // entry of the 9600 bits/s at which the port was opened
constexpr wchar_t RateRefusal[] = L"Select a baudrate.\n\nSee Help for more information.";

class SetSerialPortDialog : public CommandDialogTest
{
};
IN_BOTH_LAYOUTS(SetSerialPortDialog);

class SetSerialPortDialogTyping : public CommandDialogTest
{
};
IN_TOUCH_LAYOUT(SetSerialPortDialogTyping);

TEST_P(SetSerialPortDialog, InitialState)
{
    Open(&::SetSerialPortDialog, [](HWND dialog) {
        EXPECT_EQ(HeadlessItems(dialog, Rate),
                  (std::vector<std::wstring>{L"1200", L"2400", L"4800", L"9600", L"19200", L"38400", L"57600",
                                             L"115200"}));
        EXPECT_EQ(HeadlessSelection(dialog, Rate), GetParam() ? PortsRate : -1);
        EXPECT_EQ(HeadlessItems(dialog, Protocol), (std::vector<std::wstring>{L"SiRF", L"NMEA"}));
        EXPECT_EQ(HeadlessSelection(dialog, Protocol), 0);
        EXPECT_FALSE(HeadlessEnabled(dialog, Follow));
        EXPECT_EQ(HeadlessText(dialog, CONTROL_NMEA_TIME), L"");
        EXPECT_EQ(HeadlessText(dialog, CONTROL_SIRF_TIME), L"");
    });
}

TEST_P(SetSerialPortDialog, PreselectsTheStoredRateOrElseTheReportedOne)
{
    constexpr int32_t NotStored = -12345;
    struct Row {
        int32_t stored;
        uint32_t reported;
        int selection;
    };
    constexpr Row Rows[] = {
        {NotStored, 0, -1},
        {NotStored, 1200, -1},
        {NotStored, 2400, -1},
        {NotStored, 4800, 2},
        {NotStored, 9600, 3},
        {NotStored, 19200, 4},
        {NotStored, 38400, 5},
        {NotStored, 57600, 6},
        {NotStored, 115200, 7},
        {NotStored, 14400, -1},
        {0, 4800, 0},
        {5, 4800, 5},
        {7, 0, 7},
        {-1, 9600, 3},
        {8, 9600, 3},
        {2147483646, 0, -1},
    };
    for (const Row& row : Rows) {
        if (row.stored != NotStored) StoreSetting(L"SirfBaudrateIdx", row.stored);
        NmeaReportedBaud.store(row.reported);
        Open(&::SetSerialPortDialog, [&](HWND dialog) {
            // A keypad's list always shows an entry: the port's rate is selected, and would be sent.
            const int expected = GetParam() && row.selection < 0 ? PortsRate : row.selection;
            EXPECT_EQ(HeadlessSelection(dialog, Rate), expected) << row.stored << " " << row.reported;
        });
    }
}

TEST_P(SetSerialPortDialog, SendsTheChosenProtocolAndRate)
{
    struct Row {
        const wchar_t *protocol, *rate;
        const char* sentence;
    };
    constexpr Row Rows[] = {
        {L"SiRF", L"1200", "$PSRF100,0,1200,8,1,0*00\r\n"},
        {L"SiRF", L"2400", "$PSRF100,0,2400,8,1,0*05\r\n"},
        {L"SiRF", L"4800", "$PSRF100,0,4800,8,1,0*0F\r\n"},
        {L"SiRF", L"9600", "$PSRF100,0,9600,8,1,0*0C\r\n"},
        {L"SiRF", L"19200", "$PSRF100,0,19200,8,1,0*39\r\n"},
        {L"SiRF", L"38400", "$PSRF100,0,38400,8,1,0*3C\r\n"},
        {L"SiRF", L"57600", "$PSRF100,0,57600,8,1,0*37\r\n"},
        {L"SiRF", L"115200", "$PSRF100,0,115200,8,1,0*04\r\n"},
        {L"NMEA", L"1200", "$PSRF100,1,1200,8,1,0*01\r\n"},
        {L"NMEA", L"38400", "$PSRF100,1,38400,8,1,0*3D\r\n"},
    };
    Open(&::SetSerialPortDialog, [&](HWND dialog) {
        for (const Row& row : Rows) {
            Choose(dialog, Protocol, row.protocol);
            Choose(dialog, Rate, row.rate);
            HeadlessClick(dialog, Set);
            EXPECT_EQ(TakeSent(), row.sentence);
        }
        EXPECT_TRUE(TakeBoxes().empty());
    });
}

TEST_P(SetSerialPortDialog, RefusesWhatIsMissingTheProtocolFirst)
{
    SirfRecognised.store(1);
    Open(&::SetSerialPortDialog, [&](HWND dialog) {
        Unchoose(dialog, Protocol);
        HeadlessClick(dialog, Set);
        EXPECT_TRUE(Refuses(L"Protocol", L"Select a protocol."));
        Choose(dialog, Protocol, L"NMEA");
        Unchoose(dialog, Rate);
        HeadlessClick(dialog, Set);
        EXPECT_TRUE(Refuses(L"Baudrate", RateRefusal));
        EXPECT_EQ(ProtocolMode(), ProtocolNmea | ProtocolSirf);
        EXPECT_EQ(ClearOnNextAppend.load(), 0);
        EXPECT_FALSE(HeadlessEnabled(dialog, Follow));
        Choose(dialog, Rate, L"9600");
        HeadlessClick(dialog, Set);
        EXPECT_EQ(TakeSent(), "$PSRF100,1,9600,8,1,0*0D\r\n");
    });
}

TEST_P(SetSerialPortDialogTyping, TypedRates)
{
    struct Row {
        const wchar_t* typed;
        const char* sentence; // null: refused
    };
    constexpr Row Rows[] = {
        {L"2400", "$PSRF100,1,2400,8,1,0*04\r\n"},
        {L"4800", "$PSRF100,1,4800,8,1,0*0E\r\n"},
        {L"9600", "$PSRF100,1,9600,8,1,0*0D\r\n"},
        {L"19200", "$PSRF100,1,19200,8,1,0*38\r\n"},
        {L"38400", "$PSRF100,1,38400,8,1,0*3D\r\n"},
        {L"57600", "$PSRF100,1,57600,8,1,0*36\r\n"},
        {L"115200", "$PSRF100,1,115200,8,1,0*05\r\n"},
        {L" 38400", "$PSRF100,1,38400,8,1,0*3D\r\n"},
        {L"1200", nullptr}, // sent only when it is chosen
        {L"300", nullptr},
        {L"0", nullptr},
        {L"-4800", nullptr},
        {L"", nullptr},
        {L"fast", nullptr},
        {L"4294972096", nullptr}, // 2^32 + 4800
    };
    Open(&::SetSerialPortDialog, [&](HWND dialog) {
        Choose(dialog, Protocol, L"NMEA");
        for (const Row& row : Rows) {
            HeadlessType(dialog, Rate, row.typed);
            HeadlessClick(dialog, Set);
            if (row.sentence)
                EXPECT_EQ(TakeSent(), row.sentence);
            else
                EXPECT_TRUE(Refuses(L"Baudrate", RateRefusal)) << row.typed;
        }
    });
}

TEST_P(SetSerialPortDialogTyping, OtherTextBesideASelectedEntry)
{
    Open(&::SetSerialPortDialog, [&](HWND dialog) {
        Choose(dialog, Rate, L"9600");
        SetDlgItemTextW(dialog, Rate, L"300");
        HeadlessClick(dialog, Set);
        EXPECT_EQ(TakeSent(), "$PSRF100,0,300,8,1,0*30\r\n"); // the number as typed
        SetDlgItemTextW(dialog, Rate, L"fast");
        HeadlessClick(dialog, Set);
        EXPECT_EQ(TakeSent(), "$PSRF100,0,9600,8,1,0*0C\r\n"); // no number: the entry
    });
}

TEST_P(SetSerialPortDialog, SetForgetsTheProtocolBeforeItSends)
{
    SirfRecognised.store(1);
    uint8_t modeWhenSent = 255;
    Port.onWrite = [&](HeadlessPort&, std::string_view) { modeWhenSent = ProtocolMode(); };
    Open(&::SetSerialPortDialog, [&](HWND dialog) {
        Choose(dialog, Rate, L"38400");
        HeadlessClick(dialog, Set);
        EXPECT_EQ(modeWhenSent, ProtocolNone);
        EXPECT_TRUE(HeadlessEnabled(dialog, Follow));
        EXPECT_TRUE(Port.rates.empty()); // the program's own port follows only on request
    });
}

TEST_P(SetSerialPortDialog, FollowSetsTheOwnPortAndDetectsAfresh)
{
    Open(&::SetSerialPortDialog, [&](HWND dialog) {
        Choose(dialog, Rate, L"38400");
        EXPECT_FALSE(HeadlessClick(dialog, Follow));
        HeadlessClick(dialog, Set);
        TakeSent();
        RecogniseNmea(); // by messages that were still on their way
        ClearOnNextAppend.store(0);
        EXPECT_TRUE(HeadlessClick(dialog, Follow));
        EXPECT_EQ(Port.rates, std::vector<DWORD>{38400});
        EXPECT_EQ(BaudrateIdx.load(), 5);
        EXPECT_EQ(ProtocolMode(), ProtocolNone);
        EXPECT_EQ(ClearOnNextAppend.load(), 1);
        EXPECT_EQ(TakeSent(), "");
        EXPECT_TRUE(TakeBoxes().empty());
    });
}

TEST_P(SetSerialPortDialogTyping, FollowWithoutARateDoesNothing)
{
    Open(&::SetSerialPortDialog, [&](HWND dialog) {
        Choose(dialog, Rate, L"38400");
        HeadlessClick(dialog, Set);
        for (const wchar_t* typed : {L"", L"fast", L"0", L"-9600"}) {
            HeadlessType(dialog, Rate, typed);
            HeadlessClick(dialog, Follow);
            EXPECT_TRUE(Port.rates.empty()) << typed;
        }
        HeadlessType(dialog, Rate, L"14400"); // the driver decides if it is possible
        HeadlessClick(dialog, Follow);
        EXPECT_EQ(Port.rates, std::vector<DWORD>{14400});
    });
}

// The receiver at its new rate: its messages store port and rate, and in SiRF binary also the rate for a
// later switch.
TEST_P(SetSerialPortDialog, FirstFrameAfterTheSwitchStoresTheRate)
{
    CommPortIdx.store(3);
    Open(&::SetSerialPortDialog, [&](HWND dialog) {
        Choose(dialog, Rate, L"57600");
        HeadlessClick(dialog, Set);
        HeadlessClick(dialog, Follow);
        Feed(std::string_view("\xA0\xA2\x00\x02\x0B\xA4\x00\xAF\xB0\xB3", 10)); // 164 is acknowledged
        EXPECT_EQ(ProtocolMode(), ProtocolSirf);
    });
    EXPECT_EQ(Setting(L"SirfBaudrateIdx"), 6);
    EXPECT_EQ(Setting(L"CommPortIdx"), 3);
    EXPECT_EQ(Setting(L"BaudrateIdx"), 6);
}

TEST_P(SetSerialPortDialog, HelpWarnsOfOtherRates)
{
    Open(&::SetSerialPortDialog, [&](HWND dialog) {
        HeadlessClick(dialog, Help);
        EXPECT_TRUE(Refuses(
            L"Switching Baudrate",
            L"Switching the SiRF chip to another baudrate is dangerous on some devices. To get an indication "
            L"of a safe baudrate, go to NMEA, Navigation Initialization, execute a Hot Start, or power "
            L"off/on, "
            L"look for a baudrate in the scrollable grey window. If Toravane detects a protocol only when "
            L"the "
            L"comm port is opened with a specific baudrate it should be safe. Bluetooth devices usually "
            L"support "
            L"only 38400. SD-501/502 are unsafe."));
    });
}

TEST_P(SetSerialPortDialog, ShowsTheTimeOfEachProtocol)
{
    Open(&::SetSerialPortDialog, [](HWND dialog) {
        FeedSentence("GPGLL,4916.4500,N,12311.1200,W,183725.50,A");
        EXPECT_EQ(HeadlessText(dialog, CONTROL_NMEA_TIME), L"18:37:25");
        EXPECT_EQ(HeadlessText(dialog, CONTROL_SIRF_TIME), L"");
        std::string geodetic(91, '\0'); // message 41, 2024-02-29 23:59:58.5
        geodetic[0] = 41;
        geodetic.replace(11, 8, "\x07\xE8\x02\x1D\x17\x3B\xE4\x84");
        Feed("\xA0\xA2" + std::string(1, '\0') + "\x5B" + geodetic + "\x02\xF1\xB0\xB3");
        EXPECT_EQ(HeadlessText(dialog, CONTROL_SIRF_TIME), L"23:59:58");
    });
}

} // namespace
