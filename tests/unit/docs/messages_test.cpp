// SPDX-License-Identifier: MIT
// docs/protocols.md against the decoder of SiRF binary. Messages are made from the document's own places and
// types: a number put there must be shown, with the document's scale and unit, and no other byte may have an
// effect.
#include <bit>
#include <set>

#include "graph/channels.h"
#include "graph/latest_fix.h"
#include "link/link_state.h"
#include "resources/resource_ids.h"
#include "sirf/command_layouts.h"
#include "sirf/frame_sender.h"
#include "sirf/message_decoder.h"
#include "sirf/page_lines.h"
#include "tests/unit/docs/document.h"

namespace
{

// ---- Fields -------------------------------------------------------------------------------------------

// A field of a message: the first three cells of its row are offset, type and name. Types are u8, u16, u32,
// s16, s32 and f32.
struct Field {
    size_t offset, bytes; // of all its items
    bool isSigned;

    explicit Field(const Row& row, size_t items = 1)
        : offset(std::stoul(row.at(0))), bytes(items * BytesOf(row.at(1))), isSigned(row.at(1)[0] == 's')
    {
    }

private:
    static size_t BytesOf(const std::string& type)
    {
        for (const size_t bytes : {1u, 2u, 4u})
            if (type.find_first_of("usf") == 0 && type.substr(1) == Number(static_cast<int64_t>(8 * bytes)))
                return bytes;
        ADD_FAILURE() << "type " << type;
        return 1;
    }
};

// The row with this name.
const Row& RowOf(const char* heading, const std::string& name)
{
    for (const Row& row : Tables().at(heading))
        if (row.at(2) == name) return row;
    ADD_FAILURE() << heading << " has no " << name;
    static const Row none(6, "0");
    return none;
}

// Numbers in the upper half of an unsigned type, and negative ones, fit into no other type of the same width.
void Put(Payload& payload, const Field& field, int64_t number)
{
    const int64_t range = int64_t{1} << (8 * field.bytes), lowest = field.isSigned ? -range / 2 : 0;
    ASSERT_TRUE(number >= lowest && number < lowest + range) << number << " at " << field.offset;
    ASSERT_LE(field.offset + field.bytes, payload.bytes.size());
    for (size_t i = field.bytes; i > 0; --i, number >>= 8)
        payload.bytes[field.offset + i - 1] = static_cast<uint8_t>(number);
}

void Put(Payload& payload, const char* heading, const char* name, int64_t number)
{
    Put(payload, Field(RowOf(heading, name)), number);
}

// The content of a field has this text.
testing::AssertionResult IsDescribed(const char* heading, const char* name, const std::string& content)
{
    const std::string& documented = RowOf(heading, name).at(3);
    if (documented == content) return testing::AssertionSuccess();
    return testing::AssertionFailure() << name << " is \"" << documented << "\", not \"" << content << "\"";
}

size_t ShortestLength(uint32_t id)
{
    for (const SirfMessageKind& kind : SirfMessageKinds)
        if (kind.id == id) return kind.minimumLength;
    return 0;
}

class MessagesInTheDocument : public DocumentTest
{
protected:
    MessagesInTheDocument() { SirfRecognised.store(1); }

    // Compares the bytes with an effect with those of the fields: no byte outside them has one, and each
    // field has one. Each base is a message in which further fields count.
    void ExpectEffects(const std::vector<Payload>& bases, const std::vector<Field>& fields)
    {
        std::set<size_t> effective;
        for (const Payload& base : bases)
            for (size_t i = 1; i < base.bytes.size(); ++i) {
                Decode(base);
                const std::wstring before = State();
                Payload changed = base;
                changed.bytes[i] = static_cast<uint8_t>(~changed.bytes[i]);
                Decode(changed);
                if (State() != before) effective.insert(i);
            }
        for (const Field& field : fields) {
            const auto first = effective.lower_bound(field.offset),
                       end = effective.lower_bound(field.offset + field.bytes);
            EXPECT_NE(first, end) << "no effect at " << field.offset;
            effective.erase(first, end);
        }
        EXPECT_EQ(effective, std::set<size_t>());
    }

