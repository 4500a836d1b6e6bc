// SPDX-License-Identifier: MIT
// The console program sends the same bytes as the SiRF dialogs: each value in the dialogs' tests, and each
// entry of each list, is entered in the real dialog and given to the command with --dry-run.
//
// A dialog can send something that no command does, on purpose:
// - Elevation Mask: masks below -20.0 and above 90.0 degrees, which there are not on the sky;
// - Switch to NMEA at 115200: the field has 16 bits, so the command goes through 57600 instead; its
// sentences'
//   checksums and the receiver's texts, which the command always leaves on and as they are;
// - Initialize Data Source: a start with given position and time, a chosen number of channels, snap start,
// and
//   the boxes for raw data, texts and clearing. "send sirf" sends these, as all others.
#include <cstring>
#include <map>

#include "link/link_state.h"
#include "resources/resource_ids.h"
#include "tests/unit/console/dry_run.h"
#include "tests/unit/sirf/dialogs/dialog_test.h"

namespace
{

// A control, and its key. `choices` are in the order of the list's entries.
struct KeyRow {
    int control;
    const char* key;
    std::vector<const char*> choices = {};
};
struct SettingRow {
    const char* name;
    int dialog, set;
    std::vector<KeyRow> keys;
};

const std::vector<const char*> Errors = {"1", "5", "10", "20", "40", "80", "160", "none"};
const std::vector<const char*> Prns = {"auto", "120", "121", "122", "123", "124", "125", "126", "127", "128",
                                       "129",  "130", "131", "132", "133", "134", "135", "136", "137", "138"};

const SettingRow Settings[] = {
    {"static-navigation", DIALOG_SIRF_STATIC_NAVIGATION, 1432, {{1433, "enabled"}}},
    {"elevation-mask", DIALOG_SIRF_ELEVATION_MASK, 1392, {{1393, "tracking"}, {1394, "navigation"}}},
    {"power-mask", DIALOG_SIRF_POWER_MASK, 1402, {{1403, "tracking"}, {1404, "navigation"}}},
    {"dop-mask",
     DIALOG_SIRF_DOP_MASK,
     1372,
     {{1373, "selection", {"auto", "pdop", "hdop", "gdop", "disabled"}},
      {1374, "gdop"},
      {1375, "pdop"},
      {1376, "hdop"}}},
    {"dgps-source",
     DIALOG_SIRF_DGPS_SOURCE,
     1335,
     {{1331, "source", {"none", "sbas", "external", "beacon", "user"}},
      {1332, "frequency"},
      {1333, "bit-rate"}}},
    {"dgps-mode",
     DIALOG_SIRF_DGPS_MODE,
     1382,
     {{1383, "mode", {"auto", "exclusive", "never"}}, {1384, "timeout"}}},
    {"mode-control",
     DIALOG_SIRF_MODE_CONTROL,
     1362,
     {{1363, "degraded-mode", {"direction-clock", "clock-direction", "direction", "clock", "disabled"}},
      {1364, "altitude"},
      {1365, "altitude-hold", {"auto", "always", "disabled"}},
      {1366, "altitude-source", {"last", "user"}},
      {1367, "degraded-timeout"},
      {1368, "dr-timeout"},
      {1369, "track-smoothing"}}},
    {"trickle-power",
     DIALOG_SIRF_TRICKLE_POWER,
     1512,
     {{1513, "push-to-fix"}, {1514, "duty-cycle"}, {1515, "on-time"}}},
    {"low-power",
     DIALOG_SIRF_LOW_POWER,
     1672,
     {{1673, "max-off-time"}, {1674, "max-search-time"}, {1675, "push-to-fix-period"}, {1676, "adaptive"}}},
    {"sbas",
     DIALOG_SIRF_SBAS,
     1705,
     {{1701, "prn", Prns}, {1702, "mode", {"testing", "integrity"}}, {1703, "timeout", {"default", "user"}}}},
    {"advanced-power",
     DIALOG_SIRF_ADVANCED_POWER_MANAGEMENT,
     5311,
     {{5301, "enabled"},
      {5302, "cycles"},
      {5303, "time-between-fixes"},
      {5304, "max-horizontal-error", Errors},
      {5305, "max-vertical-error", Errors},
      {5306, "max-response-time"},
      {5307, "accuracy-priority", {"none", "response-time", "horizontal-error"}},
      {5308, "duty-cycle"},
      {5309, "timing-priority", {"none", "time-between-fixes", "duty-cycle"}}}},
};

// A text that a dialog rounds, and the text of the value that it sends; "": no command sends it.
const std::map<std::pair<int, std::wstring>, const char*> Spellings = {
    {{1393, L"-200"}, ""},
    {{1393, L"900.0"}, ""},
    {{1393, L"150"}, ""},
    {{1394, L"-200"}, ""},
    {{1394, L"900"}, ""},
    {{1393, L"-5"}, "-4.9"},
    {{1393, L"000000000000000000.59"}, "0.6"},
    {{1393, L"7.54"}, "7.5"},
    {{1393, L"7.55"}, "7.6"},
    {{1393, L"1e1"}, "10"},
    {{1393, L"+750E-2"}, "7.5"},
    {{1514, L"12.34"}, "12.3"},
    {{1514, L"12.35"}, "12.4"},
    {{5308, L"7"}, "5"},
    {{5308, L"99"}, "95"},
    {{16616, L"41 Geodetic Navigation Data"}, "41"},
    {{16616, L"255 Development Data"}, "255"},
};

const DialogCase* FindCases(int dialog)
{
    for (const DialogCase& row : FieldCases())
        if (row.command == dialog) return &row;
    return nullptr;
}

const FieldCase& FieldOf(const DialogCase& row, int control)
{
    for (const FieldCase& field : row.fields)
        if (field.usual.control == control) return field;
    ADD_FAILURE() << "no field " << control;
    return row.fields[0];
}

class SirfDialogBytes : public SirfDialogTest
{
protected:
    // A text in the form for a terminal.
    static std::string Utf8(const std::wstring& text)
    {
        std::string utf8;
        for (const wchar_t c : text) {
            if (c < 0x80)
                utf8 += static_cast<char>(c);
            else if (c == L'\u2212')
                utf8 += "\xE2\x88\x92";
            else if (c == L'\u00B0')
                utf8 += "\xC2\xB0";
            else
                ADD_FAILURE() << static_cast<int>(c);
        }
        return utf8;
    }

