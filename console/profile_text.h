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

// Throws Failure of the kind Usage, with the line's number, for a line that is not a setting. `name` is the
// file's name.
std::vector<ProfileEntry> ParseProfile(const std::string& text, const std::string& name);

} // namespace console
