// SPDX-License-Identifier: MIT
#include "graph/graph_settings.h"

#include "graph/channels.h"
#include "graph/surface.h"
#include "settings/settings_store.h"
#include "text/format.h"

const TimeScaleRow TimeScale[TimeScaleCount] = {
    {L"1 sec/pixel", 1, 10, 60},   {L" 5 sec/pixel", 5, 12, 60}, // the blank at the start is kept on purpose
    {L"20 sec/pixel", 20, 15, 60}, {L"1 min/pixel", 60, 10, 60},
    {L"3 min/pixel", 180, 10, 60}, {L"6 min/pixel", 360, 10, 60},
};

std::atomic<int32_t> GraphLines{1};
std::atomic<int32_t> TimeScaleIdx{0};

namespace
{

constexpr int32_t NotStored = -1;
constexpr int32_t ValueNotStored = INT32_MAX;

// Settings of a channel; each is stored with the channel's name and this suffix as its name.
struct ValueSetting {
    const wchar_t* suffix;
    std::atomic<float> GraphChannelRecord::*field;
};
constexpr ValueSetting ValueSettings[] = {
    {L"ValueZero", &GraphChannelRecord::ValueZero},
    {L"ValueMin", &GraphChannelRecord::ValueMin},
    {L"ValueMax", &GraphChannelRecord::ValueMax},
};
struct PixelSetting {
    const wchar_t* suffix;
    std::atomic<uint16_t> GraphChannelRecord::*field;
};
constexpr PixelSetting PixelSettings[] = {
    {L"PixelMin", &GraphChannelRecord::PixelMin},
    {L"PixelMax", &GraphChannelRecord::PixelMax},
};

// Settings of the chart.
struct ChartSetting {
    const wchar_t* name;
    std::atomic<int32_t>& value;
};
const ChartSetting ChartSettings[] = {
    {SettingLines, GraphLines},
    {SettingTimeScale, TimeScaleIdx},
};

// Default bands for screens on which the bands of the channel table do not fit.
struct Band {
    uint16_t floor, ceiling; // pixels above the bottom row
};
struct SmallScreen {
    uint16_t heightBelow;
    Band bands[ChannelCount];
};
constexpr SmallScreen SmallScreens[] = {
    {181,
     {{168, 180},
      {158, 168},
      {148, 158},
      {108, 148},
      {68, 108},
      {58, 68},
      {48, 58},
      {22, 48},
      {12, 22},
      {0, 12}}},
    {187,
     {{188, 200},
      {178, 188},
      {168, 178},
      {128, 168},
      {88, 128},
      {78, 88},
      {68, 78},
      {18, 68},
      {9, 18},
      {0, 9}}},
};

struct SettingName {
    wchar_t text[32]; // the longest is "NorthingValueZero"
    SettingName(const GraphChannelRecord& channel, const wchar_t* suffix)
    {
        Format(text, L"%s%s", channel.Name, suffix);
    }
};

void FitBandsToScreen()
{
    for (const SmallScreen& screen : SmallScreens) {
        if (GraphHeight.load() >= screen.heightBelow) continue;
        for (uint32_t i = 0; i < ChannelCount; ++i) {
            GraphChannel[i].PixelMin.store(screen.bands[i].floor);
            GraphChannel[i].PixelMax.store(screen.bands[i].ceiling);
        }
        return;
    }
}

void LoadChannel(GraphChannelRecord& channel)
{
    const auto stored = [&](const wchar_t* suffix, int32_t absent) {
        return SettingsGetDword(SettingName(channel, suffix).text, absent);
    };
    for (const ValueSetting& setting : ValueSettings) {
        const int32_t value = stored(setting.suffix, ValueNotStored);
        if (value != ValueNotStored) (channel.*setting.field).store(static_cast<float>(value));
    }
    for (const PixelSetting& setting : PixelSettings) {
        const int32_t value = stored(setting.suffix, NotStored);
        std::atomic<uint16_t>& field = channel.*setting.field;
        if (value != NotStored) field.store(static_cast<uint16_t>(value));
        if (field.load() > GraphHeight.load()) field.store(GraphHeight.load());
    }
    const int32_t color = stored(L"Color", NotStored), use = stored(L"Use", NotStored);
    if (color != NotStored) channel.Color.store(static_cast<COLORREF>(color));
    if (use != NotStored) channel.Visible.store(use);
}

// A value as it is stored: a whole number in 32 bits; numbers above 2147483647 are stored as unsigned.
// Negative numbers are converted through 64 bits, because some processors cannot convert them directly to
// unsigned.
int32_t StoredValue(float value)
{
    constexpr float Lowest = -2147483648.0f, Above = 4294967296.0f;
    if (!(value >= Lowest)) return INT32_MIN;
    const int64_t whole = value < Above ? static_cast<int64_t>(value) : UINT32_MAX;
    return static_cast<int32_t>(static_cast<uint32_t>(whole));
}

void SaveChannel(const GraphChannelRecord& channel)
{
    const auto store = [&](const wchar_t* suffix, int32_t value) {
        SettingsSetDword(SettingName(channel, suffix).text, value);
    };
    for (const ValueSetting& setting : ValueSettings)
        store(setting.suffix, StoredValue((channel.*setting.field).load()));
    for (const PixelSetting& setting : PixelSettings) store(setting.suffix, (channel.*setting.field).load());
    store(L"Color", static_cast<int32_t>(channel.Color.load()));
    store(L"Use", channel.Visible.load());
}

} // namespace

const TimeScaleRow& SelectedTimeScale()
{
    const uint32_t index = static_cast<uint32_t>(TimeScaleIdx.load());
    return TimeScale[index < TimeScaleCount ? index : 0];
}

void LoadGraphSettings()
{
    FitBandsToScreen();
    for (GraphChannelRecord& channel : GraphChannel) LoadChannel(channel);
    for (const ChartSetting& setting : ChartSettings) {
        const int32_t value = SettingsGetDword(setting.name, NotStored);
        if (value != NotStored) setting.value.store(value);
    }
}

void SaveGraphSettings()
{
    for (const GraphChannelRecord& channel : GraphChannel) SaveChannel(channel);
    for (const ChartSetting& setting : ChartSettings) SettingsSetDword(setting.name, setting.value.load());
}

void ResetGraphSettings()
{
    GraphLines.store(1);
    TimeScaleIdx.store(0);
}
