// SPDX-License-Identifier: MIT
#include "console/commands/commands.h"
#include "console/setting_exchange.h"
#include "console/through_sirf.h"

namespace console
{

namespace
{

struct SetOptions {
    std::string name;
    std::vector<std::string> assignments;
    bool force = false, noVerify = false;
    ThroughSirf through;
};

Json OrNull(const Setting& setting, const std::optional<SettingValues>& values)
{
    return values ? SettingJson(setting, *values) : Json(nullptr);
}

void Set(Context& context, const SetOptions& options)
{
    const Setting& setting = FindSetting(options.name);
    const std::vector<KeyValue> given = ParseKeyValues(setting, options.assignments);
    Output& output = context.output;
    if (context.options.dryRun || options.noVerify) Change(setting, nullptr, given); // all keys must be there
    if (context.options.dryRun) {
        const auto print = [&](const Frame& payload) { output.Line("> " + FrameText(FrameSirf(payload))); };
        if (!options.noVerify) print(PollPayload(setting));
        print(CommandPayload(setting, Change(setting, nullptr, given)));
        if (!options.noVerify) print(PollPayload(setting));
        return;
    }

    WithSirf(context, options.through, [&](Session& session) {
        const ChangeResult result = ChangeSetting(session, setting, given, {options.force, !options.noVerify},
                                                  Seconds(context.options.timeoutSeconds));
        Json changed = Json::array();
        for (const size_t key : result.changed) changed.push_back(setting.keys[key].name);
        output.object["setting"] = setting.name;
        output.object["before"] = OrNull(setting, result.before);
        output.object["after"] = OrNull(setting, result.after);
        output.object["changed"] = changed;
        PrintChange(output, setting, result);
        if (result.failure) throw Failure(*result.failure);
        if (!result.sent) output.Note(std::string(setting.name) + " is so already; nothing was sent");
    });
}

} // namespace

Action DefineSet(Parser& parser)
{
    const auto options = std::make_shared<SetOptions>();
    parser.Option("NAME", options->name, "the setting").Required().Suggest(SettingNames());
    Parameter values = parser.Option("KEY=VALUE", options->assignments, "what to change").Required();
    for (const Setting& setting : Settings()) values.SuggestAfter(setting.name, KeyValueTexts(setting));
    parser.Flag("--force", options->force, "send it even when all is so already");
    parser.Flag("--no-verify", options->noVerify, "read neither before nor after; needs all keys");
    options->through.AddTo(parser);
    return [options](Context& context) { Set(context, *options); };
}

} // namespace console
