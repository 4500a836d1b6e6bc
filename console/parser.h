// SPDX-License-Identifier: MIT
// What commands take: options and arguments, added to the parser of the command line. The library that parses
// costs two seconds of compiling in each source that sees it; commands see this instead.
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

// An option or an argument just added.
class Parameter
{
public:
    explicit Parameter(CLI::Option* option) : option_(option) {}

    Parameter& Required();
    Parameter& TypeName(const std::string& name); // what stands for its value in the help
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

    // `names` as in "-o,--output"; without dashes an argument by its place. The values are written to the
    // places given while the command line is parsed.
    Parameter Option(const std::string& names, std::string& value, const std::string& description);
    Parameter Option(const std::string& names, std::vector<std::string>& values,
                     const std::string& description);
    Parameter Flag(const std::string& names, bool& given, const std::string& description);

    // A flag that may be given a value with "=", and has `otherwise` if it is not.
    Parameter Flag(const std::string& name, const std::string& otherwise, std::string& value,
                   const std::string& description);

    // A command of this command. If there is one, exactly one must be given.
    Parser Command(const std::string& name, const std::string& summary);

    // True for a command that was given.
    bool Given() const;

private:
    CLI::App* app_ = nullptr;
};

} // namespace console