    static std::vector<Field> FieldsOf(const char* heading)
    {
        std::vector<Field> fields;
        for (const Row& row : Tables().at(heading)) fields.emplace_back(row);
        return fields;
    }
};

// ---- Messages 2 and 41: offset, type, scale -----------------------------------------------------------

constexpr const char *Message2 = "Message 2", *Message41 = "Message 41";

// Of the ellipsoid, at the equator: its radius, and the radius of a meridian's curve; m.
constexpr double Equator = 6378137, Meridian = 6335439.327;
constexpr double MetresPerDegree = 111325, DegreesPerRadian = 57.29577951308232;
constexpr int64_t XOnTheEquator = 6378137;
constexpr int LeapSeconds = 14, SecondsPerDay = 86400;

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
    double (*show)();        // the result
    double added = 0;        // to the scaled number
    bool utcIsKnown = false; // message 41: with a day
};

const Observed Results2[] = {
    {"EcefXMetres", -6379137, [] { return -(ChannelOf(ChannelAltitude) + Equator); }},
    {"EcefYMetres", -6379137, [] { return -(ChannelOf(ChannelAltitude) + Equator); }},
    {"EcefZMetres", -1000,
     [] { return ChannelOf(ChannelNorthing) / MetresPerDegree / DegreesPerRadian * Meridian; }},
    {"HdopFifths2", 207, [] { return ChannelOf(ChannelHdop); }},
    {"TimeOfWeekCs", 3000000000, [] { return SecondsOfDay() + 347 * SecondsPerDay; }},
    {"SvsInFix", 209, [] { return ChannelOf(ChannelSvsInFix); }},
};

const Observed Results41[] = {
    {"TimeOfWeekMs", 3000000000, [] { return SecondsOfDay() + 34 * SecondsPerDay; }, -LeapSeconds},
    {"UtcYear", 42024, [] { return 1.0 * FixTime.wYear; }, 0, true},
    {"UtcMonth", 211, [] { return 1.0 * FixTime.wMonth; }, 0, true},
    {"UtcDay", 229, [] { return 1.0 * FixTime.wDay; }},
    {"UtcHour", 223, [] { return 1.0 * FixTime.wHour; }, 0, true},
    {"UtcMinute", 158, [] { return 1.0 * FixTime.wMinute; }, 0, true},
    {"UtcMilliseconds", 57000, [] { return 1.0 * FixTime.wSecond; }, 0, true},
    {"Latitude1e7Deg", -123456789, [] { return ChannelOf(ChannelNorthing) / MetresPerDegree; }},
    {"Longitude1e7Deg", -1234567890, [] { return ChannelOf(ChannelEasting) / MetresPerDegree; }},
    {"AltitudeEllipsoidCm", -123456, [] { return NumberOfLine(SirfLineAltitudeEllipsoid); }},
    {"AltitudeMslCm", -123456, [] { return ChannelOf(ChannelAltitude); }},
    {"MapDatum", 177, [] { return NumberOfLine(SirfLineMapDatum); }},
    {"SpeedCmPerS", 41234, [] { return ChannelOf(ChannelSpeed); }},
    {"CourseCentidegrees", 34567, [] { return ChannelOf(ChannelCourse); }},
    {"EhpeCm", 3123456789, [] { return ChannelOf(ChannelEhpe); }},
    {"EvpeCm", 3123456789, [] { return ChannelOf(ChannelEvpe); }},
    {"SvsInFix41", 209, [] { return 1.0 * LatestFix.SatellitesInFix; }},
    {"HdopFifths41", 207, [] { return ChannelOf(ChannelHdop); }},
};

