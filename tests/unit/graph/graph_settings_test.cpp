// SPDX-License-Identifier: MIT
#include "graph/graph_settings.h"

#include "tests/unit/graph/support/chart_fixture.h"

namespace
{

class GraphSettingsTest : public ProductTest
{
protected:
    // As the program's start does, on a screen of that height.
    static void Load(uint16_t height = 268)
    {
        GraphHeight.store(height);
        LoadGraphSettings();
    }
    static std::vector<int> Bands()
    {
        std::vector<int> bands;
        for (const GraphChannelRecord& channel : GraphChannel) {
            bands.push_back(channel.PixelMin.load());
            bands.push_back(channel.PixelMax.load());
        }
        return bands;
    }
};

using Bands = std::vector<int>;

TEST_F(GraphSettingsTest, TimeScales)
{
    const TimeScaleRow expected[] = {{L"1 sec/pixel", 1, 10, 60},   {L" 5 sec/pixel", 5, 12, 60},
                                     {L"20 sec/pixel", 20, 15, 60}, {L"1 min/pixel", 60, 10, 60},
                                     {L"3 min/pixel", 180, 10, 60}, {L"6 min/pixel", 360, 10, 60}};
    for (uint32_t i = 0; i < TimeScaleCount; ++i) {
        EXPECT_STREQ(TimeScale[i].Label, expected[i].Label);
        EXPECT_EQ(TimeScale[i].SecondsPerColumn, expected[i].SecondsPerColumn);
        EXPECT_EQ(TimeScale[i].MinorGrid, expected[i].MinorGrid);
        EXPECT_EQ(TimeScale[i].MajorGrid, expected[i].MajorGrid);
    }
}

TEST_F(GraphSettingsTest, FreshDeviceKeepsTheDefaults)
{
    struct Row {
        const wchar_t* name;
        float zero, min, max;
        COLORREF color;
    };
    constexpr Row Rows[] = {
        {L"SVsInFix", 0, 0, 12, 0xFFFF00},       {L"HDOP", 0, 0, 10, 0xC0C000},
        {L"EHPE", 0, 0, 20, 0xFF00FF},           {L"Northing", 6592520, -40, 40, 0xC000C0},
        {L"Easting", 723400, -40, 40, 0xFF0000}, {L"VDOP", 0, 0, 10, 0xC00000},
        {L"EVPE", 0, 0, 25, 0x00FF00},           {L"Altitude", 70, -50, 50, 0x00C000},
        {L"Speed", 0, 0, 2, 0x0000FF},           {L"Course", 0, 0, 360, 0x0000C0},
    };
    Load();
    for (uint32_t i = 0; i < ChannelCount; ++i) {
        EXPECT_STREQ(GraphChannel[i].Name, Rows[i].name);
        EXPECT_EQ(GraphChannel[i].ValueZero.load(), Rows[i].zero);
        EXPECT_EQ(GraphChannel[i].ValueMin.load(), Rows[i].min);
        EXPECT_EQ(GraphChannel[i].ValueMax.load(), Rows[i].max);
        EXPECT_EQ(GraphChannel[i].Color.load(), Rows[i].color);
        EXPECT_EQ(GraphChannel[i].Visible.load(), 1);
    }
    EXPECT_EQ(Bands(), (::Bands{255, 267, 235, 255, 215, 235, 175, 215, 135, 175,
                                115, 135, 90,  115, 40,  90,  20,  40,  0,   20}));
    EXPECT_EQ(GraphLines.load(), 1);
    EXPECT_EQ(TimeScaleIdx.load(), 0);
}

TEST_F(GraphSettingsTest, BandsFitSmallScreens)
{
    const ::Bands smallest = {168, 180, 158, 168, 148, 158, 108, 148, 68, 108,
                              58,  68,  48,  58,  22,  48,  12,  22,  0,  12};
    Load(180);
    EXPECT_EQ(Bands(), smallest);
    ResetChannels();
    Load(181); // the ceilings above the screen end at its height
    EXPECT_EQ(Bands(), (::Bands{181, 181, 178, 181, 168, 178, 128, 168, 88, 128,
                                78,  88,  68,  78,  18,  68,  9,   18,  0,  9}));
    ResetChannels();
    Load(186);
    EXPECT_EQ(Bands(), (::Bands{186, 186, 178, 186, 168, 178, 128, 168, 88, 128,
                                78,  88,  68,  78,  18,  68,  9,   18,  0,  9}));
    ResetChannels();
    Load(187);
    EXPECT_EQ(Bands(), (::Bands{187, 187, 187, 187, 187, 187, 175, 187, 135, 175,
                                115, 135, 90,  115, 40,  90,  20,  40,  0,   20}));
    ResetChannels();
    Load(0);
    EXPECT_EQ(Bands(), ::Bands(20, 0));
}

TEST_F(GraphSettingsTest, StoredSettingsReplaceTheDefaults)
{
    StoreSetting(L"SVsInFixValueZero", 3);
    StoreSetting(L"HDOPValueMin", -40); // FFFFFFD8
    StoreSetting(L"HDOPValueMax", 250);
    StoreSetting(L"SpeedPixelMin", 7);
    StoreSetting(L"SpeedPixelMax", 0x10009); // low 16 bits
    StoreSetting(L"AltitudeColor", 0x123456);
    StoreSetting(L"CourseUse", 0);
    StoreSetting(L"EVPEUse", 5);
    StoreSetting(L"Lines", 0);
    StoreSetting(L"TimeScaleIdx", 4);
    Load();
    EXPECT_EQ(GraphChannel[0].ValueZero.load(), 3);
    EXPECT_EQ(GraphChannel[1].ValueMin.load(), -40);
    EXPECT_EQ(GraphChannel[1].ValueMax.load(), 250);
    EXPECT_EQ(GraphChannel[1].ValueZero.load(), 0);
    EXPECT_EQ(GraphChannel[8].PixelMin.load(), 7);
    EXPECT_EQ(GraphChannel[8].PixelMax.load(), 9);
    EXPECT_EQ(GraphChannel[7].Color.load(), 0x123456u);
    EXPECT_EQ(GraphChannel[9].Visible.load(), 0);
    EXPECT_EQ(GraphChannel[6].Visible.load(), 5);
    EXPECT_EQ(GraphLines.load(), 0);
    EXPECT_EQ(TimeScaleIdx.load(), 4);
}

TEST_F(GraphSettingsTest, MarksOfAbsenceKeepTheDefaults)
{
    for (const wchar_t* name : {L"HDOPValueZero", L"HDOPValueMin", L"HDOPValueMax"})
        StoreSetting(name, 2147483647);
    for (const wchar_t* name :
         {L"HDOPPixelMin", L"HDOPPixelMax", L"HDOPColor", L"HDOPUse", L"Lines", L"TimeScaleIdx"})
        StoreSetting(name, -1);
    Load();
    const GraphChannelRecord& hdop = GraphChannel[1];
    EXPECT_EQ(hdop.ValueZero.load(), 0);
    EXPECT_EQ(hdop.ValueMin.load(), 0);
    EXPECT_EQ(hdop.ValueMax.load(), 10);
    EXPECT_EQ(hdop.PixelMin.load(), 235);
    EXPECT_EQ(hdop.PixelMax.load(), 255);
    EXPECT_EQ(hdop.Color.load(), 0xC0C000u);
    EXPECT_EQ(hdop.Visible.load(), 1);
    EXPECT_EQ(GraphLines.load(), 1);
    EXPECT_EQ(TimeScaleIdx.load(), 0);
}

TEST_F(GraphSettingsTest, MinusOneIsAValueOfAChannel)
{
    StoreSetting(L"HDOPValueMin", -1);
    Load();
    EXPECT_EQ(GraphChannel[1].ValueMin.load(), -1);
}

TEST_F(GraphSettingsTest, BandsEndAtTheScreensHeight)
{
    StoreSetting(L"HDOPPixelMin", 300);
    StoreSetting(L"HDOPPixelMax", 65535);
    Load(200);
    EXPECT_EQ(GraphChannel[1].PixelMin.load(), 200);
    EXPECT_EQ(GraphChannel[1].PixelMax.load(), 200);
}

TEST_F(GraphSettingsTest, TimeScaleOutOfItsTableStaysAsStoredAndTheFirstIsUsed)
{
    for (const int32_t index : {6, -2, 2147483647, INT32_MIN}) {
        StoreSetting(L"TimeScaleIdx", index);
        Load();
        EXPECT_EQ(TimeScaleIdx.load(), index);
        EXPECT_EQ(&SelectedTimeScale(), &TimeScale[0]);
    }
    TimeScaleIdx.store(5);
    EXPECT_EQ(&SelectedTimeScale(), &TimeScale[5]);
}

TEST_F(GraphSettingsTest, EverySettingIsSaved)
{
    Load();
    SaveGraphSettings();
    EXPECT_EQ(Setting(L"SVsInFixValueZero"), 0);
    EXPECT_EQ(Setting(L"SVsInFixValueMin"), 0);
    EXPECT_EQ(Setting(L"SVsInFixValueMax"), 12);
    EXPECT_EQ(Setting(L"SVsInFixPixelMin"), 255);
    EXPECT_EQ(Setting(L"SVsInFixPixelMax"), 267);
    EXPECT_EQ(Setting(L"SVsInFixColor"), 0xFFFF00);
    EXPECT_EQ(Setting(L"SVsInFixUse"), 1);
    EXPECT_EQ(Setting(L"NorthingValueZero"), 6592520);
    EXPECT_EQ(Setting(L"NorthingValueMin"), -40); // a negative limit comes back
    EXPECT_EQ(Setting(L"AltitudeValueMin"), -50);
    EXPECT_EQ(Setting(L"CourseUse"), 1);
    EXPECT_EQ(Setting(L"Lines"), 1);
    EXPECT_EQ(Setting(L"TimeScaleIdx"), 0);
    for (const GraphChannelRecord& channel : GraphChannel)
        for (const wchar_t* suffix :
             {L"ValueZero", L"ValueMin", L"ValueMax", L"PixelMin", L"PixelMax", L"Color", L"Use"})
            EXPECT_NE(Setting((std::wstring(channel.Name) + suffix).c_str()), -12345);
}

TEST_F(GraphSettingsTest, WhatIsSavedIsLoadedAgain)
{
    Load();
    for (uint32_t i = 0; i < ChannelCount; ++i) {
        const int32_t n = static_cast<int32_t>(i);
        GraphChannel[i].ValueZero.store(static_cast<float>(1000 * n - 5000));
        GraphChannel[i].ValueMin.store(static_cast<float>(-n));
        GraphChannel[i].ValueMax.store(static_cast<float>(n + 1));
        GraphChannel[i].PixelMin.store(static_cast<uint16_t>(i));
        GraphChannel[i].PixelMax.store(static_cast<uint16_t>(i + 20));
        GraphChannel[i].Color.store(i * 0x010203);
        GraphChannel[i].Visible.store(n % 2);
    }
    GraphLines.store(0);
    TimeScaleIdx.store(5);
    SaveGraphSettings();
    ResetChannels();
    ResetGraphSettings();
    Load();
    for (uint32_t i = 0; i < ChannelCount; ++i) {
        const int32_t n = static_cast<int32_t>(i);
        EXPECT_EQ(GraphChannel[i].ValueZero.load(), static_cast<float>(1000 * n - 5000));
        EXPECT_EQ(GraphChannel[i].ValueMin.load(), static_cast<float>(-n));
        EXPECT_EQ(GraphChannel[i].ValueMax.load(), static_cast<float>(n + 1));
        EXPECT_EQ(GraphChannel[i].PixelMin.load(), i);
        EXPECT_EQ(GraphChannel[i].PixelMax.load(), i + 20);
        EXPECT_EQ(GraphChannel[i].Color.load(), i * 0x010203);
        EXPECT_EQ(GraphChannel[i].Visible.load(), n % 2);
    }
    EXPECT_EQ(GraphLines.load(), 0);
    EXPECT_EQ(TimeScaleIdx.load(), 5);
}

TEST_F(GraphSettingsTest, ValuesAreSavedAsWholeNumbersOf32Bits)
{
    struct Row {
        float value;
        uint32_t stored;
    };
    constexpr Row Rows[] = {
        {2.9f, 2},
        {-2.9f, 0xFFFFFFFE},
        {-40, 0xFFFFFFD8},
        {2147483520.0f, 0x7FFFFF80},
        {2147483648.0f, 0x80000000},
        {3000000000.0f, 3000000000},
        {1e15f, 0xFFFFFFFF},
        {-2147483648.0f, 0x80000000},
        {-1e15f, 0x80000000},
    };
    for (const Row& row : Rows) {
        GraphChannel[2].ValueZero.store(row.value);
        SaveGraphSettings();
        EXPECT_EQ(static_cast<uint32_t>(Setting(L"EHPEValueZero")), row.stored) << row.value;
    }
    GraphChannel[2].ValueZero.store(__builtin_nanf(""));
    SaveGraphSettings();
    EXPECT_EQ(Setting(L"EHPEValueZero"), INT32_MIN);
}

} // namespace
