// SPDX-License-Identifier: MIT
#include "console/completion.h"

#include <algorithm>
#include <vector>

#include "console/command_line.h"

namespace console
{

namespace
{

struct OptionEntry {
    std::vector<std::string> names; // "-p", "--port"
    std::string value;              // "PORT"; empty for a flag
    std::string description;
};

struct CommandEntry {
    std::string name; // "profile save"; empty for the program itself
    std::string description;
    std::vector<std::pair<std::string, std::string>> arguments; // name as shown, description
    std::vector<OptionEntry> options;
    std::vector<std::string> words; // inner commands, or the choices of an argument, which may follow
    bool takesFiles = false;
};

std::vector<std::string> ChoicesOf(const CLI::Option& option)
{
    // The library keeps a list of choices only in its description: "{bash,zsh,fish}".
    const std::string type = option.get_type_name();
    const size_t open = type.find('{'), close = type.find('}');
    std::vector<std::string> choices;
    if (open == type.npos || close == type.npos || close < open) return choices;
    std::string list = type.substr(open + 1, close - open - 1) + ",";
    for (size_t comma; (comma = list.find(',')) != list.npos; list.erase(0, comma + 1))
        choices.push_back(list.substr(0, comma));
    return choices;
}

CommandEntry Describe(const CLI::App& app, const std::string& name)
{
    CommandEntry entry;
    entry.name = name;
    entry.description = app.get_description();
    for (const CLI::Option* option : app.get_options()) {
        if (option->get_positional()) {
            const std::string shown = option->get_name(true);
            entry.arguments.emplace_back(shown, option->get_description());
            const std::vector<std::string> choices = ChoicesOf(*option);
            entry.words.insert(entry.words.end(), choices.begin(), choices.end());
            entry.takesFiles |= shown.starts_with("FILE");
            continue;
        }
        OptionEntry described;
        for (const std::string& letter : option->get_snames()) described.names.push_back("-" + letter);
        for (const std::string& word : option->get_lnames()) described.names.push_back("--" + word);
        if (option->get_items_expected_max() > 0) described.value = option->get_type_name();
        if (const size_t colon = described.value.find(':'); colon != described.value.npos)
            described.value.erase(colon); // the description contains the choices, after the type
        described.description = option->get_description();
        entry.options.push_back(described);
    }
    for (const CLI::App* inner : app.get_subcommands({}))
        if (!inner->get_name().empty()) entry.words.push_back(inner->get_name());
    return entry;
}

void Collect(const CLI::App& app, const std::string& name, std::vector<CommandEntry>& entries)
{
    entries.push_back(Describe(app, name));
    for (const CLI::App* inner : app.get_subcommands({}))
        Collect(*inner, (name.empty() ? "" : name + " ") + inner->get_name(), entries);
}

// The program first, then its commands in the order of the help.
std::vector<CommandEntry> Description()
{
    CommandLine line;
    std::vector<CommandEntry> entries;
    Collect(line.App(), {}, entries);
    return entries;
}

std::string Join(const std::vector<std::string>& words, const char* between = " ")
{
    std::string text;
    for (const std::string& word : words) text += (text.empty() ? "" : between) + word;
    return text;
}

std::vector<std::string> OptionNames(const CommandEntry& entry)
{
    std::vector<std::string> names;
    for (const OptionEntry& option : entry.options)
        names.insert(names.end(), option.names.begin(), option.names.end());
    return names;
}

// Puts a text into the quotes of a shell.
std::string Quoted(const std::string& text)
{
    std::string quoted = "'";
    for (const char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

bool IsPortOption(const OptionEntry& option)
{
    return std::find(option.names.begin(), option.names.end(), "--port") != option.names.end();
}

// For bash and zsh: sets $command to the command in the words, and begins a `case` for it. `loop` is the loop
// over the words before the cursor.
std::string FindCommand(const std::vector<CommandEntry>& entries, const std::string& loop)
{
    std::vector<std::string> names;
    for (const CommandEntry& entry : entries)
        if (!entry.name.empty()) names.push_back(Quoted(entry.name));
    return "    " + loop +
           "; do\n"
           "        candidate=${command:+$command }$word\n"
           "        case $candidate in\n"
           "        (" +
           Join(names, "|") +
           ") command=$candidate ;;\n"
           "        esac\n"
           "    done\n"
           "    case $command in\n";
}

// ---- bash ---------------------------------------------------------------------------------------------

std::string BashScript(const std::vector<CommandEntry>& entries)
{
    std::vector<std::string> withValue;
    for (const CommandEntry& entry : entries)
        for (const OptionEntry& option : entry.options)
            if (!option.value.empty() && !IsPortOption(option))
                withValue.insert(withValue.end(), option.names.begin(), option.names.end());
    std::sort(withValue.begin(), withValue.end());
    withValue.erase(std::unique(withValue.begin(), withValue.end()), withValue.end());

    std::string text =
        "# bash completion for toravanectl\n"
        "_toravanectl()\n{\n"
        "    local typed=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]}\n"
        "    local command= candidate word words= files=\n"
        "    COMPREPLY=()\n"
        "    case $before in\n"
        "    -p|--port)\n"
        "        COMPREPLY=($(compgen -W \"$(toravanectl ports 2>/dev/null | cut -d' ' -f1)\" -- "
        "\"$typed\") $(compgen -f -- \"$typed\"))\n"
        "        return ;;\n"
        "    -o|--output|--pty)\n"
        "        COMPREPLY=($(compgen -f -- \"$typed\"))\n"
        "        return ;;\n"
        "    " +
        Join(withValue, "|") +
        ")\n"
        "        return ;;\n"
        "    esac\n" +
        FindCommand(entries, "for word in \"${COMP_WORDS[@]:1:COMP_CWORD-1}\"");
    for (const CommandEntry& entry : entries) {
        std::vector<std::string> words = entry.words;
        for (const std::string& name : OptionNames(entry)) words.push_back(name);
        if (!entry.name.empty())
            for (const std::string& name : OptionNames(entries[0])) words.push_back(name);
        text += "    " + Quoted(entry.name) + ") words=" + Quoted(Join(words)) +
                (entry.takesFiles ? " files=1" : "") + " ;;\n";
    }
    return text + "    esac\n"
                  "    COMPREPLY=($(compgen -W \"$words\" -- \"$typed\"))\n"
                  "    [ -z \"$files\" ] || COMPREPLY+=($(compgen -f -- \"$typed\"))\n"
                  "}\n"
                  "complete -o filenames -F _toravanectl toravanectl\n";
}

// ---- zsh ----------------------------------------------------------------------------------------------

// A text for _arguments and _describe, in which colons and brackets separate the fields.
std::string ZshText(const std::string& text)
{
    std::string escaped;
    for (const char c : text) {
        if (c == ':' || c == '[' || c == ']' || c == '\\') escaped += '\\';
        escaped += c;
    }
    return escaped;
}

std::string ZshOptions(const CommandEntry& entry)
{
    std::string text;
    for (const OptionEntry& option : entry.options) {
        for (const std::string& name : option.names) {
            std::string row = name + "[" + ZshText(option.description) + "]";
            if (!option.value.empty()) row += ":" + ZshText(option.value) + ":";
            if (IsPortOption(option)) row += "_files";
            text += " \\\n        " + Quoted(row);
        }
    }
    return text;
}

std::string ZshScript(const std::vector<CommandEntry>& entries)
{
    std::string text = "#compdef toravanectl\n"
                       "_toravanectl()\n{\n"
                       "    local command= candidate word\n"
                       "    local -a words_here\n" +
                       FindCommand(entries, "for word in ${words[2,CURRENT-1]}");
    for (const CommandEntry& entry : entries) {
        std::vector<std::string> described;
        for (const std::string& word : entry.words) {
            std::string description;
            for (const CommandEntry& inner : entries)
                if (inner.name == (entry.name.empty() ? word : entry.name + " " + word))
                    description = ":" + ZshText(inner.description);
            described.push_back(Quoted(word + description));
        }
        text += "    (" + Quoted(entry.name) + ")\n        words_here=(" + Join(described) +
                ")\n        _arguments -S" + ZshOptions(entry) +
                (entry.name.empty() ? std::string() : ZshOptions(entries[0])) +
                " \\\n        '*:word:{_describe word words_here" + (entry.takesFiles ? "; _files" : "") +
                "}' ;;\n";
    }
    return text +
           "    esac\n"
           "}\n"
           "if [ \"$funcstack[1]\" = _toravanectl ]; then _toravanectl \"$@\"; else compdef _toravanectl "
           "toravanectl; fi\n";
}

// ---- fish ---------------------------------------------------------------------------------------------

std::string FishOption(const OptionEntry& option, const std::string& condition)
{
    std::string text = "complete -c toravanectl" + condition;
    for (const std::string& name : option.names)
        text += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
    if (!option.value.empty())
        text += IsPortOption(option) || option.value == "FILE" || option.value == "LINK" ? " -r -F" : " -x";
    return text + " -d " + Quoted(option.description) + "\n";
}

std::string FishScript(const std::vector<CommandEntry>& entries)
{
    std::string text = "# fish completion for toravanectl\n"
                       "complete -c toravanectl -f\n";
    for (const OptionEntry& option : entries[0].options) text += FishOption(option, "");
    for (const CommandEntry& entry : entries) {
        if (entry.name.empty()) continue;
        const size_t blank = entry.name.find(' ');
        const std::string outer = entry.name.substr(0, blank);
        if (blank == entry.name.npos) {
            text += "complete -c toravanectl -n __fish_use_subcommand -a " + outer + " -d " +
                    Quoted(entry.description) + "\n";
        } else {
            text += "complete -c toravanectl -n " + Quoted("__fish_seen_subcommand_from " + outer) + " -a " +
                    entry.name.substr(blank + 1) + " -d " + Quoted(entry.description) + "\n";
        }
        const std::string inner = blank == entry.name.npos
                                      ? ""
                                      : "; and __fish_seen_subcommand_from " + entry.name.substr(blank + 1);
        const std::string condition = " -n " + Quoted("__fish_seen_subcommand_from " + outer + inner);
        for (const OptionEntry& option : entry.options) text += FishOption(option, condition);
        if (entry.takesFiles) text += "complete -c toravanectl" + condition + " -F\n";
        std::vector<std::string> choices;
        for (const std::string& word : entry.words) {
            const bool isCommand = std::any_of(entries.begin(), entries.end(), [&](const CommandEntry& each) {
                return each.name == entry.name + " " + word;
            });
            if (!isCommand) choices.push_back(word);
        }
        if (!choices.empty())
            text += "complete -c toravanectl" + condition + " -a " + Quoted(Join(choices)) + "\n";
    }
    return text;
}

// ---- Manual page --------------------------------------------------------------------------------------

std::string ManText(const std::string& text)
{
    std::string escaped;
    for (const char c : text) {
        if (c == '\\')
            escaped += "\\e";
        else if (c == '-')
            escaped += "\\-";
        else
            escaped += c;
    }
    return escaped.starts_with('.') || escaped.starts_with('\'') ? "\\&" + escaped : escaped;
}

std::string ManOptions(const CommandEntry& entry)
{
    std::string text;
    for (const OptionEntry& option : entry.options) {
        std::vector<std::string> names;
        for (const std::string& name : option.names)
            names.push_back("\\fB" + ManText(name) + "\\fR" +
                            (option.value.empty() ? "" : " \\fI" + ManText(option.value) + "\\fR"));
        text += ".TP\n" + Join(names, ", ") + "\n" + ManText(option.description) + "\n";
    }
    return text;
}

} // namespace

std::string CompletionScript(const std::string& shell)
{
    const std::vector<CommandEntry> entries = Description();
    if (shell == "bash") return BashScript(entries);
    return shell == "zsh" ? ZshScript(entries) : FishScript(entries);
}

std::string ManualPage(const std::string& description)
{
    const std::vector<CommandEntry> entries = Description();
    std::string text =
        ".TH TORAVANECTL 1 " TORAVANE_RELEASE_DATE " \"toravanectl " TORAVANE_VERSION "\" \"User Commands\"\n"
        ".SH NAME\ntoravanectl \\- the settings of GPS receivers with SiRF chipsets, from a terminal\n"
        ".SH SYNOPSIS\n.B toravanectl\n[\\fIOPTION\\fR]... \\fICOMMAND\\fR [\\fIARGUMENT\\fR]...\n"
        ".SH DESCRIPTION\n" +
        ManText(entries[0].description) +
        "\n.PP\nOptions may stand before or after the command; \\fB\\-\\-\\fR ends them.\n"
        ".SH OPTIONS\n" +
        ManOptions(entries[0]) + ".SH COMMANDS\n";
    for (size_t i = 1; i < entries.size(); ++i) {
        const CommandEntry& entry = entries[i];
        std::vector<std::string> arguments;
        for (const auto& [name, meaning] : entry.arguments)
            arguments.push_back(" \\fI" + ManText(name) + "\\fR");
        text +=
            ".SS " + ManText(entry.name) + Join(arguments, "") + "\n" + ManText(entry.description) + ".\n";
        for (const auto& [name, meaning] : entry.arguments)
            if (!meaning.empty()) text += ".TP\n\\fI" + ManText(name) + "\\fR\n" + ManText(meaning) + "\n";
        // --help is described once, above.
        CommandEntry own = entry;
        std::erase_if(own.options, [](const OptionEntry& option) { return option.names.back() == "--help"; });
        text += ManOptions(own);
    }
    return text + description;
}

} // namespace console