class NavigationInTheDocument : public MessagesInTheDocument
{
protected:
    // Each row with a scale has its result, and shows the scaled number.
    static void Check(const char* heading, uint8_t id, std::span<const Observed> results)
    {
        std::map<std::string, const Observed*> byName;
        for (const Observed& observed : results) byName[observed.name] = &observed;
        size_t checked = 0;
        for (const Row& row : Tables().at(heading)) {
            ASSERT_EQ(row.size(), 6u) << row[2];
            if (row[4].empty()) continue; // bits
            ASSERT_TRUE(byName.contains(row[2])) << row[2];
            const Observed& observed = *byName[row[2]];
            ResetSirfDecoder();
            FixTime = {};
            Payload payload(id, ShortestLength(id));
            if (observed.utcIsKnown) Put(payload, Message41, "UtcDay", 1);
            if (row[2] == "EcefZMetres") Put(payload, Message2, "EcefXMetres", XOnTheEquator);
            Put(payload, Field(row), observed.raw);
            Decode(payload);
            const double expected = static_cast<double>(observed.raw) * std::stod(row[4]) + observed.added;
            EXPECT_NEAR(observed.show(), expected, 0.005) << heading << " " << row[2];
            ++checked;
        }
        EXPECT_EQ(checked, byName.size());
    }
};

TEST_F(NavigationInTheDocument, HasTheFieldsOfMessage2)
{
    Check(Message2, 2, Results2);
    ResetSirfDecoder();
    Payload base(2, ShortestLength(2));
    Put(base, Message2, "EcefXMetres", XOnTheEquator);
    Put(base, Message2, "Mode1", 4); // satellites are shown
    ExpectEffects({base}, FieldsOf(Message2));
}

TEST_F(NavigationInTheDocument, HasTheFieldsOfMessage41)
{
    Check(Message41, 41, Results41);
    EXPECT_TRUE(IsDescribed(Message41, "UtcDay",
                            "0: UTC is not known, and the time is the time of week less " +
                                Number(LeapSeconds) + " s"));
    Payload withoutUtc(41, ShortestLength(41));
    Put(withoutUtc, Message41, "NavType", 4); // a fix, whose course may be not valid
    Payload withUtc = withoutUtc;
    Put(withUtc, Message41, "UtcDay", 1);
    ExpectEffects({withoutUtc, withUtc}, FieldsOf(Message41));
}

TEST_F(NavigationInTheDocument, HasTheBitsOfMessage2)
{
    EXPECT_TRUE(IsDescribed(Message2, "Mode1",
                            "bits 0 to 2: 0 no fix, 1 and 2 degraded, 3 2D, 4 3D, 5 and 6 least squares in 2 "
                            "and 3 dimensions, 7 dead reckoning; bit 7: corrections are used"));
    const wchar_t* const lines[] = {
        L"No Fix",           L"Degraded Kalman Filter", L"Degraded Kalman Filter", L"2D Kalman Filter",
        L"3D Kalman Filter", L"2-D Least-Squares",      L"3-D Least-Squares",      L"Dead Reckoning"};
    for (uint32_t mode = 0; mode < 256; ++mode) {
        Payload payload(2, ShortestLength(2));
        Put(payload, Message2, "EcefXMetres", XOnTheEquator);
        Put(payload, Message2, "Mode1", mode);
        Decode(payload);
        const std::wstring line = Line(SirfLineFix);
        EXPECT_TRUE(line.starts_with(std::wstring(L" Fix: ") + lines[mode & 7])) << mode;
        EXPECT_EQ(line.find(L"DGPS") != line.npos, mode >= 128) << mode;
    }
}

