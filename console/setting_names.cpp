// SPDX-License-Identifier: MIT
#include "console/setting_names.h"

#include <algorithm>
#include <cctype>

#include "console/options.h"

namespace console
{

namespace
{

constexpr const char* DopSelections[] = {"auto", "pdop", "hdop", "gdop", "disabled"};
constexpr const char* DgpsSources[] = {"none", "sbas", "external", "beacon", "user"};
constexpr const char* DgpsModes[] = {"auto", "exclusive", "never"};
constexpr const char* DegradedModes[] = {"direction-clock", "clock-direction", "direction", "clock",
                                         "disabled"};
constexpr const char* AltitudeHoldModes[] = {"auto", "always", "disabled"};
constexpr const char* AltitudeSources[] = {"last", "user"};
constexpr const char* SbasPrns[] = {"auto", "120", "121", "122", "123", "124", "125", "126", "127", "128",
                                    "129",  "130", "131", "132", "133", "134", "135", "136", "137", "138"};
constexpr const char* SbasModes[] = {"testing", "integrity"};
constexpr const char* SbasTimeouts[] = {"default", "user"};
constexpr const char* MaxErrors[] = {"1", "5", "10", "20", "40", "80", "160", "none"};
constexpr const char* AccuracyPriorities[] = {"none", "response-time", "horizontal-error"};
constexpr const char* TimingPriorities[] = {"none", "time-between-fixes", "duty-cycle"};

constexpr SettingKey StaticNavigationKeys[] = {
    {"enabled", "", "hold the position while the receiver stands"}};
constexpr SettingKey ElevationMaskKeys[] = {
    {"tracking", "degrees", "lowest satellites that are tracked"},
    {"navigation", "degrees", "lowest satellites that are used for the position"},
};
constexpr SettingKey PowerMaskKeys[] = {
    {"tracking", "dB-Hz", "weakest satellites that are tracked"},
    {"navigation", "dB-Hz", "weakest satellites that are used for the position"},
};
constexpr SettingKey DopMaskKeys[] = {
    {"selection", "", "which dilution of precision limits a position", DopSelections},
    {"gdop", "", "largest geometric dilution"},
    {"pdop", "", "largest dilution in three dimensions"},
    {"hdop", "", "largest horizontal dilution"},
};
constexpr SettingKey DgpsSourceKeys[] = {
    {"source", "", "where corrections come from", DgpsSources},
    {"frequency", "Hz", "of the beacon; 0 searches"},
    {"bit-rate", "bits/s", "of the beacon; 0 searches"},
};
constexpr SettingKey DgpsModeKeys[] = {
    {"mode", "", "use of corrections", DgpsModes},
    {"timeout", "s", "how long corrections are used; 0 is the receiver's own time"},
};
constexpr SettingKey ModeControlKeys[] = {
    {"degraded-mode", "", "positions from one or two satellites", DegradedModes},
    {"altitude", "m", "altitude for positions from three satellites"},
    {"altitude-hold", "", "positions from three satellites", AltitudeHoldModes},
    {"altitude-source", "", "altitude that is held", AltitudeSources},
    {"degraded-timeout", "s", "how long positions from too few satellites go on"},
    {"dr-timeout", "s", "how long dead reckoning goes on"},
    {"track-smoothing", "", "smooth the track"},
};
constexpr SettingKey TricklePowerKeys[] = {
    {"push-to-fix", "", "positions on demand and after the push-to-fix period"},
    {"duty-cycle", "%", "part of the time that the receiver is on"},
    {"on-time", "ms", "time that the receiver is on in each cycle"},
};
constexpr SettingKey LowPowerKeys[] = {
    {"max-off-time", "ms", "longest sleep after a search in vain"},
    {"max-search-time", "ms", "longest search for satellites"},
    {"push-to-fix-period", "s", "time between two positions"},
    {"adaptive", "", "full power where signals are weak"},
};
constexpr SettingKey SbasKeys[] = {
    {"prn", "", "satellite whose corrections are used", SbasPrns},
    {"mode", "", "use of satellites in test mode", SbasModes},
    {"timeout", "", "how long corrections are used", SbasTimeouts},
};
constexpr SettingKey AdvancedPowerKeys[] = {
    {"enabled", "", "advanced power management"},
    {"cycles", "", "positions before it ends; 0 is without end"},
    {"time-between-fixes", "s", "time between two positions"},
    {"max-horizontal-error", "m", "largest horizontal error", MaxErrors},
    {"max-vertical-error", "m", "largest vertical error", MaxErrors},
    {"max-response-time", "s", "longest time for a position; 0 is without end"},
    {"accuracy-priority", "", "what counts more than accuracy", AccuracyPriorities},
    {"duty-cycle", "%", "part of the time that the receiver is on"},
    {"timing-priority", "", "what sets the time between positions", TimingPriorities},
};

std::string InLowerCase(std::string text)
{
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

// Index of a name in a list; -1 when it is not there.
int64_t FindName(std::span<const char* const> names, const std::string& name)
{
    const std::string lower = InLowerCase(name);
    const auto place = std::find_if(names.begin(), names.end(), [&](const char* n) { return lower == n; });
    return place == names.end() ? -1 : place - names.begin();
}

int64_t ParseSwitch(const std::string& text)
{
    constexpr const char* Names[] = {"off", "on", "no", "yes", "false", "true", "0", "1"};
    const int64_t index = FindName(Names, text);
    return index < 0 ? -1 : index % 2;
}

const CommandField& FieldOf(const Setting& setting, size_t key)
{
    return setting.layout->fields[key];
}

bool ParseKeyValue(const Setting& setting, size_t key, const std::string& text, int64_t& value)
{
    const CommandField& field = FieldOf(setting, key);
    if (field.kind == FieldKind::Check) return (value = ParseSwitch(text)) >= 0;
    if (field.kind == FieldKind::List) return (value = FindName(setting.keys[key].choices, text)) >= 0;
    return ParseValue(field, text.c_str(), Reading::Exact, value);
}

std::string NumberText(const CommandField& field, int64_t value)
{
    wchar_t wide[ValueTextCapacity];
    const uint32_t length = WriteValue(field, value, wide);
    return std::string(wide, wide + length); // digits, sign and point alone
}

// The numbers that a field accepts, if they are only a few.
std::vector<int64_t> SingleNumbers(const CommandField& field)
{
    constexpr size_t Few = 8;
    std::vector<int64_t> numbers;
    if (!field.accepts || HighestValue(field) > 1000) return {};
    for (int64_t value = LowestValue(field); value <= HighestValue(field); ++value)
        if (AcceptsValue(field, value)) numbers.push_back(value);
    return numbers.size() <= Few ? numbers : std::vector<int64_t>{};
}

Json NumberJson(const CommandField& field, int64_t value)
{
    if (DecimalsOf(field) == 0) return value;
    return static_cast<double>(value) / 10;
}

} // namespace

std::span<const Setting> Settings()
{
    static const Setting All[] = {
        {"static-navigation", &StaticNavigationLayout, "the position of a standing receiver",
         StaticNavigationKeys},
        {"elevation-mask", &ElevationMaskLayout, "height above the horizon that satellites need",
         ElevationMaskKeys},
        {"power-mask", &PowerMaskLayout, "signal that satellites need", PowerMaskKeys},
        {"dop-mask", &DopMaskLayout, "geometry that positions need", DopMaskKeys},
        {"dgps-source", &DgpsSourceLayout, "source of corrections", DgpsSourceKeys},
        {"dgps-mode", &DgpsModeLayout, "use of corrections", DgpsModeKeys},
        {"mode-control", &ModeControlLayout, "positions from too few satellites", ModeControlKeys},
        {"trickle-power", &TricklePowerLayout, "pauses that save power", TricklePowerKeys},
        {"low-power", &LowPowerLayout, "sleep and search while power is saved", LowPowerKeys},
        {"sbas", &SbasLayout, "corrections from satellites (WAAS, EGNOS, MSAS)", SbasKeys},
        {"advanced-power", &AdvancedPowerManagementLayout, "advanced power management", AdvancedPowerKeys},
    };
    return All;
}

std::vector<std::string> SettingNames()
{
    std::vector<std::string> names;
    for (const Setting& setting : Settings()) names.push_back(setting.name);
    return names;
}

const Setting& FindSetting(const std::string& name)
{
    std::string names;
    for (const Setting& setting : Settings()) {
        if (name == setting.name) return setting;
        names += (names.empty() ? "" : ", ") + std::string(setting.name);
    }
    Fail(FailureKind::Usage, "no setting \"" + name + "\"; there are " + names);
}

std::vector<KeyValue> ParseKeyValues(const Setting& setting, std::span<const std::string> texts)
{
    std::vector<KeyValue> values;
    for (const std::string& text : texts) {
        const Assignment assignment = ParseAssignment(text);
        const auto key = std::find_if(setting.keys.begin(), setting.keys.end(),
                                      [&](const SettingKey& k) { return assignment.name == k.name; });
        if (key == setting.keys.end()) {
            std::string names;
            for (const SettingKey& known : setting.keys)
                names += (names.empty() ? "" : ", ") + std::string(known.name);
            Fail(FailureKind::Usage,
                 std::string(setting.name) + ": no key \"" + assignment.name + "\"; there are " + names);
        }
        KeyValue value = {static_cast<size_t>(key - setting.keys.begin()), 0};
        const auto isSame = [&](const KeyValue& other) { return other.key == value.key; };
        if (std::any_of(values.begin(), values.end(), isSame))
            Fail(FailureKind::Usage, std::string(setting.name) + ": " + key->name + " is given twice");
        if (!ParseKeyValue(setting, value.key, assignment.value, value.value))
            Fail(FailureKind::Usage, std::string(setting.name) + ": " + key->name + "=" + assignment.value +
                                         " is outside " + RangeText(setting, value.key));
        values.push_back(value);
    }
    return values;
}

std::vector<std::string> KeyValueTexts(const Setting& setting)
{
    std::vector<std::string> texts;
    for (size_t key = 0; key < setting.keys.size(); ++key) {
        const CommandField& field = FieldOf(setting, key);
        const std::string beginning = setting.keys[key].name + std::string("=");
        const size_t before = texts.size();
        if (field.kind == FieldKind::Check)
            for (const int64_t value : {1, 0}) texts.push_back(beginning + ValueText(setting, key, value));
        if (field.kind == FieldKind::List)
            for (const char* choice : setting.keys[key].choices) texts.push_back(beginning + choice);
        for (const int64_t number : SingleNumbers(field)) texts.push_back(beginning + std::to_string(number));
        if (texts.size() == before) texts.push_back(beginning);
    }
    return texts;
}

std::string ValueText(const Setting& setting, size_t key, int64_t value)
{
    const CommandField& field = FieldOf(setting, key);
    const std::span<const char* const> choices = setting.keys[key].choices;
    if (field.kind == FieldKind::Check) return value ? "on" : "off";
    if (field.kind != FieldKind::List) return NumberText(field, value);
    // A receiver may report an entry that does not exist. Its number without a prefix could be the name of
    // another entry.
    if (value < 0 || value >= static_cast<int64_t>(choices.size())) return "entry-" + std::to_string(value);
    return choices[static_cast<size_t>(value)];
}

Json ValueJson(const Setting& setting, size_t key, int64_t value)
{
    const CommandField& field = FieldOf(setting, key);
    if (field.kind == FieldKind::Check) return value != 0;
    if (field.kind == FieldKind::List) return ValueText(setting, key, value);
    return NumberJson(field, value);
}

std::string SettingText(const Setting& setting, const SettingValues& values)
{
    std::string text = setting.name;
    for (size_t key = 0; key < setting.keys.size(); ++key)
        text += ' ' + std::string(setting.keys[key].name) + '=' + ValueText(setting, key, values[key]);
    return text;
}

Json SettingJson(const Setting& setting, const SettingValues& values)
{
    Json object = Json::object();
    for (size_t key = 0; key < setting.keys.size(); ++key)
        object[setting.keys[key].name] = ValueJson(setting, key, values[key]);
    return object;
}

std::string RangeText(const Setting& setting, size_t key)
{
    const CommandField& field = FieldOf(setting, key);
    const SettingKey& names = setting.keys[key];
    if (field.kind == FieldKind::Check) return "on/off";
    std::string text;
    if (field.kind == FieldKind::List)
        for (const char* choice : names.choices) text += (text.empty() ? "" : "/") + std::string(choice);
    for (const int64_t number : SingleNumbers(field))
        text += (text.empty() ? "" : "/") + std::to_string(number);
    if (text.empty()) {
        text = NumberText(field, LowestValue(field)) + " to " + NumberText(field, HighestValue(field));
        // 0 is listed separately if it is allowed and the numbers after it are not.
        if (field.accepts && AcceptsValue(field, 0) && !AcceptsValue(field, 1)) {
            int64_t first = 1;
            while (first < HighestValue(field) && !AcceptsValue(field, first)) ++first;
            text = "0 or " + NumberText(field, first) + " to " + NumberText(field, HighestValue(field));
        }
        if (StepOf(field) > 1) text += " in steps of " + std::to_string(StepOf(field));
        if (DecimalsOf(field)) text += ", one decimal";
    }
    if (*names.unit) text += ", " + std::string(names.unit);
    return text;
}

Json RangeJson(const Setting& setting, size_t key)
{
    const CommandField& field = FieldOf(setting, key);
    const SettingKey& names = setting.keys[key];
    Json json = {{"meaning", names.meaning}};
    json["unit"] = *names.unit ? Json(names.unit) : Json(nullptr);
    if (field.kind == FieldKind::Check) {
        json["type"] = "boolean";
        json["low"] = json["high"] = json["choices"] = nullptr;
    } else if (field.kind == FieldKind::List) {
        json["type"] = "choice";
        json["low"] = json["high"] = nullptr;
        json["choices"] = names.choices;
    } else {
        const std::vector<int64_t> single = SingleNumbers(field);
        json["type"] = DecimalsOf(field) ? "decimal" : "integer";
        json["low"] = NumberJson(field, LowestValue(field));
        json["high"] = NumberJson(field, HighestValue(field));
        json["choices"] = single.empty() ? Json(nullptr) : Json(single);
        if (StepOf(field) > 1) json["step"] = StepOf(field);
    }
    return json;
}

} // namespace console
