// SPDX-License-Identifier: MIT
// docs/protocols.md against the decoder of NMEA sentences: a change of a documented field has an effect, a
// change of another field has none.
#include <set>

#include "graph/channels.h"
#include "graph/latest_fix.h"
#include "link/link_state.h"
#include "nmea/page_lines.h"
#include "nmea/sentence_decoder.h"
#include "resources/resource_ids.h"
#include "sky/angles.h"
#include "tests/unit/docs/document.h"

namespace
{

class SentencesInTheDocument : public DocumentTest
{
protected:
    SentencesInTheDocument() { RecogniseNmea(); }

    using Fields = std::vector<std::string>; // field 0 is the name

    static void Receive(const Fields& fields)
    {
        std::string body = fields[0];
        for (size_t i = 1; i < fields.size(); ++i) body += ',' + fields[i];
        FeedSentence(body);
    }

    // The effects of a sentence. They may appear in a later sentence only.
    std::wstring Effects(const Fields& fields) const
    {
        // Satellites 9 to 12, which a message of the group shows or not.
        FeedSentence("GPGSV,3,3,12,21,31,121,41,22,32,122,42,23,33,123,43,24,34,124,44");
        Receive(fields);
        const std::wstring state = State();
        FeedSentence("GPGGA,000000,0000.0000,N,00000.0000,E,1,4,1.0,1,M,1,M,,");
        return state + State();
    }

