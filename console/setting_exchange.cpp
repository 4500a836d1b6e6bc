// SPDX-License-Identifier: MIT
#include "console/setting_exchange.h"

namespace console
{

Frame PollPayload(const Setting& setting)
{
    uint8_t poll[PollLength];
    const uint32_t length = PackPoll(*setting.layout, poll);
    return Frame(poll, poll + length);
}

Frame CommandPayload(const Setting& setting, const SettingValues& values)
{
    uint8_t payload[MaxCommandLength];
    PackCommand(*setting.layout, values, payload);
    return Frame(payload, payload + setting.layout->length);
}

SettingAnswer ReadSetting(Session& session, const Setting& setting, Duration limit)
{
    SettingAnswer answer = {Reply::Silent, {}};
    answer.reply = Ask(
        session, PollPayload(setting),
        [&](const Message& message) {
            return ReadAnswer(*setting.layout, message.payload.data(),
                              static_cast<uint32_t>(message.payload.size()), Signs::Kept, answer.values);
        },
        limit);
    return answer;
}

SettingValues Change(const Setting& setting, const SettingValues* before, std::span<const KeyValue> given)
{
    SettingValues values = before ? *before : SettingValues{};
    std::vector<bool> isGiven(setting.keys.size());
    for (const KeyValue& value : given) {
        values[value.key] = value.value;
        isGiven[value.key] = true;
    }
    if (before) return values;
    std::string missing;
    for (size_t key = 0; key < setting.keys.size(); ++key)
        if (!isGiven[key]) missing += ' ' + std::string(setting.keys[key].name);
    if (!missing.empty())
        Fail(FailureKind::Usage, std::string(setting.name) +
                                     ": all keys are needed where nothing is read first; missing:" + missing);
    return values;
}

ChangeResult ChangeSetting(Session& session, const Setting& setting, std::span<const KeyValue> given,
                           ChangeOptions options, Duration limit)
{
    ChangeResult result;
    const std::string name = setting.name;
    const auto fail = [&](FailureKind kind, const std::string& message) {
        result.failure = Failure{kind, name + ": " + message};
        return result;
    };
    if (options.verify) {
        const SettingAnswer answer = ReadSetting(session, setting, limit);
        if (answer.reply == Reply::Answered) {
            result.before = answer.values;
        } else if (given.size() < setting.keys.size()) {
            if (answer.reply == Reply::Refused)
                return fail(FailureKind::Refused,
                            "the receiver refuses to report it; without that all keys must be given");
            return fail(FailureKind::NoAnswer,
                        "the receiver did not report it in time; without that all keys must be given");
        }
    }
    const SettingValues wanted = Change(setting, result.before ? &*result.before : nullptr, given);
    // The receiver's values of the other keys are sent back to it, so they must be values that can be sent.
    for (size_t key = 0; key < setting.keys.size(); ++key)
        if (!AcceptsValue(setting.layout->fields[key], wanted[key]))
            return fail(FailureKind::Failed, std::string(setting.keys[key].name) + " is " +
                                                 ValueText(setting, key, wanted[key]) +
                                                 " in the receiver, which cannot be sent back: give it too");
    if (result.before && !options.force) {
        bool same = true;
        for (size_t key = 0; key < setting.keys.size(); ++key) same &= wanted[key] == (*result.before)[key];
        if (same) {
            result.after = result.before;
            return result;
        }
    }
    result.sent = true;
    const Reply reply = SendCommand(session, CommandPayload(setting, wanted), limit);
    if (reply == Reply::Refused) {
        const SettingAnswer answer = ReadSetting(session, setting, limit);
        if (answer.reply == Reply::Answered) result.after = answer.values;
        return fail(FailureKind::Refused, "refused by the receiver");
    }
    if (!options.verify) {
        if (reply == Reply::Silent) return fail(FailureKind::NoAnswer, "no acknowledgement came in time");
        return result;
    }
    if (!result.before)
        return fail(FailureKind::NoAnswer, "sent, but the receiver does not report it: not seen");
    const SettingAnswer answer = ReadSetting(session, setting, limit);
    if (answer.reply != Reply::Answered)
        return fail(FailureKind::NoAnswer, "sent, but it could not be read back");
    result.after = answer.values;
    std::string differences;
    for (size_t key = 0; key < setting.keys.size(); ++key) {
        if (answer.values[key] != (*result.before)[key]) result.changed.push_back(key);
        if (answer.values[key] != wanted[key])
            differences += std::string(differences.empty() ? "" : ", ") + setting.keys[key].name + " is " +
                           ValueText(setting, key, answer.values[key]) + " instead of " +
                           ValueText(setting, key, wanted[key]);
    }
    if (!differences.empty()) return fail(FailureKind::Differs, differences);
    return result;
}

void PrintChange(Output& output, const Setting& setting, const ChangeResult& result)
{
    for (const size_t key : result.changed)
        output.Line(std::string(setting.name) + ' ' + setting.keys[key].name + ": " +
                    ValueText(setting, key, (*result.before)[key]) + " -> " +
                    ValueText(setting, key, (*result.after)[key]));
}

} // namespace console