TEST_F(NavigationInTheDocument, HasTheBitsOfMessage41)
{
    EXPECT_TRUE(IsDescribed(Message41, "NavValid", "bit 15: course is not valid"));
    EXPECT_TRUE(
        IsDescribed(Message41, "NavType", "bits 0 to 2: fix type, 0 none; bit 12: speed is not valid"));
    for (uint32_t bit = 0; bit < 16; ++bit)
        for (const char* name : {"NavValid", "NavType"}) {
            const bool isType = name == std::string("NavType");
            SetChannelValue(ChannelSpeed, 0);
            SetChannelValue(ChannelCourse, 0);
            Payload payload(41, ShortestLength(41));
            Put(payload, Message41, "SpeedCmPerS", 1234);
            Put(payload, Message41, "CourseCentidegrees", 1234);
            Put(payload, Message41, name, 1u << bit);
            Decode(payload);
            EXPECT_EQ(ChannelOf(ChannelCourse) == 0, !isType && bit == 15) << name << bit;
            EXPECT_EQ(ChannelOf(ChannelSpeed) == 0, isType && bit == 12) << name << bit;
            EXPECT_EQ(LatestFix.Mode != FixMode::None, isType && bit <= 2) << name << bit;
        }
}

// ---- Message 4 ----------------------------------------------------------------------------------------

TEST_F(MessagesInTheDocument, HasTheFieldsOfMessage4)
{
    constexpr const char* Heading = "Message 4";
    constexpr size_t ChannelBytes = 15, Measurements = 10, Shown = 12;
    EXPECT_TRUE(Says("Each channel has " + Number(ChannelBytes) + " bytes:"));
    EXPECT_TRUE(IsDescribed(Heading, "ChannelCount", "channels; twelve are shown"));
    EXPECT_TRUE(IsDescribed(Heading, "ChannelState", "00FF: the measurements are not valid"));
    EXPECT_TRUE(IsDescribed(Heading, "ChannelCarrierToNoise",
                            Number(Measurements) + " measurements, dB-Hz each; their mean is shown"));
    EXPECT_TRUE(IsDescribed(Heading, "ChannelAzimuth", "in 1.5 degrees"));
    EXPECT_TRUE(IsDescribed(Heading, "ChannelElevation", "in 0.5 degrees"));
    const size_t first = std::stoul(RowOf(Heading, "FirstTrackedChannel").at(0));
    const Field satellite(RowOf(Heading, "ChannelSvId")), azimuth(RowOf(Heading, "ChannelAzimuth")),
        elevation(RowOf(Heading, "ChannelElevation")), state(RowOf(Heading, "ChannelState")),
        carrierToNoise(RowOf(Heading, "ChannelCarrierToNoise"), Measurements);
    EXPECT_FALSE(state.isSigned || carrierToNoise.isSigned);
    const auto inChannel = [&](Field field, size_t channel) {
        field.offset += first + ChannelBytes * channel;
        return field;
    };

    Payload base(4, ShortestLength(4));
    std::vector<Field> fields = {Field(RowOf(Heading, "ChannelCount"))};
    Put(base, fields[0], Shown);
    for (size_t i = 0; i < Shown; ++i) {
        const int64_t n = static_cast<int64_t>(i);
        Put(base, inChannel(satellite, i), 201 + n);
        Put(base, inChannel(azimuth, i), 130 + 10 * n);
        Put(base, inChannel(elevation, i), 130 + 2 * n);
        for (size_t j = 0; j < Measurements; ++j)
            base.bytes[inChannel(carrierToNoise, i).offset + j] = static_cast<uint8_t>(180 + i + (j < 5));
        for (const Field& field : {satellite, azimuth, elevation, state, carrierToNoise})
            fields.push_back(inChannel(field, i));
    }
    Put(base, inChannel(state, 11), 0x00FF);
    Decode(base);
    ASSERT_EQ(LatestFix.InViewCount, Shown);
    for (uint32_t i = 0; i < Shown; ++i) {
        const SatelliteInView& shown = LatestFix.InView[i];
        EXPECT_EQ(shown.Number, 201 + i) << i;
        EXPECT_EQ(shown.AzimuthDegrees, 195 + 15 * i) << i;
        EXPECT_EQ(shown.ElevationDegrees, 65 + i) << i;
        EXPECT_EQ(shown.CarrierToNoiseDbHz, i == 11 ? 0 : 180 + i) << i; // 180.5 and so on, without fraction
    }
    Put(base, inChannel(state, 11), 0);
    Payload single = base;
    Put(single, fields[0], 1);
    ExpectEffects({base, single}, fields);
    Put(base, fields[0], 200);
    Decode(base);
    EXPECT_EQ(LatestFix.InViewCount, Shown);
}