    static std::string Spell(const KeyRow& key, const Entry& entry)
    {
        if (entry.kind == Entry::Kind::Box) return entry.number == BST_CHECKED ? "on" : "off";
        if (entry.kind == Entry::Kind::Choice) return key.choices.at(static_cast<size_t>(entry.number));
        const auto found = Spellings.find({entry.control, entry.text});
        return found == Spellings.end() ? Utf8(entry.text) : found->second;
    }

    // An acceptable entry in each control, and for each control all other acceptable entries.
    struct Values {
        std::vector<Entry> usual;
        std::vector<std::vector<Entry>> accepted;
    };
    static Values ValuesOf(HWND dialog, const SettingRow& row)
    {
        Values values;
        const DialogCase* const cases = FindCases(row.dialog);
        for (const KeyRow& key : row.keys) {
            std::vector<Entry> entries;
            for (size_t i = 0; i < HeadlessItems(dialog, key.control).size(); ++i)
                entries.push_back(Chosen(key.control, static_cast<int>(i)));
            EXPECT_EQ(entries.size(), key.choices.size()) << key.key;
            if (cases) {
                const FieldCase& field = FieldOf(*cases, key.control);
                entries.insert(entries.begin(), field.usual);
                for (const Accepted& accepted : field.accepted) entries.push_back(accepted.entry);
            }
            values.usual.push_back(entries.at(0));
            values.accepted.push_back(entries);
        }
        return values;
    }

