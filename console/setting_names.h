// SPDX-License-Identifier: MIT
// The receiver's settings by name: names, units and meanings for the rows of sirf/command_layouts.h. Those
// rows provide the ranges, the packing and the reading.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "console/output.h"
#include "sirf/setting_values.h"

namespace console
{

// One row of a layout. `choices` are the names of a list's entries.
struct SettingKey {
    const char* name;
    const char* unit; // empty: none
    const char* meaning;
    std::span<const char* const> choices = {};
};

// `keys` in the order of the layout's rows, one for each.
struct Setting {
    const char* name;
    const CommandLayout* layout;
    const char* meaning;
    std::span<const SettingKey> keys;
};

// All settings, in the order of "get all" and of profiles.
std::span<const Setting> Settings();

// Their names, in the same order.
std::vector<std::string> SettingNames();

// Throws Failure of the kind Usage if there is no such setting; the message lists all settings.
const Setting& FindSetting(const std::string& name);

// Values of some keys of a setting, as typed or as read from a profile.
struct KeyValue {
    size_t key; // index into Setting::keys
    int64_t value;
};

// Reads "KEY=VALUE" texts. Throws Failure of the kind Usage for an unknown or repeated key, and for a text
// that is not a value in the key's range.
std::vector<KeyValue> ParseKeyValues(const Setting& setting, std::span<const std::string> texts);

// Beginnings of "KEY=VALUE" texts: "KEY=VALUE" for each value of a list or a switch, else "KEY=".
std::vector<std::string> KeyValueTexts(const Setting& setting);

// A value as `get` prints it, and as JSON contains it: "7.5", "on", the name of a list entry. "entry-135" is
// a receiver's entry that is not in the list; it is not accepted as input.
std::string ValueText(const Setting& setting, size_t key, int64_t value);
Json ValueJson(const Setting& setting, size_t key, int64_t value);

// A whole setting: "elevation-mask tracking=5.0 navigation=7.5", and its JSON object.
std::string SettingText(const Setting& setting, const SettingValues& values);
Json SettingJson(const Setting& setting, const SettingValues& values);

// Type, unit, range and choices of a key: "20 to 90, one decimal, degrees", and as JSON.
std::string RangeText(const Setting& setting, size_t key);
Json RangeJson(const Setting& setting, size_t key);

} // namespace console