// ---- Messages 6, 12, 18 -------------------------------------------------------------------------------

TEST_F(MessagesInTheDocument, HasTheTextOfMessage6)
{
    InDialog(DIALOG_SIRF_POLL_SOFTWARE_VERSION, [&](HWND dialog) {
        Payload payload(6, 200);
        for (size_t i = 1; i < 200; ++i) payload.bytes[i] = static_cast<uint8_t>(i <= 26 ? 'A' + i - 1 : 'x');
        Decode(payload);
        const std::wstring text = HeadlessText(dialog, CONTROL_SOFTWARE_VERSION);
        EXPECT_TRUE(text.starts_with(L"ABC"));
        EXPECT_TRUE(Says("Text from offset 1 on, up to " + Number(static_cast<int64_t>(text.size())) +
                         " characters or a zero."));
    });
}

TEST_F(MessagesInTheDocument, HasTheRefusalThatIsNotShown)
{
    MakeMainWindow();
    std::vector<std::string> silent;
    for (int command = 0; command < 256; ++command) {
        HeadlessClearBoxes();
        Decode(Payload("0C " + Hexadecimal(static_cast<uint8_t>(command))));
        HeadlessPumpMessages();
        if (HeadlessBoxes().empty()) silent.push_back(Number(command));
        EXPECT_EQ(LastRefusedCommand.load(), command);
    }
    EXPECT_TRUE(Says("Offset 1, u8: the command that is refused. A refused poll (" + Listed(silent) +
                     ") is shown only if the user has pressed Get."));
    HeadlessClearBoxes();
    PendingPollId.store(143);
    Decode(Payload("0C A8"));
    HeadlessPumpMessages();
    EXPECT_EQ(HeadlessBoxes().size(), 1u);
}

TEST_F(MessagesInTheDocument, HasTheStatesOfMessage18)
{
    EXPECT_TRUE(Says("Offset 1, u8: 0 the radio goes off, else on."));
    InDialog(DIALOG_SIRF_TRICKLE_POWER, [&](HWND dialog) {
        HeadlessSetTick(1000);
        Decode(Payload("12 00"));
        HeadlessSetTick(1500);
        Decode(Payload("12 02"));
        EXPECT_EQ(HeadlessText(dialog, CONTROL_SIRF_OFF_TIME), L"500");
        HeadlessSetTick(1700);
        Decode(Payload("12 00"));
        EXPECT_EQ(HeadlessText(dialog, CONTROL_SIRF_ON_TIME), L"200");
    });
}

// ---- Message 19 ---------------------------------------------------------------------------------------

