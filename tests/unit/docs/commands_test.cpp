// SPDX-License-Identifier: MIT
// docs/protocols.md against the program's tables and dialogs: the line, and commands. A field of a command
// has its place, width, kind and range as in the row by which it is sent; each byte is accounted for.
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "link/link_state.h"
#include "nmea/receiver_messages.h"
#include "resources/resource_ids.h"
#include "sirf/command_layouts.h"
#include "sirf/frame_sender.h"
#include "sirf/message_decoder.h"
#include "sirf/message_names.h"
#include "sirf/setting_values.h"
#include "sirf/start_fields.h"
#include "sirf/switch_to_nmea_command.h"
#include "tests/unit/docs/document.h"
#include "tests/unit/nmea/dialogs/dialog_rows.h"

namespace
{

std::string KindName(FieldKind kind)
{
    switch (kind) {
    case FieldKind::Number:
    case FieldKind::NamedNumber: return "number";
    case FieldKind::Tenths: return "tenths";
    case FieldKind::Hundredths: return "hundredths";
    case FieldKind::FivePercent: return "fives";
    case FieldKind::List: return "entry";
    case FieldKind::Check: return "box";
    }
    return "";
}

Row RowOf(const CommandField& field)
{
    return {std::to_string(field.offset), std::to_string(field.width), Narrow(field.caption),
            KindName(field.kind),
            std::to_string(field.low * field.typedTimes) + " to " +
                std::to_string(field.high * field.typedTimes)};
}

// Commands without rows: their payloads are too irregular, and their tests know them.
bool HasLayout(const std::string& heading)
{
    return heading.ends_with(" bytes") && !heading.starts_with("129 ") && !heading.starts_with("132 ") &&
           !heading.starts_with("152 ") && !heading.starts_with("168 ");
}

std::string HeadingOf(const CommandLayout& layout)
{
    const std::string start = std::to_string(layout.command) + " ";
    const std::string end = ", " + std::to_string(layout.length) + " bytes";
    for (const auto& [heading, rows] : Tables())
        if (heading.starts_with(start) && heading.ends_with(end)) return heading;
    return "";
}

// Those of all dialogs, so that a new one needs its table.
std::vector<const CommandLayout*> Layouts()
{
    std::vector<const CommandLayout*> found;
    for (uint16_t number = UINT16_MAX; number > 0; --number)
        if (const CommandLayout* layout = FindDialogLayout(number)) found.push_back(layout);
    return found;
}

TEST(ProtocolsDocument, CommandsHaveTheProgramsFields)
{
    for (const CommandLayout* layout : Layouts()) {
        const std::string heading = HeadingOf(*layout);
        ASSERT_NE(heading, "") << "command " << int{layout->command} << " of " << int{layout->length}
                               << " bytes";
        std::map<std::string, Row> expected, documented;
        for (const CommandField& field : layout->fields)
            expected[std::to_string(field.offset)] = RowOf(field);
        for (const Row& row : Tables().at(heading)) {
            ASSERT_EQ(row.size(), 5u) << heading;
            if (row[3] != "fixed" && row[3] != "bits") documented[row[0]] = row;
        }
        EXPECT_EQ(documented, expected) << heading;
    }
}

TEST(ProtocolsDocument, CommandsAccountForEachByte)
{
    for (const CommandLayout* layout : Layouts()) {
        const std::string heading = HeadingOf(*layout);
        int next = 1;
        for (const Row& row : Tables().at(heading)) {
            EXPECT_EQ(std::stoi(row[0]), next) << heading;
            EXPECT_TRUE(row[3] != "fixed" || row[2] == "0") << heading;
            next = std::stoi(row[0]) + std::stoi(row[1]);
        }
        EXPECT_EQ(next, layout->length) << heading;
    }
}

TEST(ProtocolsDocument, HasNoCommandThatTheProgramLacks)
{
    size_t documented = 0;
    for (const auto& [heading, rows] : Tables()) documented += HasLayout(heading);
    EXPECT_EQ(documented, Layouts().size());
}

TEST(ProtocolsDocument, ListsTheMessagesThatCanBeChosen)
{
    std::vector<std::string> expected, documented;
    for (const wchar_t* name : MessageNames) expected.push_back(Narrow(name));
    for (const Row& row : Tables().at("Message numbers"))
        documented.push_back(row.at(1).empty() ? row.at(0) : row.at(0) + " " + row.at(1));
    EXPECT_EQ(documented, expected);
}

TEST(ProtocolsDocument, ContainsTheCommandsThatCanBePolled)
{
    std::vector<std::string> polled;
    for (int command = 0; command < 256; ++command)
        if (FindPolledCommand(static_cast<uint8_t>(command))) polled.push_back(Number(command));
    EXPECT_TRUE(Says("Read by this message are " + Listed(polled) + "."));
}

TEST(ProtocolsDocument, ContainsTheRates)
{
    std::vector<std::string> rates;
    for (const uint32_t rate : BaudTable) rates.push_back(Number(rate));
    EXPECT_TRUE(Says("Rates: " + Listed(rates) + " bits/s"));
}

TEST(ProtocolsDocument, DescribesTheChoiceOfASatellite)
{
    constexpr uint8_t LastEntry = 19, Bit = 3;
    EXPECT_TRUE(Says("Byte 1 is 0 for Auto, else the entry and " + Number(SbasEntryToPrn) + ": " +
                     Number(SbasEntryToPrn + 1) + " to " + Number(SbasEntryToPrn + LastEntry) +
                     ". Byte 3 has bit " + Number(Bit) + " set when a satellite is chosen."));
    uint8_t payload[MaxCommandLength];
    for (uint8_t entry = 0; entry <= LastEntry; ++entry) {
        PackCommand(SbasLayout, {entry}, payload);
        EXPECT_EQ(payload[1], entry ? SbasEntryToPrn + entry : 0);
        EXPECT_EQ(payload[3], entry ? 1 << Bit : 0);
    }
}

// PSRF101 has the same fields, in whole units except the time of week.
TEST(ProtocolsDocument, ContainsTheRangesOfAStart)
{
    const char* const names[StartFieldCount] = {"X, Y, Z:",     "X, Y, Z:", "X, Y, Z:", "clock offset",
                                                "time of week", "week",     "channels"};
    const auto fields = StartFields(1);
    for (uint32_t i = 0; i < StartFieldCount; ++i) {
        const int32_t scale = fields[i].kind == FieldKind::Hundredths ? 100 : 1;
        EXPECT_TRUE(Says(std::string(names[i]) + " " + Number(fields[i].low) + " to " +
                         Number(fields[i].high * scale)));
    }
}

TEST(ProtocolsDocument, ContainsTheValuesOfTheBeacon)
{
    const CommandField &frequency = DgpsSourceLayout.fields[1], &bitRate = DgpsSourceLayout.fields[2];
    int32_t lowest = 1;
    while (!frequency.accepts(lowest)) ++lowest;
    std::string rates;
    for (int32_t rate = 1; rate < bitRate.high; ++rate)
        if (bitRate.accepts(rate)) rates += ", " + Number(rate);
    EXPECT_TRUE(frequency.accepts(0) && bitRate.accepts(0) && bitRate.accepts(bitRate.high));
    EXPECT_TRUE(Says("The frequency is 0 or at least " + Number(lowest) + ", the bit rate 0" + rates +
                     " or " + Number(bitRate.high) + "."));
}

TEST(ProtocolsDocument, DescribesTheSwitchToNmea)
{
    const std::string heading = "129 Switch to NMEA Protocol, " + Number(SwitchToNmeaLength) + " bytes";
    const std::vector<Row>& rows = Tables().at(heading);
    const auto mode = [](DebugMessages debug) { return Number(static_cast<int64_t>(debug)); };
    EXPECT_EQ(rows.at(0),
              (Row{"1", "debug messages: " + mode(DebugMessages::On) + " on, " + mode(DebugMessages::Off) +
                            " off, " + mode(DebugMessages::Unchanged) + " as they were"}));
    // The places of the seconds, of the checksums after them, and of the rate.
    const std::vector<uint32_t> rates = NumbersIn(rows.at(1).at(0)), line = NumbersIn(rows.at(2).at(0));
    uint8_t seconds[NmeaRateCount], payload[SwitchToNmeaLength] = {};
    for (uint32_t i = 0; i < NmeaRateCount; ++i) seconds[i] = static_cast<uint8_t>(100 + i);
    PackSwitchToNmea(DebugMessages::Off, seconds, true, 38400, payload);
    EXPECT_EQ(payload[1], static_cast<uint8_t>(DebugMessages::Off));
    uint32_t place = rates.at(0);
    for (uint32_t i = 0; i < NmeaRateCount; ++i) {
        EXPECT_EQ(payload[place++], seconds[i]) << i;
        EXPECT_EQ(payload[place++], 1) << i;
    }
    EXPECT_EQ(place, rates.at(1) + 1);
    EXPECT_EQ(payload[line.at(0)] << 8 | payload[line.at(0) + 1], 38400);
    EXPECT_EQ(line.at(0) + 2, SwitchToNmeaLength);
}

// ---- What dialogs send --------------------------------------------------------------------------------

class CommandsInTheDocument : public DocumentTest
{
protected:
    CommandsInTheDocument() { RecogniseNmea(); }

