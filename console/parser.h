// SPDX-License-Identifier: MIT
// Options and arguments of commands, added to the parser of the command line. Each source file that includes
// the parsing library takes two more seconds to compile; commands include this header instead.
#pragma once

#include <string>
#include <vector>

namespace CLI
{
class App;
class Option;
} // namespace CLI

namespace console
{

// An option or an argument that has just been added.
class Parameter
{
public:
    explicit Parameter(CLI::Option* option) : option_(option) {}

    Parameter& Required();
    Parameter& TypeName(const std::string& name); // placeholder of its value in the help
    Parameter& OneOf(const std::vector<std::string>& choices);

private:
    CLI::Option* option_;
};

// The part of the command line that belongs to one command. Copies stand for the same part.
class Parser
{
public:
    Parser() = default; // for a part that is assigned later
    explicit Parser(CLI::App* app) : app_(app) {}

    // `names` as in "-o,--output"; a name without dashes is a positional argument. Parsing stores the values
    // in the given variables.
    Parameter Option(const std::string& names, std::string& value, const std::string& description);
    Parameter Option(const std::string& names, std::vector<std::string>& values,
                     const std::string& description);
    Parameter Flag(const std::string& names, bool& given, const std::string& description);

    // A flag that can have a value after "="; without it the value is `otherwise`.
    Parameter Flag(const std::string& name, const std::string& otherwise, std::string& value,
                   const std::string& description);

    // A subcommand. If there are any, exactly one must be given.
    Parser Command(const std::string& name, const std::string& summary);

    // True if this command was given.
    bool Given() const;

private:
    CLI::App* app_ = nullptr;
};

} // namespace console