TEST_F(MessagesInTheDocument, HasTheFieldsOfMessage19)
{
    constexpr const char* Heading = "Message 19";
    constexpr uint8_t WithPowerManagement = 1;
    EXPECT_TRUE(Says("If offset 1 is " + Number(WithPowerManagement) + ", also:"));
    const Payload base(19, ShortestLength(19));
    Payload full = base;
    full.bytes[1] = WithPowerManagement;
    InDialog(DIALOG_SIRF_LOW_POWER, [&](HWND dialog) {
        ExpectEffects({full},
                      {Field(RowOf(Heading, "MaxSearchTimeMs")), Field(RowOf(Heading, "MaxOffTimeMs"))});
        Payload payload = base;
        Put(payload, Heading, "MaxSearchTimeMs", 0xFEDCBA98);
        Put(payload, Heading, "MaxOffTimeMs", 3000000000);
        Decode(payload);
        EXPECT_EQ(HeadlessText(dialog, CONTROL_LOW_POWER_MAX_SEARCH_TIME), L"4275878552");
        EXPECT_EQ(HeadlessText(dialog, CONTROL_LOW_POWER_MAX_OFF_TIME), L"3000000000");
    });
    EXPECT_TRUE(IsDescribed(Heading, "Enabled", "bit 7: on; bits 0 to 4: duty cycle, 5 %"));
    EXPECT_TRUE(IsDescribed(Heading, "MaxErrors",
                            "high half horizontal, low half vertical: entries of the dialog's lists"));
    EXPECT_TRUE(IsDescribed(Heading, "Priorities", "bits 2 and 3 accuracy, bits 0 and 1 timing: entries"));
    InDialog(DIALOG_SIRF_ADVANCED_POWER_MANAGEMENT, [&](HWND dialog) {
        std::vector<Field> fields;
        for (const char* name :
             {"Enabled", "Cycles", "TimeBetweenFixes", "MaxErrors", "MaxResponseTime", "Priorities"})
            fields.emplace_back(RowOf(Heading, name));
        Payload hidden = full;
        Put(hidden, Heading, "Cycles", 9);
        hidden.bytes[1] = static_cast<uint8_t>(~WithPowerManagement);
        EXPECT_FALSE(Field(RowOf(Heading, "MaxErrors")).isSigned);
        std::vector<Field> all = fields;
        all.emplace_back(Row{"1", "u8"});
        ExpectEffects({full, hidden}, all);
        EXPECT_EQ(Tables().at(Heading).size(), fields.size() + 2);
        Payload payload = full;
        Put(payload, Heading, "Enabled", 0x80 | 10);
        Put(payload, Heading, "Cycles", 201);
        Put(payload, Heading, "TimeBetweenFixes", 202);
        Put(payload, Heading, "MaxErrors", 0x37);
        Put(payload, Heading, "MaxResponseTime", 203);
        Put(payload, Heading, "Priorities", 0x80 | 2 << 2 | 1);
        Decode(payload);
        EXPECT_EQ(HeadlessCheck(dialog, CONTROL_APM_ENABLED), BST_CHECKED);
        EXPECT_EQ(HeadlessText(dialog, CONTROL_APM_DUTY_CYCLE), L"50");
        EXPECT_EQ(HeadlessText(dialog, CONTROL_APM_CYCLES), L"201");
        EXPECT_EQ(HeadlessText(dialog, CONTROL_APM_TIME_BETWEEN_FIXES), L"202");
        EXPECT_EQ(HeadlessSelection(dialog, CONTROL_APM_MAX_HORIZONTAL_ERROR), 3);
        EXPECT_EQ(HeadlessSelection(dialog, CONTROL_APM_MAX_VERTICAL_ERROR), 7);
        EXPECT_EQ(HeadlessText(dialog, CONTROL_APM_MAX_RESPONSE_TIME), L"203");
        EXPECT_EQ(HeadlessSelection(dialog, CONTROL_APM_ACCURACY_PRIORITY), 2);
        EXPECT_EQ(HeadlessSelection(dialog, CONTROL_APM_TIMING_PRIORITY), 1);
        Put(payload, Heading, "Enabled", 0x7F);
        Decode(payload);
        EXPECT_EQ(HeadlessCheck(dialog, CONTROL_APM_ENABLED), BST_UNCHECKED);
        EXPECT_EQ(HeadlessText(dialog, CONTROL_APM_DUTY_CYCLE), L"155"); // 31 times 5
    });
}

// ---- Messages 27 and 29 -------------------------------------------------------------------------------

