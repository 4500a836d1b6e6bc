// docs/protocols.md against the tables by which the program sends commands: each field's place, width, kind
// and range, each byte accounted for, each message number and name.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "sirf/command_layouts.h"
#include "sirf/message_names.h"

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
    case FieldKind::NumberList: return "number";
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
            KindName(field.kind), std::to_string(field.low) + " to " + std::to_string(field.high)};
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

} // namespace
