// SPDX-License-Identifier: MIT
// The console program can send everything that the NMEA dialogs send.
//
// Some things that a dialog can send are sent only by "send nmea", on purpose: a start with given position
// and time, a chosen number of channels and snap start (Navigation Initialization); sentences without
// checksum (Set Message Rate); rates that no port has, typed beside a chosen one (Set Serial Port);
// Development Data; Select Datum.
#include <cstring>

#include "console/switching.h"
#include "tests/unit/console/dry_run.h"
#include "tests/unit/nmea/dialogs/command_dialog_test.h"
#include "tests/unit/nmea/dialogs/dialog_rows.h"

namespace
{

class NmeaDialogBytes : public CommandDialogTest
{
protected:
    std::string Press(HWND dialog, int set)
    {
        TakeSent();
        HeadlessClick(dialog, set);
        return TakeSent();
    }
};
IN_BOTH_LAYOUTS(NmeaDialogBytes);

TEST_P(NmeaDialogBytes, ProtocolAndRateAreSentAlike)
{
    constexpr int Rate = 1001, Protocol = 1002, Set = 1004;
    Open(&::SetSerialPortDialog, [&](HWND dialog) {
        for (const char* rate : {"1200", "2400", "4800", "9600", "19200", "38400", "57600", "115200"}) {
            Choose(dialog, Rate, std::wstring(rate, rate + std::strlen(rate)));
            Choose(dialog, Protocol, L"SiRF");
            const std::vector<std::string> lines = DryRun({"switch", "sirf", rate});
            ASSERT_EQ(lines.size(), 1u) << rate;
            EXPECT_EQ(lines[0] + "\r\n", Press(dialog, Set)) << rate;

            // The rate alone; without a receiver the command takes it that the protocol changes too.
            Choose(dialog, Protocol, L"NMEA");
            const console::Found wanted = {console::Protocol::Nmea, static_cast<uint32_t>(std::stoul(rate))};
            const console::Frame frame = console::StepFrame(console::Protocol::Nmea, {wanted, {}});
            EXPECT_EQ(std::string(frame.begin(), frame.end()), Press(dialog, Set)) << rate;
        }
    });
}

TEST_P(NmeaDialogBytes, StartsAreSentAlike)
{
    constexpr int Set = 1018;
    const std::pair<int, const char*> starts[] = {
        {10110, "hot"}, {10112, "warm"}, {10113, "cold"}, {10114, "factory"}};
    Open(&::NavigationInitializationDialog, [&](HWND dialog) {
        for (const auto& [option, kind] : starts) {
            HeadlessClick(dialog, option);
            const std::vector<std::string> lines = DryRun({"restart", kind});
            ASSERT_EQ(lines.size(), 2u) << kind; // SiRF binary after it
            EXPECT_EQ(lines[0] + "\r\n", Press(dialog, Set)) << kind;
        }
    });
}

TEST_P(NmeaDialogBytes, RatesOfSentencesAreSentAlike)
{
    constexpr int Message = 1031, Seconds = 1032, Set = 1034;
    constexpr const char* Sentences[] = {"GGA", "GLL", "GSA",   "GSV", "RMC",
                                         "VTG", "MSS", "USER8", "ZDA", "USER10"};
    Open(&::NmeaMessageRateDialog, [&](HWND dialog) {
        for (int message = 0; message < 10; ++message) {
            HeadlessChoose(dialog, Message, message);
            for (const wchar_t* seconds : {L"0", L"1", L"2", L"5", L"10", L"7", L"255"}) {
                if (!GetParam())
                    HeadlessType(dialog, Seconds, seconds);
                else if (std::wstring_view(seconds) == L"7" || std::wstring_view(seconds) == L"255")
                    continue; // a keypad's list has no such entry
                else
                    Choose(dialog, Seconds, seconds);
                const std::string argument =
                    std::string(Sentences[message]) + '=' + std::to_string(std::stoi(seconds));
                const std::vector<std::string> lines = DryRun({"rates", argument});
                ASSERT_EQ(lines.size(), 1u) << argument;
                EXPECT_EQ(lines[0] + "\r\n", Press(dialog, Set)) << argument;
            }
        }
    });
    for (const char* refused : {"256", "-1", "", "often", "0.2", "5x", "1 0", "1e1"})
        EXPECT_TRUE(DryRun({"rates", std::string("RMC=") + refused}).empty()) << refused;
}

TEST_P(NmeaDialogBytes, WhateverADialogSendsCanBeSent)
{
    const Dialog* const dialogs[] = {&::SetSerialPortDialog, &::NavigationInitializationDialog,
                                     &::NmeaMessageRateDialog, &::DevelopmentDataDialog,
                                     &::SelectDatumDialog};
    for (size_t i = 0; i < std::size(dialogs); ++i)
        Open(dialogs[i], [&](HWND dialog) {
            NmeaDialogs[i].prepare(dialog);
            const std::string sentence = Press(dialog, NmeaDialogs[i].set);
            const std::string body = sentence.substr(1, sentence.find('*') - 1);
            EXPECT_EQ(DryRun({"send", "nmea", body}), std::vector{sentence.substr(0, sentence.size() - 2)});
        });
}

} // namespace
