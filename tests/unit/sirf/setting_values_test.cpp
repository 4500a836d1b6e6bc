// SPDX-License-Identifier: MIT
// Values of settings, only by their rows: the value of a text, the bytes that are sent, the value that is
// read back. No window is made.
#include "sirf/setting_values.h"

#include <algorithm>
#include <cwchar>
#include <optional>

#include "tests/unit/sirf/sirf_test.h"

namespace
{

const CommandField& ElevationTracking = ElevationMaskLayout.fields[0];
const CommandField& DutyCycle = TricklePowerLayout.fields[1];
const CommandField& Altitude = ModeControlLayout.fields[1];
const CommandField& BeaconFrequency = DgpsSourceLayout.fields[1];
const CommandField& DopSelection = DopMaskLayout.fields[0];
const CommandField& ApmDutyCycle = AdvancedPowerManagementLayout.fields[7];
const CommandField& MaxOffTime = LowPowerLayout.fields[0];
const CommandField& TimeOfWeek = InitializeDataSourceLayout.fields[4];

std::optional<int64_t> Parse(const CommandField& field, const char* text, Reading reading = Reading::Exact)
{
    int64_t value = 4711;
    if (ParseValue(field, text, reading, value)) return value;
    EXPECT_EQ(value, 4711) << text;
    return std::nullopt;
}

TEST(SettingValues, ExactTextsAreValuesAsAWhole)
{
    const struct {
        const CommandField& field;
        const char* text;
        std::optional<int64_t> value;
    } rows[] = {
        {ElevationTracking, "7.5", 75},
        {ElevationTracking, "-5", -50},
        {ElevationTracking, "-20.0", -200},
        {ElevationTracking, "90", 900},
        {ElevationTracking, "-20.1", {}},
        {ElevationTracking, "90.1", {}},
        {ElevationTracking, "7.50", {}}, // more decimals than the receiver keeps
        {ElevationTracking, "7,5", {}},
        {ElevationTracking, "", {}},
        {DutyCycle, "100.0", 1000},
        {DutyCycle, "1e1", {}},
        {Altitude, "-1000", -1000},
        {Altitude, "10001", {}},
        {Altitude, "5.0", {}},
        {Altitude, "5x", {}},
        {Altitude, " +5 ", 5},
        {Altitude, "99999999999999999999", {}},
        {BeaconFrequency, "0", 0},
        {BeaconFrequency, "283500", 283500},
        {BeaconFrequency, "283499", {}},
        {ApmDutyCycle, "35", 35},
        {ApmDutyCycle, "7", {}}, // steps of five
        {ApmDutyCycle, "0", {}},
        {DopSelection, "4", 4},
        {DopSelection, "5", {}},
        {MaxOffTime, "3600000", 3600000},
        {MaxOffTime, "-1", {}},
    };
    for (const auto& row : rows) EXPECT_EQ(Parse(row.field, row.text), row.value) << row.text;
}

TEST(SettingValues, TypedTextsAreRoundedAsDialogsDo)
{
    EXPECT_EQ(Parse(ElevationTracking, "7.54", Reading::Typed), 75);
    EXPECT_EQ(Parse(ElevationTracking, "7.55", Reading::Typed), 76);
    EXPECT_EQ(Parse(ElevationTracking, "-5", Reading::Typed), -49);
    EXPECT_EQ(Parse(ElevationTracking, "900", Reading::Typed), 9000);
    EXPECT_EQ(Parse(ElevationTracking, "900.1", Reading::Typed), std::nullopt);
    EXPECT_EQ(Parse(ApmDutyCycle, "7", Reading::Typed), 7);
    EXPECT_EQ(Parse(ApmDutyCycle, "4", Reading::Typed), std::nullopt);
}

TEST(SettingValues, RangesAreThoseThatAPersonReads)
{
    EXPECT_EQ(DecimalsOf(ElevationTracking), 1u);
    EXPECT_EQ(LowestValue(ElevationTracking), -200);
    EXPECT_EQ(HighestValue(ElevationTracking), 900);
    EXPECT_EQ(DecimalsOf(Altitude), 0u);
    EXPECT_EQ(LowestValue(Altitude), -1000);
    EXPECT_EQ(StepOf(ApmDutyCycle), 5);
    EXPECT_EQ(StepOf(Altitude), 1);
    EXPECT_EQ(LowestValue(DopSelection), 0);
    EXPECT_EQ(HighestValue(DopSelection), 4);
}

TEST(SettingValues, AreWrittenAsTheyAreRead)
{
    const struct {
        const CommandField& field;
        int64_t value;
        const wchar_t* text;
    } rows[] = {
        {ElevationTracking, -50, L"-5.0"}, {ElevationTracking, 65486, L"6548.6"},
        {ElevationTracking, 0, L"0.0"},    {ElevationTracking, 75, L"7.5"},
        {Altitude, -1000, L"-1000"},       {MaxOffTime, 4294967295, L"4294967295"},
        {MaxOffTime, 3600000, L"3600000"},
    };
    for (const auto& row : rows) {
        wchar_t text[ValueTextCapacity];
        EXPECT_EQ(WriteValue(row.field, row.value, text), std::wcslen(row.text));
        EXPECT_STREQ(text, row.text);
    }
}

// Each layout: values, the command that carries them, and the same settings in the receiver's answer.
struct Exchange {
    const CommandLayout& layout;
    SettingValues values;
    const char *command, *poll, *answer;
};
const Exchange Exchanges[] = {
    {StaticNavigationLayout, {1}, "8F 01", "A8 8F", "2B 8F 01"},
    {ElevationMaskLayout, {-50, 75}, "8B FFCE 004B", "A8 8B", "2B 8B FFCE 004B"},
    {PowerMaskLayout, {28, 30}, "8C 1C 1E", "A8 8C", "2B 8C 1C 1E"},
    {DopMaskLayout, {3, 10, 9, 8}, "89 03 0A 09 08", "A8 89", "2B 89 03 0A 09 08"},
    {DgpsSourceLayout, {3, 300000, 200}, "85 03 000493E0 C8", "A8 85", "2B 85 03 000493E0 C8"},
    {DgpsModeLayout, {1, 30}, "8A 01 1E", "A8 8A", "2B 8A 01 1E"},
    {ModeControlLayout,
     {2, -300, 1, 1, 30, 15, 1},
     "88 00 00 02 00 00 FED4 01 01 00 1E 0F 01",
     "A8 88",
     "2B 88 00 00 02 00 00 FED4 01 01 00 1E 0F 01"},
    {TricklePowerLayout, {1, 205, 300}, "97 0001 00CD 0000012C", "A8 97", "2B 97 0001 00CD 0000012C"},
    {LowPowerLayout,
     {30000, 120000, 1800, 1},
     "A7 00007530 0001D4C0 00000708 0001",
     "A8 A7",
     "2B A7 00007530 0001D4C0 00000708 0001"},
    {SbasLayout, {5, 1, 1}, "AA 7C 01 09 00 00", "A8 AA", "2B AA 7C 01 09 00 00"},
    {SbasLayout, {0, 1, 0}, "AA 00 01 00 00 00", "A8 AA", "2B AA 00 01 00 00 00"},
    {InitializeDataSourceLayout,
     {-1, 2, 3, 96000, 604800, 1023, 12},
     "80 FFFFFFFF 00000002 00000003 00017700 039ADA00 03FF 0C 00",
     "A8 80",
     "2B 80 FFFFFFFF 00000002 00000003 00017700 039ADA00 03FF 0C 00"},
    {SetMessageRateLayout, {5, 41}, "A6 00 29 05 00000000", "", ""},
};

TEST(SettingValues, ArePackedIntoTheirCommand)
{
    for (const Exchange& row : Exchanges) {
        uint8_t payload[MaxCommandLength];
        std::fill(std::begin(payload), std::end(payload), uint8_t{0xEE});
        PackCommand(row.layout, row.values, payload);
        EXPECT_EQ(std::vector<uint8_t>(payload, payload + row.layout.length), Hex(row.command))
            << row.command;
    }
}

TEST(SettingValues, ArePolledByTheirCommand)
{
    for (const Exchange& row : Exchanges) {
        uint8_t poll[PollLength];
        const uint32_t length = PackPoll(row.layout, poll);
        EXPECT_EQ(std::vector<uint8_t>(poll, poll + length), Hex(row.poll)) << row.command;
    }
    uint8_t poll[PollLength];
    ASSERT_EQ(PackPoll(AdvancedPowerManagementLayout, poll), 2u);
    EXPECT_EQ(poll[0], 152);
    EXPECT_EQ(poll[1], 0);
}

TEST(SettingValues, ComeBackFromTheirAnswerWithTheirSigns)
{
    for (const Exchange& row : Exchanges) {
        if (!*row.answer) continue;
        const std::vector<uint8_t> message = Hex(row.answer);
        const uint32_t length = static_cast<uint32_t>(message.size());
        SettingValues values = row.values;
        for (size_t i = 0; i < row.layout.fields.size(); ++i) values[i] = 4711;
        ASSERT_TRUE(ReadAnswer(row.layout, message.data(), length, Signs::Kept, values)) << row.answer;
        EXPECT_EQ(values, row.values) << row.answer;
        EXPECT_FALSE(ReadAnswer(row.layout, message.data(), length - 1, Signs::Kept, values)) << row.answer;
    }
}

TEST(SettingValues, LoseTheirSignsAsDialogsShowThem)
{
    SettingValues values = {};
    const std::vector<uint8_t> message = Hex("2B 8B FFCE 004B");
    ASSERT_TRUE(ReadAnswer(ElevationMaskLayout, message.data(), 6, Signs::Dropped, values));
    EXPECT_EQ(values[0], 65486);
    EXPECT_EQ(values[1], 75);
}

// A time of more than 31 bits is not negative.
TEST(SettingValues, HaveNoSignWhereTheirRangeHasNone)
{
    SettingValues values = {};
    const std::vector<uint8_t> message = Hex("2B A7 FFFFFFFF 0001D4C0 00000708 0002");
    ASSERT_TRUE(ReadAnswer(LowPowerLayout, message.data(), 16, Signs::Kept, values));
    EXPECT_EQ(values[0], 4294967295);
    EXPECT_FALSE(AcceptsValue(MaxOffTime, values[0]));
    EXPECT_EQ(values[3], 1); // any number but 0 is on
}

TEST(SettingValues, PowerManagementComesWithTheNavigationParameters)
{
    Payload answer(19, 65);
    answer.At(1, "01").At(57, "84 00 05 00 3C 37 1E 06");
    SettingValues values = {};
    const CommandLayout& layout = AdvancedPowerManagementLayout;
    ASSERT_TRUE(ReadAnswer(layout, answer.bytes.data(), 65, Signs::Kept, values));
    EXPECT_EQ(values, (SettingValues{1, 5, 60, 3, 7, 30, 1, 20, 2}));
    EXPECT_FALSE(ReadAnswer(layout, answer.bytes.data(), 64, Signs::Kept, values));
    answer.At(1, "00"); // of a receiver without power management
    EXPECT_FALSE(ReadAnswer(layout, answer.bytes.data(), 65, Signs::Kept, values));
    const std::vector<uint8_t> parameters = Hex("2B 35 01 05 3C 00 03 07 1E 01 04 02 00");
    EXPECT_FALSE(ReadAnswer(layout, parameters.data(), 13, Signs::Kept, values));
}

TEST(SettingValues, OtherMessagesAreNoAnswer)
{
    SettingValues values = {4711};
    Payload navigation(19, 65);
    navigation.At(1, "01");
    EXPECT_FALSE(ReadAnswer(LowPowerLayout, navigation.bytes.data(), 65, Signs::Kept, values));
    const std::vector<uint8_t> other = Hex("2B 8C 1C 1E 00 00");
    EXPECT_FALSE(ReadAnswer(ElevationMaskLayout, other.data(), 6, Signs::Kept, values));
    EXPECT_FALSE(ReadAnswer(ElevationMaskLayout, other.data(), 0, Signs::Kept, values));
    EXPECT_FALSE(ReadAnswer(SetMessageRateLayout, other.data(), 6, Signs::Kept, values));
    EXPECT_EQ(values[0], 4711);
}

TEST(SettingValues, SatellitesBeyondTheListAreNoAcceptedValue)
{
    SettingValues values = {};
    for (const char* answer : {"2B AA 72 01 09 00 00", "2B AA 8B 01 09 00 00"}) { // 114 and 139
        const std::vector<uint8_t> message = Hex(answer);
        ASSERT_TRUE(ReadAnswer(SbasLayout, message.data(), 7, Signs::Kept, values));
        EXPECT_FALSE(AcceptsValue(SbasLayout.fields[0], values[0])) << answer;
    }
}

} // namespace
