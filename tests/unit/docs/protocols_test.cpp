// SPDX-License-Identifier: MIT
// docs/protocols.md against the program. Commands: each field's place, width, kind and range as in the tables
// by which they are sent, each byte accounted for. Messages: a number put where the document says comes out
// as what the document says.
#include <cmath>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "graph/channels.h"
#include "graph/latest_fix.h"
#include "link/link_state.h"
#include "nmea/sentence_decoder.h"
#include "sirf/command_layouts.h"
#include "sirf/message_decoder.h"
#include "sirf/message_names.h"
#include "sirf/start_fields.h"
#include "sirf/switch_to_nmea_command.h"
#include "sky/angles.h"
#include "tests/unit/support/product_test.h"

namespace
{

using Row = std::vector<std::string>;

// Rows of the document's tables, without their headings, by the heading above them.
std::map<std::string, std::vector<Row>> ReadTables(const char* file)
{
    std::map<std::string, std::vector<Row>> tables;
    std::ifstream document(file);
    std::string heading, line;
    bool inTable = false;
    while (std::getline(document, line)) {
        if (line.starts_with("#")) heading = line.substr(line.find(' ') + 1);
        const bool isRow = line.starts_with("|");
        if (isRow && line.starts_with("|---")) inTable = true;
        if (!isRow) inTable = false;
        if (!inTable || line.starts_with("|---")) continue;
        Row cells;
        for (size_t at = 1, end; (end = line.find('|', at)) != std::string::npos; at = end + 1) {
            const size_t first = line.find_first_not_of(' ', at), last = line.find_last_not_of(' ', end - 1);
            cells.push_back(first < end ? line.substr(first, last - first + 1) : "");
        }
        tables[heading].push_back(cells);
    }
    return tables;
}

const std::map<std::string, std::vector<Row>>& Tables()
{
    static const auto tables = ReadTables(PROTOCOLS_FILE);
    return tables;
}

std::string Narrow(const wchar_t* text)
{
    std::string narrow;
    for (; *text; ++text) narrow += static_cast<char>(*text);
    return narrow;
}

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

const CommandLayout* const Layouts[] = {
    &InitializeDataSourceLayout,
    &DgpsSourceLayout,
    &ModeControlLayout,
    &DopMaskLayout,
    &DgpsModeLayout,
    &ElevationMaskLayout,
    &PowerMaskLayout,
    &StaticNavigationLayout,
    &TricklePowerLayout,
    &LowPowerLayout,
    &SbasLayout,
    &AdvancedPowerManagementLayout,
    &SetMessageRateLayout,
};

TEST(ProtocolsDocument, CommandsHaveTheProgramsFields)
{
    for (const CommandLayout* layout : Layouts) {
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
    for (const CommandLayout* layout : Layouts) {
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
    EXPECT_EQ(documented, std::size(Layouts));
}

TEST(ProtocolsDocument, ListsTheMessagesThatCanBeChosen)
{
    std::vector<std::string> expected, documented;
    for (const wchar_t* name : MessageNames) expected.push_back(Narrow(name));
    for (const Row& row : Tables().at("Message numbers"))
        documented.push_back(row.at(1).empty() ? row.at(0) : row.at(0) + " " + row.at(1));
    EXPECT_EQ(documented, expected);
}

TEST(ProtocolsDocument, SaysWhichCommandsCanBePolled)
{
    std::ifstream document(PROTOCOLS_FILE);
    const std::string text{std::istreambuf_iterator<char>(document), {}};
    std::string expected = "Read by this message are ";
    std::vector<int> polled;
    for (int command = 0; command < 256; ++command)
        if (FindPolledCommand(static_cast<uint8_t>(command))) polled.push_back(command);
    for (size_t i = 0; i < polled.size(); ++i)
        expected += (i == 0 ? "" : i + 1 == polled.size() ? " and " : ", ") + std::to_string(polled[i]);
    EXPECT_NE(text.find(expected + "."), std::string::npos) << expected;
}

// ---- Fields of messages: offset, type, scale ----------------------------------------------------------

// Of the ellipsoid, at the equator: its radius, and the radius of a meridian's curve; m.
constexpr double Equator = 6378137, Meridian = 6335439.327;
constexpr double MetresPerDegree = 111325, DegreesPerRadian = 57.29577951308232;

double ChannelOf(Channel channel)
{
    return GraphChannel[channel].Value;
}

double SecondsOfDay()
{
    return (FixTime.wHour * 60.0 + FixTime.wMinute) * 60 + FixTime.wSecond;
}

// The number after a line's colon.
double NumberOfLine(uint32_t line)
{
    wchar_t text[TextLineCapacity];
    CopyTextLine(line, text);
    const std::wstring whole = text;
    return std::stod(whole.substr(whole.find(L':') + 1));
}

// The program's result for a field; all other fields are 0, except those that it needs.
struct Observed {
    const char* name;
    int64_t raw;             // put into the field
    double (*show)();        // what comes out
    double added = 0;        // to the scaled number, on the way
    bool utcIsKnown = false; // message 41: with a day
};

const Observed Message2[] = {
    {"EcefXMetres", 6379137, [] { return ChannelOf(ChannelAltitude) + Equator; }},
    {"EcefYMetres", -6379137, [] { return -(ChannelOf(ChannelAltitude) + Equator); }},
    {"EcefZMetres", -1000,
     [] { return ChannelOf(ChannelNorthing) / MetresPerDegree / DegreesPerRadian * Meridian; }},
    {"HdopFifths2", 7, [] { return ChannelOf(ChannelHdop); }},
    {"TimeOfWeekCs", 7654300, [] { return SecondsOfDay(); }},
    {"SvsInFix", 9, [] { return ChannelOf(ChannelSvsInFix); }},
};

const Observed Message41[] = {
    {"TimeOfWeekMs", 76543000, [] { return SecondsOfDay(); }, -14},
    {"UtcYear", 2024, [] { return 1.0 * FixTime.wYear; }, 0, true},
    {"UtcMonth", 11, [] { return 1.0 * FixTime.wMonth; }, 0, true},
    {"UtcDay", 29, [] { return 1.0 * FixTime.wDay; }},
    {"UtcHour", 23, [] { return 1.0 * FixTime.wHour; }, 0, true},
    {"UtcMinute", 58, [] { return 1.0 * FixTime.wMinute; }, 0, true},
    {"UtcMilliseconds", 57000, [] { return 1.0 * FixTime.wSecond; }, 0, true},
    {"Latitude1e7Deg", -123456789, [] { return ChannelOf(ChannelNorthing) / MetresPerDegree; }},
    {"Longitude1e7Deg", -1234567890, [] { return ChannelOf(ChannelEasting) / MetresPerDegree; }},
    {"AltitudeEllipsoidCm", -123456, [] { return NumberOfLine(13); }},
    {"AltitudeMslCm", -123456, [] { return ChannelOf(ChannelAltitude); }},
    {"MapDatum", 77, [] { return NumberOfLine(17); }},
    {"SpeedCmPerS", 1234, [] { return ChannelOf(ChannelSpeed); }},
    {"CourseCentidegrees", 34567, [] { return ChannelOf(ChannelCourse); }},
    {"EhpeCm", 123456, [] { return ChannelOf(ChannelEhpe); }},
    {"EvpeCm", 123456, [] { return ChannelOf(ChannelEvpe); }},
    {"SvsInFix41", 9, [] { return 1.0 * LatestFix.SatellitesInFix; }},
    {"HdopFifths41", 7, [] { return ChannelOf(ChannelHdop); }},
};

class ProtocolsDocumentFields : public ProductTest
{
protected:
    // Each row with a scale has its observation, and shows the scaled number.
    static void Check(const char* heading, uint8_t id, uint32_t length,
                      std::span<const Observed> observations)
    {
        constexpr size_t UtcDay = 14;
        std::map<std::string, const Observed*> byName;
        for (const Observed& observed : observations) byName[observed.name] = &observed;
        size_t checked = 0;
        for (const Row& row : Tables().at(heading)) {
            ASSERT_EQ(row.size(), 6u) << row[2];
            if (row[4].empty()) continue; // bits
            ASSERT_TRUE(byName.contains(row[2])) << row[2];
            const Observed& observed = *byName[row[2]];
            ResetSirfDecoder();
            FixTime = {};
            std::vector<uint8_t> payload(length);
            payload[0] = id;
            if (observed.utcIsKnown) payload[UtcDay] = 1;
            if (row[2] == "EcefZMetres")
                payload[2] = 0x61, payload[3] = 0x52, payload[4] = 0x99; // X on the equator
            const int width = std::stoi(row[1].substr(1)) / 8, offset = std::stoi(row[0]);
            ASSERT_LE(offset + width, static_cast<int>(length)) << row[2];
            for (int i = 0; i < width; ++i)
                payload[static_cast<size_t>(offset + width - 1 - i)] =
                    static_cast<uint8_t>(observed.raw >> (8 * i));
            SirfMessageDecoder(payload.data(), length);
            const double expected = static_cast<double>(observed.raw) * std::stod(row[4]) + observed.added;
            EXPECT_NEAR(observed.show(), expected, 0.005) << heading << " " << row[2];
            ++checked;
        }
        EXPECT_EQ(checked, byName.size());
    }
};

TEST_F(ProtocolsDocumentFields, Message2)
{
    Check("Message 2", 2, sizeof NavigationRecord, Message2);
}

TEST_F(ProtocolsDocumentFields, Message41)
{
    Check("Message 41", 41, sizeof GeodeticRecord, Message41);
}

// The numbers in a cell like "7 or 8".
std::vector<uint32_t> NumbersIn(const std::string& cell)
{
    std::vector<uint32_t> numbers;
    for (size_t i = 0; i < cell.size();) {
        size_t length = 0;
        while (i + length < cell.size() && cell[i + length] >= '0' && cell[i + length] <= '9') ++length;
        if (length) numbers.push_back(static_cast<uint32_t>(std::stoul(cell.substr(i, length))));
        i += length + 1;
    }
    return numbers;
}

TEST(ProtocolsDocument, SentencesAndTheirFieldCounts)
{
    std::map<std::string, uint32_t> documented, decoded;
    for (const Row& row : Tables().at("NMEA sentences")) {
        uint32_t counts = 0;
        for (const uint32_t count : NumbersIn(row[1])) counts |= FieldCounts(count);
        documented[row[0]] = counts;
    }
    EXPECT_EQ(documented.erase("PSRFTXT") + documented.erase("other"), 2u); // any number of fields
    for (const SentenceKind& kind : SentenceKinds) decoded[kind.name] = kind.fieldCounts;
    EXPECT_EQ(documented, decoded);
    EXPECT_EQ(decoded.size(), 9u);
}

TEST(ProtocolsDocument, MessagesAndTheirShortestLengths)
{
    std::map<uint32_t, uint32_t> documented, decoded;
    for (const Row& row : Tables().at("SiRF binary messages"))
        documented[NumbersIn(row[0]).at(0)] = NumbersIn(row[2]).at(0);
    for (const SirfMessageKind& kind : SirfMessageKinds) decoded[kind.id] = kind.minimumLength;
    EXPECT_EQ(documented, decoded);
    EXPECT_EQ(decoded.size(), 12u);
}

// ---- Constants in the document's sentences ------------------------------------------------------------

// The document in one line, with single blanks.
std::string DocumentText()
{
    std::ifstream document(PROTOCOLS_FILE);
    std::string text, word;
    while (document >> word) text += word + ' ';
    return text;
}

void ExpectText(const std::string& phrase)
{
    static const std::string text = DocumentText();
    EXPECT_NE(text.find(phrase), std::string::npos) << phrase;
}

std::string Number(int64_t number)
{
    return std::to_string(number);
}

TEST(ProtocolsDocument, NamesTheRates)
{
    std::string rates = "Rates: ";
    for (int32_t i = 0; i < BaudCount; ++i)
        rates += (i == 0 ? "" : i == BaudCount - 1 ? " and " : ", ") + Number(BaudTable[i]);
    ExpectText(rates + " bits/s");
}

TEST(ProtocolsDocument, NamesTheLimitsAndFactors)
{
    ExpectText("length of the payload, 1 to " + Number(MaxSirfPayload) + ",");
    ExpectText("the entry and " + Number(SbasEntryToPrn) + ": " + Number(SbasEntryToPrn + 1) + " to " +
               Number(SbasEntryToPrn + 19) + ".");
    ExpectText("degrees of latitude times " + Number(static_cast<int64_t>(MetresPerDegree)) + " m");
}

TEST(ProtocolsDocument, DescribesTheSwitchToNmea)
{
    ExpectText("129 Switch to NMEA Protocol, " + Number(SwitchToNmeaLength) + " bytes");
    const auto mode = [](DebugMessages debug) { return Number(static_cast<int64_t>(debug)); };
    ExpectText(mode(DebugMessages::On) + " on, " + mode(DebugMessages::Off) + " off, " +
               mode(DebugMessages::Unchanged) + " as they were");
}

// PSRF101 has the same fields, in whole units except the time of week.
TEST(ProtocolsDocument, NamesTheRangesOfAStart)
{
    const char* const names[StartFieldCount] = {"X, Y, Z:",     "X, Y, Z:", "X, Y, Z:", "clock offset",
                                                "time of week", "week",     "channels"};
    const auto fields = StartFields(1);
    for (uint32_t i = 0; i < StartFieldCount; ++i) {
        const int32_t scale = fields[i].kind == FieldKind::Hundredths ? 100 : 1;
        ExpectText(std::string(names[i]) + " " + Number(fields[i].low) + " to " +
                   Number(fields[i].high * scale));
    }
}

} // namespace
