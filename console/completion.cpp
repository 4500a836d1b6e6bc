// SPDX-License-Identifier: MIT
#include "console/completion.h"

#include <algorithm>
#include <vector>

#include "console/command_line.h"

namespace console
{

namespace
{

enum class Values { None, Free, Files, Ports }; // of an option or an argument, beside the suggestions

struct OptionEntry {
    std::vector<std::string> names; // "-p", "--port"
    std::string value;              // "PORT"; empty for a flag
    bool canDoWithout = false;      // the value may be left out; it stands after "="
    Values values = Values::None;
    std::vector<std::string> suggestions;
    std::string description;
};

struct ArgumentEntry {
    std::string name; // "NAME"
    bool repeats = false, isRequired = false;
    Values values = Values::Free;
    ParserNotes::Suggestions suggestions;
    std::string description;
};

struct CommandEntry {
    std::string name; // "profile save"; empty for the program itself
    std::string description;
    std::vector<ArgumentEntry> arguments;
    std::vector<OptionEntry> options;
    std::vector<std::pair<std::string, std::string>> commands; // inner ones: name, description
};

Values ValuesOf(const std::string& placeholder)
{
    return placeholder == "FILE" || placeholder == "LINK" ? Values::Files : Values::Free;
}

CommandEntry Describe(const CLI::App& app, const ParserNotes& notes, const std::string& name)
{
    CommandEntry entry;
    entry.name = name;
    entry.description = app.get_description();
    for (const CLI::Option* option : app.get_options()) {
        const auto found = notes.suggestions.find(option);
        const auto suggestions =
            found == notes.suggestions.end() ? ParserNotes::Suggestions() : found->second;
        if (option->get_positional()) {
            const std::string shown = option->get_name(true);
            entry.arguments.push_back({shown, Repeats(*option), option->get_required(), ValuesOf(shown),
                                       suggestions, option->get_description()});
            continue;
        }
        if (app.get_parent() && option == app.get_help_ptr()) continue; // it is the program's own
        OptionEntry described;
        for (const std::string& letter : option->get_snames()) described.names.push_back("-" + letter);
        for (const std::string& word : option->get_lnames()) described.names.push_back("--" + word);
        described.value = option->get_type_name();
        described.canDoWithout = option->get_items_expected_max() == 0;
        if (!described.value.empty()) described.values = ValuesOf(described.value);
        if (described.names.back() == "--port") described.values = Values::Ports;
        described.suggestions = suggestions.words;
        described.description = option->get_description();
        entry.options.push_back(described);
    }
    for (const CLI::App* inner : app.get_subcommands({}))
        entry.commands.emplace_back(inner->get_name(), inner->get_description());
    return entry;
}

void Collect(const CLI::App& app, const ParserNotes& notes, const std::string& name,
             std::vector<CommandEntry>& entries)
{
    entries.push_back(Describe(app, notes, name));
    for (const CLI::App* inner : app.get_subcommands({}))
        Collect(*inner, notes, (name.empty() ? "" : name + " ") + inner->get_name(), entries);
}

// The program first, then its commands in the order of the help.
std::vector<CommandEntry> Description()
{
    const CommandLine line;
    std::vector<CommandEntry> entries;
    Collect(line.App(), line.Notes(), {}, entries);
    return entries;
}

std::string Join(const std::vector<std::string>& words, const char* between = " ")
{
    std::string text;
    for (const std::string& word : words) text += (text.empty() ? "" : between) + word;
    return text;
}

// Puts a text into the quotes of a shell.
std::string Quoted(const std::string& text)
{
    std::string quoted = "'";
    for (const char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

std::string QuotedWords(const std::vector<std::string>& words)
{
    std::vector<std::string> quoted;
    for (const std::string& word : words) quoted.push_back(Quoted(word));
    return Join(quoted);
}

// A place for a word that is neither an option nor an option's value, and the words that may stand there.
// `pattern` is for "COMMAND:NUMBER:FIRST": the command so far, the number of arguments after it, and the
// first of them.
struct Place {
    std::string pattern;
    std::vector<std::string> words;
    std::vector<std::string> descriptions; // as many as words, or none
    Values values = Values::Free;
};

std::vector<Place> Places(const std::vector<CommandEntry>& entries)
{
    std::vector<Place> places;
    for (const CommandEntry& entry : entries) {
        if (!entry.commands.empty()) {
            Place place = {entry.name + ":0:", {}, {}};
            for (const auto& [name, description] : entry.commands) {
                place.words.push_back(name);
                place.descriptions.push_back(description);
            }
            places.push_back(place);
        }
        for (size_t i = 0; i < entry.arguments.size(); ++i) {
            const ArgumentEntry& argument = entry.arguments[i];
            const auto& [words, after] = argument.suggestions;
            const std::string number = argument.repeats ? "*" : std::to_string(i);
            if (!words.empty() || argument.values == Values::Files)
                places.push_back({entry.name + ":" + (after.empty() ? number : std::to_string(i)) + ":*",
                                  words,
                                  {},
                                  argument.values});
            for (const auto& [first, wordsAfter] : after)
                places.push_back({entry.name + ":" + number + ":" + first, wordsAfter, {}});
        }
    }
    return places;
}

// Names of all options whose value is the next argument.
std::vector<std::string> NamesWithValue(const std::vector<CommandEntry>& entries)
{
    std::vector<std::string> names;
    for (const CommandEntry& entry : entries)
        for (const OptionEntry& option : entry.options)
            if (!option.value.empty() && !option.canDoWithout)
                names.insert(names.end(), option.names.begin(), option.names.end());
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

// For bash and zsh: the body of a loop over the words before the cursor. Afterwards $option is the option
// whose value is at the cursor, if it is one, and $ended is not empty after "--".
std::string LoopBody(const std::vector<CommandEntry>& entries)
{
    std::vector<std::string> commands;
    for (const CommandEntry& entry : entries)
        if (!entry.name.empty()) commands.push_back(Quoted(entry.name));
    return "        if [[ -n $option ]]; then option=; continue; fi\n"
           "        if [[ -z $ended ]]; then\n"
           "            case $word in\n"
           "            (--) ended=1; continue ;;\n"
           "            (" +
           Join(NamesWithValue(entries), "|") +
           ") option=$word; continue ;;\n"
           "            (-*) continue ;;\n"
           "            esac\n"
           "            case ${command:+$command }$word in\n"
           "            (" +
           Join(commands, "|") +
           ") command=${command:+$command }$word; continue ;;\n"
           "            esac\n"
           "        fi\n"
           "        ((number++)) || first=$word\n";
}

// A row of `case` in bash and zsh for a place.
std::string CasePattern(const Place& place)
{
    std::string pattern = "    (";
    for (const char c : place.pattern) pattern += c == ' ' ? std::string("\\ ") : std::string(1, c);
    return pattern + ") ";
}

// ---- bash ---------------------------------------------------------------------------------------------

std::string BashOffer(const std::vector<std::string>& words, Values values)
{
    std::string text;
    if (!words.empty()) text += "_toravanectl_offer " + QuotedWords(words) + " ";
    if (!words.empty() && values != Values::Free) text += "; ";
    if (values == Values::Files) text += "_toravanectl_files ";
    if (values == Values::Ports) text += "_toravanectl_ports ";
    return text;
}

// An option has the same kind of values in each command.
std::string BashValues(const OptionEntry& option)
{
    std::vector<std::string> names;
    for (const std::string& name : option.names) {
        if (!option.canDoWithout) names.push_back(name);
        if (name.starts_with("--")) names.push_back(name + "=");
    }
    return "    (" + Join(names, "|") + ") " + BashOffer(option.suggestions, option.values) + ";;\n";
}

std::string BashScript(const std::vector<CommandEntry>& entries)
{
    std::string text = "# bash completion for toravanectl\n\n"
                       "# The arguments that begin as what is typed, without the part that the shell keeps.\n"
                       "_toravanectl_offer()\n{\n"
                       "    local word\n"
                       "    for word; do\n"
                       "        word=$prefix$word\n"
                       "        [[ $word != \"$typed\"* ]] || COMPREPLY+=(\"${word#\"$kept\"}\")\n"
                       "    done\n"
                       "}\n"
                       "# Without answers, the shell itself completes file names, and quotes them.\n"
                       "_toravanectl_files()\n{\n"
                       "    compopt -o default\n"
                       "}\n"
                       "_toravanectl_ports()\n{\n"
                       "    local -a ports\n"
                       "    mapfile -t ports < <(toravanectl ports 2>/dev/null)\n"
                       "    _toravanectl_offer \"${ports[@]%% *}\"\n"
                       "    _toravanectl_files\n"
                       "}\n"
                       "_toravanectl()\n{\n"
                       "    local rest=$COMP_LINE word= gap= typed= kept= prefix= breaks=\n"
                       "    local command= first= option= ended=\n"
                       "    local -i number=0 i\n"
                       "    local -a line=()\n"
                       "    COMPREPLY=()\n"
                       "    # The shell splits a word at = and :, but without a gap it is one word.\n"
                       "    for ((i = 0; i <= COMP_CWORD; ++i)); do\n"
                       "        word=${COMP_WORDS[i]}\n"
                       "        gap=${rest%%\"$word\"*}\n"
                       "        rest=${rest#*\"$word\"}\n"
                       "        if ((i == 0)) || [[ -z $word || -n $gap ]]; then\n"
                       "            line+=(\"$word\")\n"
                       "        else\n"
                       "            line[${#line[@]}-1]+=$word\n"
                       "        fi\n"
                       "    done\n"
                       "    typed=${line[${#line[@]}-1]}\n"
                       "    breaks=${COMP_WORDBREAKS//[!=:]/}\n"
                       "    [[ -z $breaks ]] || kept=${typed%\"${typed##*[$breaks]}\"}\n"
                       "    for word in \"${line[@]:1:${#line[@]}-2}\"; do\n" +
                       LoopBody(entries) +
                       "    done\n"
                       "    if [[ -z $option$ended && $typed == --*=* ]]; then\n"
                       "        option=${typed%%=*}=\n"
                       "        prefix=$option\n"
                       "    fi\n"
                       "    case $option in\n";
    std::string choices; // of options, by command
    std::vector<std::string> described;
    for (const CommandEntry& entry : entries) {
        std::vector<std::string> names;
        for (const OptionEntry& option : entry.options) {
            names.insert(names.end(), option.names.begin(), option.names.end());
            if (option.value.empty() ||
                std::find(described.begin(), described.end(), option.names.back()) != described.end())
                continue;
            described.push_back(option.names.back());
            text += BashValues(option);
        }
        if (!entry.name.empty() && !names.empty())
            choices += "        (" + Quoted(entry.name) + ") _toravanectl_offer " + Join(names) + " ;;\n";
    }
    std::vector<std::string> common;
    for (const OptionEntry& option : entries[0].options)
        common.insert(common.end(), option.names.begin(), option.names.end());
    text += "    esac\n"
            "    [[ -z $option ]] || return 0\n"
            "    if [[ -z $ended && $typed == -* ]]; then\n"
            "        case $command in\n" +
            choices +
            "        esac\n"
            "        _toravanectl_offer " +
            Join(common) +
            "\n"
            "        return 0\n"
            "    fi\n"
            "    case $command:$number:$first in\n";
    for (const Place& place : Places(entries)) {
        text += CasePattern(place) + BashOffer(place.words, place.values) + ";;\n";
    }
    return text + "    esac\n"
                  "    [[ ${COMPREPLY[*]} != *= ]] || compopt -o nospace\n"
                  "}\n"
                  "complete -F _toravanectl toravanectl\n";
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
            std::string row = name;
            if (!option.value.empty()) row += option.canDoWithout ? "=-" : name.starts_with("--") ? "=" : "+";
            row += "[" + ZshText(option.description) + "]";
            if (!option.value.empty())
                row += (option.canDoWithout ? "::" : ":") + ZshText(option.value) + ":";
            if (!option.suggestions.empty()) row += "(" + Join(option.suggestions) + ")";
            if (option.values == Values::Files) row += "_files";
            if (option.values == Values::Ports) row += "_toravanectl_ports";
            text += " \\\n        " + Quoted(row);
        }
    }
    return text;
}

std::string ZshScript(const std::vector<CommandEntry>& entries)
{
    std::string text = "#compdef toravanectl\n"
                       "_toravanectl_ports()\n{\n"
                       "    local -a ports=(${${(f)\"$(toravanectl ports 2>/dev/null)\"}%% *})\n"
                       "    compadd -a ports || _files\n"
                       "}\n"
                       "_toravanectl_argument()\n{\n"
                       "    local -a beginnings=(${(M)offered:#*=})\n"
                       "    if [[ -n $files ]]; then _files; return; fi\n"
                       "    compadd -S '' -a beginnings\n"
                       "    offered=(${offered:#*=})\n"
                       "    _describe argument offered\n"
                       "}\n"
                       "_toravanectl()\n{\n"
                       "    local command= first= option= ended= word= files=\n"
                       "    local -i number=0\n"
                       "    local -a offered=() own=()\n"
                       "    for word in \"${(@)words[2,CURRENT-1]}\"; do\n" +
                       LoopBody(entries) +
                       "    done\n"
                       "    case $command:$number:$first in\n";
    for (const Place& place : Places(entries)) {
        std::vector<std::string> rows;
        for (size_t i = 0; i < place.words.size(); ++i)
            rows.push_back(ZshText(place.words[i]) +
                           (place.descriptions.empty() ? "" : ":" + ZshText(place.descriptions[i])));
        text += CasePattern(place) + "offered=(" + QuotedWords(rows) + ")" +
                (place.values == Values::Files ? "; files=1" : "") + " ;;\n";
    }
    text += "    esac\n"
            "    case $command in\n";
    for (const CommandEntry& entry : entries)
        if (!entry.name.empty())
            text += "    (" + Quoted(entry.name) + ") own=(" + ZshOptions(entry) + ") ;;\n";
    return text +
           "    esac\n"
           "    _arguments -S $own" +
           ZshOptions(entries[0]) +
           " \\\n        '*:argument:_toravanectl_argument'\n"
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
    if (!option.value.empty() && !option.canDoWithout) {
        text += option.values == Values::Free ? " -x" : " -r -F";
        if (!option.suggestions.empty()) text += " -a " + Quoted(Join(option.suggestions));
        if (option.values == Values::Ports)
            text += " -a \"(toravanectl ports 2>/dev/null | string replace ' ' \\t)\"";
    }
    return text + " -d " + Quoted(option.description) + "\n";
}

std::string FishScript(const std::vector<CommandEntry>& entries)
{
    std::vector<std::string> commands;
    for (const CommandEntry& entry : entries)
        if (!entry.name.empty()) commands.push_back(entry.name);
    std::string text = "# fish completion for toravanectl\n"
                       "# True if the place of the cursor matches: COMMAND:NUMBER:FIRST, the command, the "
                       "number of arguments\n"
                       "# after it, and the first of them.\n"
                       "function __toravanectl_at\n"
                       "    set -l command\n"
                       "    set -l arguments\n"
                       "    set -l option\n"
                       "    set -l ended\n"
                       "    for word in (commandline -opc)[2..-1]\n"
                       "        if test -n \"$option\"\n"
                       "            set option\n"
                       "            continue\n"
                       "        end\n"
                       "        if test -z \"$ended\"\n"
                       "            switch $word\n"
                       "                case --\n"
                       "                    set ended 1\n"
                       "                    continue\n"
                       "                case " +
                       Join(NamesWithValue(entries)) +
                       "\n"
                       "                    set option $word\n"
                       "                    continue\n"
                       "                case '-*'\n"
                       "                    continue\n"
                       "            end\n"
                       "            if contains -- (string join ' ' -- $command $word) " +
                       QuotedWords(commands) +
                       "\n"
                       "                set -a command $word\n"
                       "                continue\n"
                       "            end\n"
                       "        end\n"
                       "        set -a arguments $word\n"
                       "    end\n"
                       "    string match -q -- $argv[1] \"$command:\"(count $arguments)\":$arguments[1]\"\n"
                       "end\n"
                       "complete -c toravanectl -f\n";
    const auto at = [](const std::string& pattern) {
        return " -n " + Quoted("__toravanectl_at \"" + pattern + "\"");
    };
    for (const CommandEntry& entry : entries)
        for (const OptionEntry& option : entry.options)
            text += FishOption(option, entry.name.empty() ? "" : at(entry.name + ":*"));
    for (const Place& place : Places(entries)) {
        const std::string beginning = "complete -c toravanectl" + at(place.pattern);
        if (place.values == Values::Files) text += beginning + " -F\n";
        if (place.descriptions.empty() && !place.words.empty())
            text += beginning + " -a " + Quoted(Join(place.words)) + "\n";
        for (size_t i = 0; i < place.descriptions.size(); ++i)
            text += beginning + " -a " + place.words[i] + " -d " + Quoted(place.descriptions[i]) + "\n";
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
        for (const std::string& name : option.names) {
            const std::string value = "\\fI" + ManText(option.value) + "\\fR";
            names.push_back("\\fB" + ManText(name) + "\\fR" +
                            (option.value.empty()  ? ""
                             : option.canDoWithout ? "[=" + value + "]"
                                                   : " " + value));
        }
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
        std::string arguments = entry.commands.empty() ? "" : " \\fICOMMAND\\fR";
        for (const ArgumentEntry& argument : entry.arguments) {
            const std::string shown =
                "\\fI" + ManText(argument.name) + "\\fR" + (argument.repeats ? "..." : "");
            arguments += argument.isRequired ? " " + shown : " [" + shown + "]";
        }
        text += ".SS " + ManText(entry.name) + arguments + "\n" + ManText(entry.description) + ".\n";
        for (const ArgumentEntry& argument : entry.arguments)
            text += ".TP\n\\fI" + ManText(argument.name) + "\\fR\n" + ManText(argument.description) + "\n";
        text += ManOptions(entry);
    }
    return text + description;
}

} // namespace console
