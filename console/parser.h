// SPDX-License-Identifier: MIT
// Options and arguments of commands, added to the parser of the command line. Each source file that includes
// the parsing library takes two more seconds to compile; commands include this header instead.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace CLI
{
class App;
class Option;
} // namespace CLI

namespace console
{

// Facts about options and commands for which the library has no place.
struct ParserNotes {
    // Values for the completion of a shell. `words` belong to the first argument only, if `after` has
    // entries.
    struct Suggestions {
        std::vector<std::string> words;
        std::map<std::string, std::vector<std::string>> after; // by the command's first argument
    };
    std::map<const CLI::Option*, Suggestions> suggestions;
    std::set<const CLI::App*> withoutPort; // commands that use no port
};

// An option or an argument that has just been added.
class Parameter
{
public:
    Parameter(CLI::Option* option, ParserNotes* notes) : option_(option), notes_(notes) {}

    Parameter& Required();
    Parameter& TypeName(const std::string& name); // placeholder of its value in the help
    Parameter& OneOf(const std::vector<std::string>& choices);

    // The variable that contains the value if the option is not given; an empty variable counts as not set.
    Parameter& Environment(const std::string& variable);

    // Values that the completion of a shell offers; other values are still accepted.
    Parameter& Suggest(const std::vector<std::string>& words);

    // Values that it offers if the command's first argument is `first`.
    Parameter& SuggestAfter(const std::string& first, const std::vector<std::string>& words);

    // Calls `check` with each value while the command line is parsed. It throws Failure for a wrong value.
    Parameter& Check(std::function<void(const std::string&)> check);

private:
    CLI::Option* option_;
    ParserNotes* notes_;
};

// The part of the command line that belongs to one command. Copies stand for the same part.
class Parser
{
public:
    Parser() = default; // for a part that is assigned later
    Parser(CLI::App* app, ParserNotes* notes) : app_(app), notes_(notes) {}

    // `names` as in "-o,--output"; a name without dashes is a positional argument. Parsing stores the values
    // in the given variables, and refuses an empty value. The help shows no type unless it gets a name.
    Parameter Option(const std::string& names, std::string& value, const std::string& description);
    Parameter Option(const std::string& names, std::vector<std::string>& values,
                     const std::string& description);
    Parameter Flag(const std::string& names, bool& given, const std::string& description);

    // A flag that can have a value after "="; without it the value is `otherwise`.
    Parameter Flag(const std::string& name, const std::string& otherwise, std::string& value,
                   const std::string& description);

    // A subcommand. If there are any, exactly one must be given.
    Parser Command(const std::string& name, const std::string& summary);

    // The command uses no port, so that wrong values in the environment do not matter to it.
    void NeedsNoPort();

    // True if this command was given.
    bool Given() const;

private:
    Parameter Added(CLI::Option* option) const;

    CLI::App* app_ = nullptr;
    ParserNotes* notes_ = nullptr;
};

} // namespace console