TEST_F(MessagesInTheDocument, HasTheFieldsOfMessage27)
{
    constexpr const char* Heading = "Message 27";
    constexpr size_t Satellites = 12, SatelliteBytes = 3;
    EXPECT_TRUE(IsDescribed(Heading, "Source", "source of the corrections, as in command 133"));
    EXPECT_TRUE(IsDescribed(Heading, "Ages",
                            "age, s, of " + Number(Satellites) + " satellites; not with an internal beacon"));
    EXPECT_TRUE(IsDescribed(Heading, "FirstSatellite",
                            Number(Satellites) + " times " + Number(SatelliteBytes) +
                                " bytes: satellite, u8; correction, s16, 0.01 m, shown in whole metres"));
    const Field source(RowOf(Heading, "Source")), ages(RowOf(Heading, "Ages"), Satellites);
    EXPECT_FALSE(source.isSigned || ages.isSigned);
    const size_t first = std::stoul(RowOf(Heading, "FirstSatellite").at(0));
    Payload base(27, ShortestLength(27));
    std::wstring svs = L"Sv: ", corrections = L"Cor:", agesText = L"Age:";
    std::vector<Field> fields = {source, ages};
    Put(base, source, 1);
    for (size_t i = 0; i < Satellites; ++i) {
        Field satellite(Row{Number(static_cast<int64_t>(first + SatelliteBytes * i)), "u8"});
        Field correction(Row{Number(static_cast<int64_t>(satellite.offset + 1)), "s16"});
        const int metres = static_cast<int>(i) * 27 - 100; // a half is rounded up
        Put(base, satellite, 200 + static_cast<int64_t>(i));
        Put(base, correction, metres * 100 - 50);
        base.bytes[ages.offset + i] = static_cast<uint8_t>(200 + i);
        svs += L" " + std::to_wstring(200 + i);
        corrections += L" " + std::to_wstring(metres);
        agesText += L" " + std::to_wstring(200 + i);
        fields.push_back(satellite);
        fields.push_back(correction);
    }
    InDialog(DIALOG_SIRF_DGPS_SOURCE, [&](HWND dialog) {
        Decode(base);
        EXPECT_EQ(HeadlessText(dialog, CONTROL_DGPS_STATUS_SVS), svs);
        EXPECT_EQ(HeadlessText(dialog, CONTROL_DGPS_STATUS_CORRECTIONS), corrections + L" m");
        EXPECT_EQ(HeadlessText(dialog, CONTROL_DGPS_STATUS_AGES), agesText + L" s");
        ExpectEffects({base}, fields);
        for (size_t i = 0; i < DgpsSourceNames.size(); ++i) {
            Put(base, source, static_cast<int64_t>(i));
            Decode(base);
            EXPECT_EQ(HeadlessText(dialog, CONTROL_DGPS_STATUS_SOURCE),
                      std::wstring(L"DGPS Source: ") + DgpsSourceNames[i]);
            EXPECT_EQ(HeadlessText(dialog, CONTROL_DGPS_STATUS_AGES).empty(), i == InternalBeacon) << i;
        }
    });
}