    // Body of the only sentence that was sent since the last call.
    std::string SentBody()
    {
        const std::vector<std::string> sent = Written();
        EXPECT_EQ(sent.size(), 1u);
        return sent.empty() ? "" : sent[0].substr(1, sent[0].rfind('*') - 1);
    }

    static std::vector<std::string> Split(const std::string& body)
    {
        std::vector<std::string> parts(1);
        for (const char c : body)
            if (c == ',')
                parts.emplace_back();
            else
                parts.back() += c;
        return parts;
    }

    // True if a body is as the document's command, in which words in capitals stand for numbers.
    static bool IsLike(const std::string& body, const std::string& documented)
    {
        const std::vector<std::string> is = Split(body), said = Split(documented);
        if (is.size() != said.size()) return false;
        for (size_t i = 0; i < is.size(); ++i) {
            const bool isWord = said[i].find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ") == said[i].npos;
            const bool isNumber = is[i].find_first_not_of("-0123456789") == is[i].npos;
            if (isWord ? !isNumber : is[i] != said[i]) return false;
        }
        return true;
    }
};

TEST_F(CommandsInTheDocument, AreTheSentencesThatAreSent)
{
    std::vector<std::string> sent;
    for (const NmeaDialogRow& row : NmeaDialogs)
        InDialog(static_cast<uint16_t>(row.number), [&](HWND dialog) {
            row.prepare(dialog);
            HeadlessClick(dialog, row.set);
            sent.push_back(SentBody());
        });
    InDialog(DIALOG_NMEA_SET_SERIAL_PORT, [&](HWND dialog) {
        ChooseRate(dialog);
        HeadlessChoose(dialog, CONTROL_SERIAL_PROTOCOL, 1);
        HeadlessClick(dialog, CONTROL_SERIAL_SET);
        sent.push_back(SentBody());
    });
    ResetProtocolMode();
    FeedSentence("GPMSS"); // the first one
    sent.push_back(SentBody());
    std::vector<std::string> documented;
    for (const Row& row : Tables().at("NMEA commands"))
        documented.push_back(row[0].substr(1, row[0].size() - 2)); // without its quotes
    for (const std::string& body : sent)
        EXPECT_TRUE(std::any_of(documented.begin(), documented.end(), [&](const std::string& command) {
            return IsLike(body, command);
        })) << body;
    for (const std::string& command : documented)
        EXPECT_TRUE(std::any_of(sent.begin(), sent.end(), [&](const std::string& body) {
            return IsLike(body, command);
        })) << command;
    EXPECT_TRUE(Says("also causes the hot start `" + sent.back() + "`,"));
    EXPECT_EQ(documented.size(), 7u);
}

TEST_F(CommandsInTheDocument, HaveTheNumbersOfTheListsEntries)
{
    InDialog(DIALOG_NMEA_SELECT_DATUM, [&](HWND dialog) {
        std::string datums;
        const std::vector<std::wstring> names = HeadlessItems(dialog, CONTROL_DATUM);
        for (size_t i = 0; i < names.size(); ++i) {
            HeadlessChoose(dialog, CONTROL_DATUM, static_cast<int>(i));
            HeadlessClick(dialog, CONTROL_DATUM_SET);
            datums += (i ? ", " : "") + Split(SentBody()).at(1) + " " + Narrow(names[i]);
        }
        EXPECT_TRUE(Says("| " + datums + " |"));
    });
    InDialog(DIALOG_NMEA_SET_MESSAGE_RATE, [&](HWND dialog) {
        std::string messages;
        std::vector<std::string> ofUsers;
        HeadlessChoose(dialog, CONTROL_NMEA_RATE_SECONDS, 0);
        const std::vector<std::wstring> names = HeadlessItems(dialog, CONTROL_NMEA_RATE_MESSAGE);
        for (size_t i = 0; i < names.size(); ++i) {
            HeadlessChoose(dialog, CONTROL_NMEA_RATE_MESSAGE, static_cast<int>(i));
            HeadlessClick(dialog, CONTROL_NMEA_RATE_SET);
            const std::string number = Split(SentBody()).at(1);
            if (names[i].starts_with(L"User"))
                ofUsers.push_back(number);
            else
                messages += (i ? ", " : "") + number + " " + Narrow(names[i]);
        }
        EXPECT_TRUE(Says("message " + messages + ", " + Listed(ofUsers) + " for users;"));
    });
}

TEST_F(CommandsInTheDocument, HaveTheKindsOfARestart)
{
    InDialog(DIALOG_NMEA_NAVIGATION_INITIALIZATION, [&](HWND dialog) {
        const auto reset = [&](int option) {
            HeadlessClick(dialog, option);
            for (int field = CONTROL_NAVINIT_ECEF_X; field <= CONTROL_NAVINIT_WEEK; ++field)
                HeadlessType(dialog, field, L"0");
            HeadlessClick(dialog, CONTROL_NAVINIT_SET);
            return Split(SentBody()).back();
        };
        EXPECT_TRUE(Says("reset: " + reset(CONTROL_NAVINIT_SNAP_START) + " snap, " +
                         reset(CONTROL_NAVINIT_HOT_START) + " hot, " +
                         reset(CONTROL_NAVINIT_WARM_START_NO_INIT) + " warm without and " +
                         reset(CONTROL_NAVINIT_WARM_START_INIT) + " with the values before, " +
                         reset(CONTROL_NAVINIT_COLD_START) + " cold, " +
                         reset(CONTROL_NAVINIT_FACTORY_RESET) + " factory"));
    });
    InDialog(DIALOG_SIRF_INITIALIZE_DATA_SOURCE, [&](HWND dialog) {
        Written(); // the poll of the dialog
        const auto bits = [&](int option, int tickedBox = 0) {
            HeadlessClick(dialog, option);
            for (int field = CONTROL_INIT_ECEF_X; field <= CONTROL_INIT_WEEK; ++field)
                HeadlessType(dialog, field, L"0");
            HeadlessType(dialog, CONTROL_INIT_CHANNELS, L"12");
            for (int box = CONTROL_INIT_NAVLIB; box <= CONTROL_INIT_CLEAR; ++box)
                Enter(dialog, Ticked(box, box == tickedBox ? BST_CHECKED : BST_UNCHECKED));
            HeadlessClick(dialog, CONTROL_INIT_SET);
            const std::vector<std::string> frames = Written();
            constexpr size_t FrameStart = 4;
            return frames.size() != 1 ? ""
                                      : Hexadecimal(static_cast<uint8_t>(
                                            frames[0].at(FrameStart + ResetConfigurationOffset)));
        };
        EXPECT_TRUE(
            Says("Reset configuration: Snap Start " + bits(CONTROL_INIT_SNAP_START) + ", Hot Start " +
                 bits(CONTROL_INIT_HOT_START) + ", Warm Start (Init) " + bits(CONTROL_INIT_WARM_START_INIT) +
                 ", Warm Start (No Init) " + bits(CONTROL_INIT_WARM_START_NO_INIT) + ", Cold Start " +
                 bits(CONTROL_INIT_COLD_START) + ", Factory Reset " + bits(CONTROL_INIT_FACTORY_RESET) +
                 ", System Reset " + bits(CONTROL_INIT_SYSTEM_RESET) + "; and NavLib " +
                 bits(CONTROL_INIT_SNAP_START, CONTROL_INIT_NAVLIB) + ", Debug " +
                 bits(CONTROL_INIT_SNAP_START, CONTROL_INIT_DEBUG) + ", Clear " +
                 bits(CONTROL_INIT_SNAP_START, CONTROL_INIT_CLEAR) + " (hexadecimal)."));
    });
}

TEST_F(CommandsInTheDocument, HaveTheLengthOfDevelopmentData)
{
    InDialog(DIALOG_NMEA_DEVELOPMENT_DATA, [&](HWND dialog) {
        HeadlessClick(dialog, CONTROL_DEVELOPMENT_SET);
        const std::string proposed = SentBody();
        HeadlessType(dialog, CONTROL_DEVELOPMENT_COMMAND, std::wstring(200, L'x'));
        HeadlessClick(dialog, CONTROL_DEVELOPMENT_SET);
        EXPECT_TRUE(Says("| `" + proposed +
                         "` | what Development Data proposes; it sends any text of up to " +
                         Number(static_cast<int64_t>(SentBody().size())) + " characters |"));
    });
}

TEST_F(CommandsInTheDocument, HaveTheFrameAndThePolls)
{
    SendPollSoftwareVersion();
    SendPollNavigationParameters();
    SendPollParameter(143);
    const std::vector<std::string> frames = Written();
    const char* const headings[] = {"132 Poll Software Version, 2 bytes",
                                    "152 Poll Navigation Parameters, 2 bytes",
                                    "168 Poll Parameters, 2 bytes"};
    const uint8_t payloads[][2] = {{132, 0}, {152, 0}, {168, 143}};
    ASSERT_EQ(frames.size(), std::size(headings));
    for (size_t i = 0; i < frames.size(); ++i) {
        EXPECT_TRUE(Says(std::string("### ") + headings[i] + " Byte 1 is ")) << i;
        const std::string& frame = frames[i];
        const auto byte = [&](size_t place) { return static_cast<uint8_t>(frame.at(place)); };
        ASSERT_EQ(frame.size(), 10u);
        EXPECT_EQ(byte(4), payloads[i][0]);
        EXPECT_EQ(byte(5), payloads[i][1]);
        EXPECT_TRUE(Says("| 2 | " + Hexadecimal(byte(0)) + " " + Hexadecimal(byte(1)) + " | | 2 | length"));
        EXPECT_TRUE(Says("| 2 | " + Hexadecimal(byte(8)) + " " + Hexadecimal(byte(9)) + " |"));
    }
    EXPECT_TRUE(Says("length of the payload, 1 to " + Number(MaxSirfPayload) + ","));
}

} // namespace
