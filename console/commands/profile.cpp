// SPDX-License-Identifier: MIT
#include <algorithm>
#include <ctime>

#include "console/commands/commands.h"
#include "console/files.h"
#include "console/firmware.h"
#include "console/profile_text.h"
#include "console/setting_exchange.h"
#include "console/through_sirf.h"

namespace console
{

namespace
{

// A profile has some dozen short lines.
constexpr size_t LargestProfile = 1 << 20;

struct ProfileOptions {
    std::string file;
    ThroughSirf through;
};

std::vector<ProfileEntry> ReadProfile(const ProfileOptions& options)
{
    return ParseProfile(ReadWholeFile(options.file, LargestProfile), options.file);
}

void PrintPoll(Context& context, const Setting& setting)
{
    context.output.Line("> " + FrameText(FrameSirf(PollPayload(setting))));
}

std::string Today()
{
    const std::time_t now = std::time(nullptr);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", std::gmtime(&now));
    return text;
}

// True if all values can be sent. A receiver may report others.
bool CanBeSent(const Setting& setting, const SettingValues& values)
{
    for (size_t key = 0; key < setting.keys.size(); ++key)
        if (!AcceptsValue(setting.layout->fields[key], values[key])) return false;
    return true;
}

std::string Joined(const std::vector<std::string>& names)
{
    std::string text;
    for (const std::string& name : names) text += (text.empty() ? "" : ", ") + name;
    return text;
}

// The settings of an older profile among these: a new file without them would lose them.
std::vector<std::string> InOldProfile(const std::string& file, const std::vector<std::string>& names)
{
    if (names.empty() || file == "-" || !IsOrdinaryFile(file)) return {};
    std::vector<std::string> found;
    try {
        for (const ProfileEntry& entry : ParseProfile(ReadWholeFile(file, LargestProfile), file))
            if (std::find(names.begin(), names.end(), entry.setting->name) != names.end())
                found.push_back(entry.setting->name);
    } catch (const Failure&) { // no profile
    }
    return found;
}

void Save(Context& context, const ProfileOptions& options)
{
    if (options.file == "-") RefuseJson(context, "profile save -");
    if (context.options.dryRun) {
        context.output.Line("> " + FrameText(FrameSirf(VersionPoll())));
        for (const Setting& setting : Settings()) PrintPoll(context, setting);
        return;
    }
    WithSirf(context, options.through, [&](Session& session) {
        const Duration limit = Seconds(context.options.timeoutSeconds);
        std::string firmware = "unknown";
        try {
            firmware = ReadVersion(session, limit);
        } catch (const Failure& failure) {
            if (failure.kind != FailureKind::Refused && failure.kind != FailureKind::NoAnswer) throw;
        }
        std::string text = "# settings of a receiver, for \"toravanectl profile apply\"\n# date: " + Today() +
                           "\n# firmware: " + firmware + "\n# port: " + Printable(session.Port()) + "\n";
        Json& settings = context.output.object["settings"] = Json::object();
        std::optional<Reply> worst;
        bool any = false;
        std::vector<std::string> leftOut, unanswered;
        for (const Setting& setting : Settings()) {
            const std::string name = setting.name;
            const SettingAnswer answer = ReadSetting(session, setting, limit);
            if (answer.reply != Reply::Answered) {
                settings[name] = nullptr;
                text += "# " + name + ": " + MissingText(answer.reply) + '\n';
                leftOut.push_back(name + " (" + MissingText(answer.reply) + ")");
                if (answer.reply == Reply::Silent) unanswered.push_back(name);
                if (!worst) worst = answer.reply;
                continue;
            }
            settings[name] = SettingJson(setting, answer.values);
            const std::string line = SettingText(setting, answer.values);
            const bool canBeSent = CanBeSent(setting, answer.values);
            text += canBeSent ? line + '\n' : "# " + line + ": cannot be sent back\n";
            if (!canBeSent) leftOut.push_back(name + " (cannot be sent back)");
            any = true;
        }
        if (!any) Require(*worst, "profile save");
        const std::vector<std::string> lost = InOldProfile(options.file, unanswered);
        if (!lost.empty())
            Fail(FailureKind::NoAnswer, Joined(lost) + ": no answer in time; " + options.file +
                                            " has values for that, and stays as it was");
        if (options.file == "-")
            context.output.Raw(text);
        else
            WriteWholeFile(options.file, text);
        if (!leftOut.empty())
            context.output.Note(std::to_string(leftOut.size()) + " of " + std::to_string(Settings().size()) +
                                " settings not saved: " + Joined(leftOut));
    });
}

void Show(Context& context, const ProfileOptions& options)
{
    Json& settings = context.output.object["settings"] = Json::object();
    for (const ProfileEntry& entry : ReadProfile(options)) {
        std::string line = entry.setting->name;
        Json& keys = settings[entry.setting->name] = Json::object();
        for (const KeyValue& value : entry.values) {
            const char* const key = entry.setting->keys[value.key].name;
            line += ' ' + std::string(key) + '=' + ValueText(*entry.setting, value.key, value.value);
            keys[key] = ValueJson(*entry.setting, value.key, value.value);
        }
        context.output.Line(line);
    }
}

// The receiver's setting, and the same setting with the file's values.
void Diff(Context& context, const ProfileOptions& options)
{
    const std::vector<ProfileEntry> entries = ReadProfile(options);
    if (context.options.dryRun) {
        for (const ProfileEntry& entry : entries) PrintPoll(context, *entry.setting);
        return;
    }
    WithSirf(context, options.through, [&](Session& session) {
        Output& output = context.output;
        Json& differences = output.object["differences"] = Json::array();
        for (const ProfileEntry& entry : entries) {
            const Setting& setting = *entry.setting;
            const SettingAnswer answer =
                ReadSetting(session, setting, Seconds(context.options.timeoutSeconds));
            const bool answered = answer.reply == Reply::Answered;
            std::string before = setting.name, after = setting.name;
            for (const KeyValue& value : entry.values) {
                if (answered && answer.values[value.key] == value.value) continue;
                const std::string key = ' ' + std::string(setting.keys[value.key].name) + '=';
                if (answered) before += key + ValueText(setting, value.key, answer.values[value.key]);
                after += key + ValueText(setting, value.key, value.value);
                differences.push_back(
                    {{"setting", setting.name},
                     {"key", setting.keys[value.key].name},
                     {"receiver",
                      answered ? ValueJson(setting, value.key, answer.values[value.key]) : Json(nullptr)},
                     {"file", ValueJson(setting, value.key, value.value)}});
            }
            if (after == setting.name) continue;
            if (!answered) before = "# " + before + ": " + MissingText(answer.reply);
            output.Line(output.Coloured(Colour::Bad, "-" + before));
            output.Line(output.Coloured(Colour::Good, "+" + after));
        }
        if (!differences.empty())
            throw Failure{FailureKind::Differs, "the receiver differs from " + options.file, true};
    });
}

void Apply(Context& context, const ProfileOptions& options)
{
    const std::vector<ProfileEntry> entries = ReadProfile(options);
    Output& output = context.output;
    if (context.options.dryRun) {
        for (const ProfileEntry& entry : entries) Change(*entry.setting, nullptr, entry.values);
        for (const ProfileEntry& entry : entries) {
            PrintPoll(context, *entry.setting);
            const Frame command =
                CommandPayload(*entry.setting, Change(*entry.setting, nullptr, entry.values));
            output.Line("> " + FrameText(FrameSirf(command)));
            PrintPoll(context, *entry.setting);
        }
        return;
    }
    WithSirf(context, options.through, [&](Session& session) {
        Json applied = Json::array(), unchanged = Json::array(), failed = Json::array();
        const auto report = [&] {
            output.object["applied"] = applied;
            output.object["unchanged"] = unchanged;
            output.object["failed"] = failed;
        };
        report();
        std::optional<Failure> first;
        const auto note = [&](const Failure& failure) {
            if (first)
                output.Error(failure.message);
            else
                first = failure;
        };
        // Standard output that is closed half-way must not leave the receiver half-way.
        const auto print = [&](const auto& part) {
            try {
                part();
            } catch (const Failure& failure) {
                note(failure);
            }
        };
        for (const ProfileEntry& entry : entries) {
            const ChangeResult result = ChangeSetting(session, *entry.setting, entry.values, {},
                                                      Seconds(context.options.timeoutSeconds));
            (result.failure ? failed : result.sent ? applied : unchanged).push_back(entry.setting->name);
            report();
            print([&] { PrintChange(output, *entry.setting, result); });
            if (result.failure) note(*result.failure);
        }
        print([&] {
            output.Line(std::to_string(applied.size()) + " applied, " + std::to_string(unchanged.size()) +
                        " unchanged, " + std::to_string(failed.size()) + " failed");
        });
        if (first) throw Failure(*first);
    });
}

} // namespace

Action DefineProfile(Parser& parser)
{
    struct Part {
        const char *name, *summary;
        void (*run)(Context&, const ProfileOptions&);
        bool needsReceiver;
        Parser parser;
    };
    const auto options = std::make_shared<ProfileOptions>();
    const auto parts = std::make_shared<std::vector<Part>>(std::vector<Part>{
        {"save", "write all readable settings to a file (\"-\": standard output)", Save, true, {}},
        {"show", "check a profile without a receiver, and print its settings", Show, false, {}},
        {"diff", "print what differs: - the receiver, + the file", Diff, true, {}},
        {"apply", "set what differs, each setting read back", Apply, true, {}},
    });
    for (Part& part : *parts) {
        part.parser = parser.Command(part.name, part.summary);
        part.parser.Option("FILE", options->file, "the profile").Required();
        if (part.needsReceiver)
            options->through.AddTo(part.parser);
        else
            part.parser.NeedsNoPort();
    }
    return [options, parts](Context& context) {
        for (const Part& part : *parts)
            if (part.parser.Given()) part.run(context, *options);
    };
}

} // namespace console