    static std::vector<std::string> SetArguments(const SettingRow& row, const std::vector<Entry>& entries)
    {
        std::vector<std::string> arguments = {"set", row.name};
        for (size_t i = 0; i < entries.size(); ++i)
            arguments.push_back(std::string(row.keys[i].key) + '=' + Spell(row.keys[i], entries[i]));
        return arguments;
    }

    // Presses Set and returns the only frame that is sent.
    std::string Press(HWND dialog, int set)
    {
        Written();
        HeadlessClick(dialog, set);
        const std::vector<std::string> frames = Written();
        EXPECT_EQ(frames.size(), 1u);
        return frames.empty() ? "" : frames[0];
    }
};

TEST_F(SirfDialogBytes, EverySettingIsSentAlike)
{
    uint32_t compared = 0, refused = 0;
    for (const SettingRow& row : Settings)
        With(row.dialog, [&](HWND dialog) {
            const Values values = ValuesOf(dialog, row);
            for (const Entry& entry : values.usual) Enter(dialog, entry);
            for (size_t key = 0; key < row.keys.size(); ++key) {
                for (const Entry& entry : values.accepted[key]) {
                    SCOPED_TRACE(std::string(row.name) + ' ' + row.keys[key].key + '=' +
                                 Spell(row.keys[key], entry));
                    Enter(dialog, entry);
                    const std::string frame = Press(dialog, row.set);
                    std::vector<Entry> entries = values.usual;
                    entries[key] = entry;
                    const std::vector<std::string> lines = DryRun(SetArguments(row, entries));
                    if (Spell(row.keys[key], entry).empty()) {
                        EXPECT_TRUE(lines.empty());
                        ++refused;
                        continue;
                    }
                    ASSERT_EQ(lines.size(), 3u); // the polls stand around it
                    EXPECT_EQ(HexText(lines[1]), frame);
                    EXPECT_EQ(lines[0], lines[2]);
                    ++compared;
                }
                Enter(dialog, values.usual[key]);
            }
        });
    EXPECT_GE(compared, 150u);
    EXPECT_EQ(refused, 5u);
    EXPECT_TRUE(HeadlessBoxes().empty());
}

// The poll that a dialog sends when it is opened is the one before and after the command.
TEST_F(SirfDialogBytes, EverySettingIsPolledAlike)
{
    SirfRecognised.store(1);
    for (const SettingRow& row : Settings) {
        // The window polls Low Power by message 19; the command asks for it by its own poll, because other
        // receivers answer the former with other content.
        if (std::string_view(row.name) == "low-power") continue;
        SCOPED_TRACE(row.name);
        With(row.dialog, [&](HWND dialog) {
            const Values values = ValuesOf(dialog, row);
            const std::vector<std::string> lines = DryRun(SetArguments(row, values.usual));
            ASSERT_EQ(lines.size(), 3u);
            EXPECT_EQ(Written(), std::vector{HexText(lines[0])});
        });
    }
}

TEST_F(SirfDialogBytes, NothingIsLeftToChance)
{
    EXPECT_TRUE(DryRun({"set", "power-mask", "tracking=28"}).empty()); // a key is missing
    EXPECT_TRUE(DryRun({"set", "power-mask", "tracking=28", "navigation=28", "tracking=28"}).empty());
    EXPECT_TRUE(DryRun({"set", "power-mask", "tracking=28", "navigation=28", "gdop=5"}).empty());
    EXPECT_EQ(DryRun({"set", "power-mask", "navigation=30", "tracking=28"}).at(1),
              "A0 A2 00 03 8C 1C 1E 00 C6 B0 B3");
}

TEST_F(SirfDialogBytes, WhatADialogRefusesIsRefusedHereToo)
{
    uint32_t refused = 0;
    for (const SettingRow& row : Settings) {
        const DialogCase* const cases = FindCases(row.dialog);
        if (!cases) continue; // lists alone
        for (size_t key = 0; key < row.keys.size(); ++key)
            for (const Entry& entry : FieldOf(*cases, row.keys[key].control).refused) {
                if (entry.kind != Entry::Kind::Text) continue; // nothing chosen: there is no word for it
                if (entry.text.size() > 255) continue;         // longer than an edit field's text
                std::vector<std::string> arguments = {"set", row.name};
                for (size_t i = 0; i < row.keys.size(); ++i) {
                    const Entry& shown = i == key ? entry : FieldOf(*cases, row.keys[i].control).usual;
                    arguments.push_back(std::string(row.keys[i].key) + '=' + Spell(row.keys[i], shown));
                }
                EXPECT_TRUE(DryRun(arguments).empty()) << testing::PrintToString(arguments);
                ++refused;
            }
    }
    EXPECT_GE(refused, 150u);
}

TEST_F(SirfDialogBytes, RatesOfMessagesAreSentAlike)
{
    constexpr int Message = 16616, Rate = 16617;
    const DialogCase& row = *FindCases(DIALOG_SIRF_SET_MESSAGE_RATE);
    const auto number = [](const Entry& entry, const std::vector<std::wstring>& items) {
        if (entry.kind == Entry::Kind::Text) return Spell({entry.control, ""}, entry);
        return std::to_string(std::stoi(items.at(static_cast<size_t>(entry.number))));
    };
    With(row.command, [&](HWND dialog) {
        const std::vector<std::wstring> items = HeadlessItems(dialog, Message);
        std::vector<std::pair<Entry, Entry>> pairs; // message, rate
        const Entry message = Typed(Message, L"41"), rate = Typed(Rate, L"5");
        for (const Accepted& accepted : FieldOf(row, Message).accepted)
            pairs.emplace_back(accepted.entry, rate);
        for (const Accepted& accepted : FieldOf(row, Rate).accepted)
            pairs.emplace_back(message, accepted.entry);
        for (size_t i = 0; i < items.size(); ++i)
            pairs.emplace_back(Chosen(Message, static_cast<int>(i)), rate);
        for (const wchar_t* seconds : {L"0", L"1", L"2", L"5", L"10"})
            pairs.emplace_back(message, Typed(Rate, seconds));
        for (const auto& [id, seconds] : pairs) {
            Enter(dialog, id);
            Enter(dialog, seconds);
            const std::string argument = number(id, items) + '=' + number(seconds, {});
            const std::vector<std::string> lines = DryRun({"rates", argument});
            ASSERT_EQ(lines.size(), 1u) << argument;
            EXPECT_EQ(HexText(lines[0]), Press(dialog, row.set)) << argument;
        }
        EXPECT_GE(pairs.size(), 70u);
    });
    for (const Entry& entry : FieldOf(row, Message).refused)
        EXPECT_TRUE(DryRun({"rates", Utf8(entry.text) + "=5"}).empty()) << Utf8(entry.text);
    for (const Entry& entry : FieldOf(row, Rate).refused)
        EXPECT_TRUE(DryRun({"rates", "41=" + Utf8(entry.text)}).empty()) << Utf8(entry.text);
}

TEST_F(SirfDialogBytes, TheWayToNmeaIsSentAlike)
{
    constexpr int FirstRate = 1290, Baudrate = 12912, Debug = 12913, Set = 12914;
    constexpr const char* Sentences[] = {"GGA", "GLL", "GSA",   "GSV", "RMC",
                                         "VTG", "MSS", "USER8", "ZDA", "USER10"};
    With(DIALOG_SIRF_SWITCH_TO_NMEA, [&](HWND dialog) {
        EXPECT_EQ(HeadlessCheck(dialog, Debug), BST_INDETERMINATE); // the receiver's texts stay as they are
        for (const char* rate : {"1200", "2400", "4800", "9600", "19200", "38400", "57600"}) {
            Enter(dialog, Typed(Baudrate, std::wstring(rate, rate + std::strlen(rate))));
            const std::vector<std::string> lines = DryRun({"switch", "nmea", rate});
            ASSERT_EQ(lines.size(), 1u) << rate;
            EXPECT_EQ(HexText(lines[0]), Press(dialog, Set)) << rate;
        }
        // 115200 has no room in the message: from 57600 on the receiver goes there by NMEA's own command.
        Enter(dialog, Typed(Baudrate, L"57600"));
        const std::vector<std::string> steps = DryRun({"switch", "nmea", "115200"});
        ASSERT_EQ(steps.size(), 2u);
        EXPECT_EQ(HexText(steps[0]), Press(dialog, Set));
        EXPECT_EQ(steps[1], "$PSRF100,1,115200,8,1,0*05");
        Enter(dialog, Typed(Baudrate, L"4800"));
        for (const int seconds : {0, 1, 2, 5, 10, 255}) {
            std::string list;
            for (int i = 0; i < 10; ++i) {
                const int each = i % 2 ? seconds : 255 - seconds;
                Enter(dialog, Typed(FirstRate + i, std::to_wstring(each)));
                list += (i ? "," : "") + std::string(Sentences[i]) + '=' + std::to_string(each);
            }
            const std::vector<std::string> lines = DryRun({"switch", "nmea", "4800", "--rates", list});
            ASSERT_EQ(lines.size(), 1u) << list;
            EXPECT_EQ(HexText(lines[0]), Press(dialog, Set)) << list;
        }
    });
}

TEST_F(SirfDialogBytes, StartsAndTheVersionPollAreSentAlike)
{
    constexpr int Set = 12810, Channels = 1287;
    const std::pair<int, const char*> starts[] = {
        {12812, "hot"}, {12814, "warm"}, {12815, "cold"}, {12816, "factory"}};
    With(DIALOG_SIRF_INITIALIZE_DATA_SOURCE, [&](HWND dialog) {
        for (int box = 12818; box <= 12820; ++box) Enter(dialog, Ticked(box, BST_UNCHECKED));
        Enter(dialog, Typed(Channels, L"12"));
        for (const auto& [option, kind] : starts) {
            HeadlessClick(dialog, option);
            const std::vector<std::string> lines = DryRun({"restart", kind});
            ASSERT_EQ(lines.size(), 2u) << kind; // NMEA first
            EXPECT_EQ(HexText(lines[1]), Press(dialog, Set)) << kind;
        }
    });
    With(DIALOG_SIRF_POLL_SOFTWARE_VERSION, [&](HWND dialog) {
        const std::vector<std::string> lines = DryRun({"version"});
        ASSERT_EQ(lines.size(), 1u);
        EXPECT_EQ(HexText(lines[0]), Press(dialog, 1321));
    });
}

// Payloads without a command are sent by "send": the payload only, framed.
TEST_F(SirfDialogBytes, WhateverADialogSendsCanBeSent)
{
    for (const DialogCase& row : FieldCases())
        With(row.command, [&](HWND dialog) {
            for (const FieldCase& field : row.fields) Enter(dialog, field.usual);
            const std::string frame = Press(dialog, row.set);
            std::vector<std::string> arguments = {"send", "sirf"};
            constexpr size_t Head = 4, Tail = 4;
            for (const char c : frame.substr(Head, frame.size() - Head - Tail)) {
                char byte[3];
                std::snprintf(byte, sizeof byte, "%02X", static_cast<unsigned>(static_cast<uint8_t>(c)));
                arguments.emplace_back(byte);
            }
            const std::vector<std::string> lines = DryRun(arguments);
            ASSERT_EQ(lines.size(), 1u) << row.name;
            EXPECT_EQ(HexText(lines[0]), frame) << row.name;
        });
}

} // namespace