    // Another content of the same kind.
    static std::string Changed(std::string field)
    {
        if (field.empty()) return "7";
        for (char& c : field) {
            if (c >= '0' && c <= '8')
                ++c;
            else if (c == 'N' || c == 'E')
                c = c == 'N' ? 'S' : 'W';
            else if (c >= 'A' && c <= 'Z')
                c = 'X';
        }
        return field;
    }
};

TEST_F(SentencesInTheDocument, HaveTheFieldsThatAreUsed)
{
    const Fields sentences[] = {
        {"GPGGA", "010203", "1122.3344", "N", "03344.5566", "E", "2", "5", "1.5", "100", "M", "10", "M", "3",
         "0"},
        {"GPGLL", "1122.3344", "N", "03344.5566", "E", "010203", "A", "A"},
        {"GPGSA", "A", "2", "1", "2", "3", "4", "5", "6", "7", "8", "1", "2", "3", "4", "1.5", "1.6", "1.7"},
        {"GPGSV", "2",  "2", "8",  "1",   "11", "111", "21", "2",   "12",
         "112",   "22", "3", "13", "113", "23", "4",   "14", "114", "24"},
        {"GPRMC", "010203", "A", "1122.3344", "N", "03344.5566", "E", "12.3", "123.4", "010203", "1.2", "E",
         "A"},
        {"GPVTG", "123.4", "T", "120.0", "M", "12.3", "N", "22.8", "K", "A"},
        {"GPZDA", "010203", "04", "01", "2006", "00", "00"},
    };
    std::set<std::string> decoded;
    for (const SentenceKind& kind : SentenceKinds)
        if (kind.decode) decoded.insert(kind.name);
    for (const Fields& sentence : sentences) {
        SCOPED_TRACE(sentence[0]);
        EXPECT_EQ(decoded.erase(sentence[0]), 1u);
        std::set<uint32_t> used, documented;
        for (const Row& row : Tables().at(sentence[0]))
            for (const uint32_t field : NumbersIn(row.at(0))) EXPECT_TRUE(documented.insert(field).second);
        for (size_t i = 1; i < sentence.size(); ++i) {
            Fields changed = sentence;
            changed[i] = Changed(changed[i]);
            Effects(sentence); // so that the same values are there before both
            const std::wstring before = Effects(sentence);
            if (Effects(changed) != before) used.insert(static_cast<uint32_t>(i));
        }
        EXPECT_EQ(used, documented);
    }
    EXPECT_EQ(decoded, std::set<std::string>());
}

TEST_F(SentencesInTheDocument, HaveTheirFieldCounts)
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

TEST_F(SentencesInTheDocument, HaveTheNamesOfTheReceiversText)
{
    InDialog(DIALOG_NMEA_NAVIGATION_INITIALIZATION, [&](HWND dialog) {
        std::set<int> filled;
        for (const Row& row : Tables().at("The receiver's own text")) {
            const std::string name = row.at(0).substr(1, row.at(0).size() - 2); // without its quotes
            std::map<int, std::wstring> before;
            for (int field = CONTROL_NAVINIT_ECEF_X; field <= CONTROL_NAVINIT_CHANNELS; ++field)
                before[field] = HeadlessText(dialog, field);
            NmeaReportedBaud.store(0);
            FeedSentence("PSRFTXT," + name + " 101 102 103");
            std::set<int> byThis;
            for (const auto& [field, text] : before)
                if (HeadlessText(dialog, field) != text) byThis.insert(field);
            if (NmeaReportedBaud.load() != 0) byThis.insert(CONTROL_TO_SIRF_BAUDRATE);
            EXPECT_FALSE(byThis.empty()) << name;
            for (const int field : byThis) EXPECT_TRUE(filled.insert(field).second) << name;
        }
        EXPECT_EQ(filled.size(), 8u); // the seven start values and the rate
    });
}

TEST_F(SentencesInTheDocument, HaveTheFixQualities)
{
    const std::map<int, std::wstring> lines = {{0, L" Fix: -"},
                                               {1, L" Fix: 5 SVs  "},
                                               {2, L" Fix: 5 SVs DGPS Age 3 s"},
                                               {6, L" Fix: Dead Reckoning"}};
    EXPECT_TRUE(
        Says("fix quality: 0 none, 1 fix, 2 with corrections, 6 dead reckoning; others show nothing"));
    for (int quality = 0; quality < 10; ++quality) {
        FeedSentence("GPGGA,010203,1122.3344,N,03344.5566,E," + Number(quality) + ",5,1.5,100,M,10,M,3,0");
        const std::wstring line = Line(NmeaLineFix);
        if (lines.contains(quality))
            EXPECT_TRUE(line.starts_with(lines.at(quality))) << quality;
        else
            EXPECT_EQ(line.find_first_not_of(L' '), line.npos) << quality;
    }
}

TEST_F(SentencesInTheDocument, HaveTheirFactors)
{
    EXPECT_TRUE(
        Says("A knot is 0.5147777777777778 m/s on the page and the chart; in tracks it is 1852/3600 m/s"));
    FeedSentence("GPVTG,,T,,M,1000,N,,K");
    EXPECT_NEAR(GraphChannel[ChannelSpeed].Value, 514.7777777777778, 1e-4);
    EXPECT_NEAR(LatestFix.SpeedMetresPerSecond, 1852 / 3.6, 1e-9);
    EXPECT_TRUE(Says("degrees of latitude times " + Number(static_cast<int64_t>(MetresPerDegree)) + " m"));
    FeedSentence("GPGLL,1000.0000,N,02000.0000,E,000000,A");
    EXPECT_EQ(GraphChannel[ChannelNorthing].Value, 10 * 111325.0);
}

TEST_F(SentencesInTheDocument, HaveAtMostTwentyFields)
{
    EXPECT_TRUE(Says("Up to 20 fields; field 0 is the name. The text after the twentieth comma is ignored."));
    FeedSentence("GPGSV,1,1,4,1,11,111,21,2,12,112,22,3,13,113,23,4,14,114,24,5,15,115,25"); // 24 fields
    EXPECT_EQ(LatestFix.InViewCount, 4u);
}

TEST_F(SentencesInTheDocument, HaveTheirCharacters)
{
    EXPECT_TRUE(Says("The body is printable ASCII, 20 to 7E hexadecimal; anything else drops the sentence"));
    for (int c = 0; c < 256; ++c) {
        if (c == '*' || c == '\r') continue; // the end of the body
        const uint32_t before = NmeaMessageCount.load();
        FeedSentence("PSRFTXT,a" + std::string(1, static_cast<char>(c)) + "b");
        EXPECT_EQ(NmeaMessageCount.load() - before, c >= 0x20 && c <= 0x7E ? 1u : 0u) << c;
    }
}

TEST_F(SentencesInTheDocument, MeasureTheRateFromALengthOn)
{
    size_t longestUnmeasured = 0;
    for (size_t length = 10; length < 200; ++length) {
        EffectiveBaud.store(0);
        const std::string sentence = Sentence("PSRFTXT," + std::string(length - 8, 'x'));
        HeadlessSetTick(1000);
        Feed(sentence.substr(0, 5));
        HeadlessSetTick(1100);
        Feed(sentence.substr(5));
        if (EffectiveBaud.load() == 0) longestUnmeasured = length;
    }
    EXPECT_TRUE(Says("on NMEA sentences of more than " + Number(static_cast<int64_t>(longestUnmeasured)) +
                     " characters"));
}

} // namespace
