// SPDX-License-Identifier: MIT
// Reads a receiver's settings, and changes them with a check of the result.
#pragma once

#include "console/conversation.h"
#include "console/setting_names.h"

namespace console
{

struct SettingAnswer {
    Reply reply;
    SettingValues values; // if it was answered
};

SettingAnswer ReadSetting(Session& session, const Setting& setting, Duration limit);

// The payloads that read and set a setting.
Frame PollPayload(const Setting& setting);
Frame CommandPayload(const Setting& setting, const SettingValues& values);

// A setting with the changes of `given`. Throws Failure of the kind Usage if `before` is null and a key is
// missing.
SettingValues Change(const Setting& setting, const SettingValues* before, std::span<const KeyValue> given);

struct ChangeOptions {
    bool force = false, verify = true;
};

struct ChangeResult {
    std::optional<SettingValues> before, after;
    bool sent = false;
    std::vector<size_t> changed;    // keys that are different now
    std::optional<Failure> failure; // the reason, if the result is not as requested
};

// Reads, changes the given keys, sends, reads back, compares. Throws Failure only for what ends the whole
// run: the port, an interruption.
ChangeResult ChangeSetting(Session& session, const Setting& setting, std::span<const KeyValue> given,
                           ChangeOptions options, Duration limit);

// A line for each changed key: "elevation-mask navigation: 7.5 -> 10.0".
void PrintChange(Output& output, const Setting& setting, const ChangeResult& result);

} // namespace console