TEST_F(MessagesInTheDocument, HasTheFieldsOfMessage29)
{
    constexpr const char* Heading = "Message 29";
    EXPECT_TRUE(IsDescribed(Heading, "Source", "source of the corrections, as in command 133"));
    EXPECT_FALSE(Field(RowOf(Heading, "Source")).isSigned);
    Payload base(29, ShortestLength(29));
    Put(base, Heading, "SvId", 65244);
    Put(base, Heading, "Source", 4);
    Put(base, Heading, "CorrectionMetres", std::bit_cast<uint32_t>(-56.0f));
    Put(base, Heading, "AgeSeconds", std::bit_cast<uint32_t>(78.0f));
    EXPECT_EQ(RowOf(Heading, "CorrectionMetres")[1] + RowOf(Heading, "AgeSeconds")[1], "f32f32");
    EXPECT_TRUE(IsDescribed(Heading, "CorrectionMetres", "m"));
    EXPECT_TRUE(IsDescribed(Heading, "AgeSeconds", "s"));
    InDialog(DIALOG_SIRF_DGPS_SOURCE, [&](HWND dialog) {
        Decode(base);
        EXPECT_EQ(HeadlessText(dialog, CONTROL_DGPS_DATA_SOURCE),
                  std::wstring(L"DGPS Source: ") + DgpsSourceNames[4]);
        EXPECT_EQ(HeadlessText(dialog, CONTROL_DGPS_DATA_SVS), L"Sv:  65244");
        EXPECT_EQ(HeadlessText(dialog, CONTROL_DGPS_DATA_CORRECTIONS), L"Cor: -56");
        EXPECT_EQ(HeadlessText(dialog, CONTROL_DGPS_DATA_AGES), L"Age: 78");

        // "One satellite; they are collected until the next message 41": it begins new lines.
        const auto shown = [&](const Payload& payload) {
            Decode(Payload(41, ShortestLength(41)));
            Decode(payload);
            std::wstring texts;
            for (int line = CONTROL_DGPS_DATA_SOURCE; line <= CONTROL_DGPS_DATA_AGES; ++line)
                texts += HeadlessText(dialog, line) + L'\n';
            return texts;
        };
        std::set<size_t> effective, documented;
        const std::wstring before = shown(base);
        for (size_t i = 1; i < base.bytes.size(); ++i) {
            Payload changed = base;
            changed.bytes[i] ^= 0x7E;
            if (shown(changed) != before) effective.insert(i);
        }
        for (const Field& field : FieldsOf(Heading)) {
            EXPECT_TRUE(effective.contains(field.offset)) << field.offset;
            for (size_t i = 0; i < field.bytes; ++i) effective.erase(field.offset + i);
        }
        EXPECT_EQ(effective, std::set<size_t>());
    });
}

// ---- All messages -------------------------------------------------------------------------------------

TEST_F(MessagesInTheDocument, HaveTheirNamesAndShortestLengths)
{
    std::map<uint32_t, size_t> documented, decoded;
    std::map<std::string, std::string> names;
    for (const Row& row : Tables().at("Message numbers")) names[row.at(0)] = row.at(1);
    for (const Row& row : Tables().at("SiRF binary messages")) {
        documented[NumbersIn(row.at(0)).at(0)] = NumbersIn(row.at(2)).at(0);
        EXPECT_EQ(row.at(1), names[row.at(0)]);
    }
    for (const SirfMessageKind& kind : SirfMessageKinds) decoded[kind.id] = kind.minimumLength;
    EXPECT_EQ(documented, decoded);
    EXPECT_EQ(decoded.size(), 12u);
}

TEST_F(MessagesInTheDocument, AreListedOrNot)
{
    std::vector<std::string> unlisted;
    InDialog(DIALOG_SIRF_SET_MESSAGE_RATE, [&](HWND) {
        for (int id = 0; id < 256; ++id) {
            if (id == WrapId) continue;
            const std::wstring before = State();
            Decode(Payload(static_cast<uint8_t>(id), 1));
            if (State() == before) unlisted.push_back(Number(id));
        }
    });
    EXPECT_TRUE(Says("Any other message is counted, and listed by Set Message Rate; not listed there are " +
                     Listed(unlisted) + "."));
}

TEST_F(MessagesInTheDocument, AreKeptWithTheirSizes)
{
    EXPECT_TRUE(Says("225 and 255 are kept (" + Number(sizeof InternalMessageText) + " and " +
                     Number(sizeof DevelopmentText) + " bytes)"));
}

// Feeds a frame in two halves with some time between; true if the rate of the line has been measured.
TEST_F(MessagesInTheDocument, MeasureTheRateAtOneLength)
{
    std::vector<std::string> measured;
    for (size_t length = 2; length <= MaxSirfPayload; ++length) {
        EffectiveBaud.store(0);
        const std::string frame = Frame(Payload(200, length));
        HeadlessSetTick(1000);
        Feed(frame.substr(0, 5));
        HeadlessSetTick(1100);
        Feed(frame.substr(5));
        if (EffectiveBaud.load() != 0) measured.push_back(Number(static_cast<int64_t>(length)));
    }
    EXPECT_TRUE(Says("and on SiRF binary messages of " + Listed(measured) + " bytes."));
}

} // namespace
