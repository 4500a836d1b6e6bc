// SPDX-License-Identifier: MIT
// The text of a profile: lines of settings as `get` prints them, and lines that begin with '#'.
#pragma once

#include "console/setting_names.h"

namespace console
{

struct ProfileEntry {
    const Setting* setting;
    std::vector<KeyValue> values;
};

// Reads UTF-8, with or without a byte-order mark. Throws Failure of the kind Usage, with the line's number,
// for a line that is not a setting, and for UTF-16. `name` is the file's name.
std::vector<ProfileEntry> ParseProfile(const std::string& text, const std::string& name);

} // namespace console
