// SPDX-License-Identifier: MIT
#include "console/commands/commands.h"
#include "console/setting_names.h"

namespace console
{

namespace
{

void ShowSettings(Context& context)
{
    Json all = Json::object();
    for (const Setting& setting : Settings()) {
        context.output.Line(std::string(setting.name) + " (" + std::to_string(setting.layout->command) +
                            "): " + setting.meaning);
        Json& keys = all[setting.name] = Json::object();
        for (size_t key = 0; key < setting.keys.size(); ++key) {
            const SettingKey& row = setting.keys[key];
            context.output.Line("    " + std::string(row.name) + ": " + RangeText(setting, key) + ": " +
                                row.meaning);
            keys[row.name] = RangeJson(setting, key);
        }
    }
    context.output.object["settings"] = all;
}

} // namespace

Action DefineSettings(Parser& parser)
{
    parser.NeedsNoPort();
    return ShowSettings;
}

} // namespace console
