// SPDX-License-Identifier: MIT
#include "tests/unit/docs/document.h"

#include <fstream>

#include "graph/channels.h"
#include "graph/latest_fix.h"
#include "nmea/dialogs/command_dialog.h"
#include "sirf/dialogs/command_dialog.h"

namespace
{

std::map<std::string, std::vector<Row>> ReadTables()
{
    std::map<std::string, std::vector<Row>> tables;
    std::ifstream document(PROTOCOLS_FILE);
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

// The document in one line, with single spaces.
std::string ReadText()
{
    std::ifstream document(PROTOCOLS_FILE);
    std::string text, word;
    while (document >> word) text += word + ' ';
    return text;
}

void Add(std::wstring& state, double value)
{
    state += std::to_wstring(value) + L' ';
}

} // namespace

const std::map<std::string, std::vector<Row>>& Tables()
{
    static const auto tables = ReadTables();
    return tables;
}

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

testing::AssertionResult Says(const std::string& phrase)
{
    static const std::string text = ReadText();
    if (text.find(phrase) != std::string::npos) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "not in the document: " << phrase;
}

std::string Number(int64_t number)
{
    return std::to_string(number);
}

std::string Hexadecimal(uint8_t byte)
{
    constexpr char Digits[] = "0123456789ABCDEF";
    return {Digits[byte >> 4], Digits[byte & 15]};
}

std::string Listed(const std::vector<std::string>& items)
{
    std::string list;
    for (size_t i = 0; i < items.size(); ++i)
        list += (i == 0 ? "" : i + 1 == items.size() ? " and " : ", ") + items[i];
    return list;
}

std::string Narrow(const std::wstring& text)
{
    std::string narrow;
    for (const wchar_t c : text) narrow += static_cast<char>(c);
    return narrow;
}

void DocumentTest::InDialog(uint16_t number, const std::function<void(HWND)>& act)
{
    bool acted = false;
    HeadlessUser([&] {
        acted = true;
        act(HeadlessTopDialog());
        HeadlessCommand(HeadlessTopDialog(), IDCANCEL);
    });
    OpenNumber = number;
    EXPECT_TRUE(ShowSirfDialog(number) || ShowNmeaDialog(number)) << number;
    OpenNumber = 0;
    EXPECT_TRUE(acted) << number;
}

std::wstring DocumentTest::State() const
{
    std::wstring state;
    for (uint32_t line = 0; line < TextLineCount; ++line) state += Line(line) + L'\n';
    for (const GraphChannelRecord& channel : GraphChannel) Add(state, channel.Value);
    for (const uint16_t part :
         {FixTime.wYear, FixTime.wMonth, FixTime.wDay, FixTime.wHour, FixTime.wMinute, FixTime.wSecond})
        Add(state, part);
    const FixReport& fix = LatestFix;
    for (const double value :
         {fix.LatitudeDegrees, fix.LongitudeDegrees, fix.AltitudeMslMetres, fix.AltitudeEllipsoidMetres,
          fix.GeoidSeparationMetres, fix.SpeedMetresPerSecond, fix.CourseDegrees, fix.Hdop, fix.Vdop,
          fix.HorizontalErrorMetres, fix.VerticalErrorMetres})
        Add(state, value);
    for (const int value : {fix.SatellitesInFix, static_cast<int>(fix.Mode), int{fix.HasTimeOfDay},
                            int{fix.Year}, int{fix.Month}, int{fix.Day}, fix.DatedSecondOfDay})
        Add(state, value);
    for (uint32_t i = 0; i < fix.InViewCount; ++i)
        for (const uint32_t value : {fix.InView[i].Number, fix.InView[i].ElevationDegrees,
                                     fix.InView[i].AzimuthDegrees, fix.InView[i].CarrierToNoiseDbHz})
            Add(state, value);
    if (!OpenNumber) return state;
    for (const HeadlessTemplateControl& control : FindTemplate(OpenNumber).controls) {
        if (!HeadlessHasControl(HeadlessTopDialog(), control.id)) continue;
        state += L'\n' + HeadlessText(HeadlessTopDialog(), control.id) + L' ';
        Add(state, HeadlessCheck(HeadlessTopDialog(), control.id));
        Add(state, HeadlessSelection(HeadlessTopDialog(), control.id));
    }
    return state;
}
