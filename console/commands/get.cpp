// SPDX-License-Identifier: MIT
#include "console/commands/commands.h"
#include "console/setting_exchange.h"
#include "console/through_sirf.h"

namespace console
{

namespace
{

struct GetOptions {
    std::vector<std::string> names;
    ThroughSirf through;
};

void Get(Context& context, const GetOptions& options)
{
    const bool all = options.names.size() == 1 && options.names[0] == "all";
    std::vector<const Setting*> settings;
    if (all)
        for (const Setting& setting : Settings()) settings.push_back(&setting);
    else
        for (const std::string& name : options.names) settings.push_back(&FindSetting(name));
    Output& output = context.output;
    if (context.options.dryRun) {
        for (const Setting* setting : settings)
            output.Line("> " + FrameText(FrameSirf(PollPayload(*setting))));
        return;
    }

    WithSirf(context, options.through, [&](Session& session) {
        Json& result = output.object["settings"] = Json::object();
        std::optional<Failure> failure;
        for (const Setting* setting : settings) {
            const SettingAnswer answer =
                ReadSetting(session, *setting, Seconds(context.options.timeoutSeconds));
            if (answer.reply == Reply::Answered) {
                output.Line(SettingText(*setting, answer.values));
                result[setting->name] = SettingJson(*setting, answer.values);
                continue;
            }
            result[setting->name] = nullptr;
            if (all) {
                output.Line("# " + std::string(setting->name) + ": " + MissingText(answer.reply));
                continue;
            }
            try {
                Require(answer.reply, setting->name);
            } catch (const Failure& thrown) {
                if (failure)
                    output.Error(thrown.message);
                else
                    failure = thrown;
            }
        }
        if (failure) throw Failure(*failure);
    });
}

} // namespace

Action DefineGet(Parser& parser)
{
    const auto options = std::make_shared<GetOptions>();
    std::vector<std::string> names = SettingNames();
    names.insert(names.begin(), "all");
    parser.Option("NAME", options->names, "settings, or \"all\"").Required().Suggest(names);
    options->through.AddTo(parser);
    return [options](Context& context) { Get(context, *options); };
}

} // namespace console
