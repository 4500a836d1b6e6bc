// SPDX-License-Identifier: MIT
#include "console/parser.h"

#include <CLI/CLI.hpp>

namespace console
{

Parameter& Parameter::Required()
{
    option_->required();
    return *this;
}

Parameter& Parameter::TypeName(const std::string& name)
{
    option_->type_name(name);
    return *this;
}

Parameter& Parameter::OneOf(const std::vector<std::string>& choices)
{
    option_->check(CLI::IsMember(choices));
    return *this;
}

Parameter Parser::Option(const std::string& names, std::string& value, const std::string& description)
{
    return Parameter(app_->add_option(names, value, description));
}

Parameter Parser::Option(const std::string& names, std::vector<std::string>& values,
                         const std::string& description)
{
    return Parameter(app_->add_option(names, values, description));
}

Parameter Parser::Flag(const std::string& names, bool& given, const std::string& description)
{
    return Parameter(app_->add_flag(names, given, description));
}

Parameter Parser::Flag(const std::string& name, const std::string& otherwise, std::string& value,
                       const std::string& description)
{
    return Parameter(app_->add_flag(name + "{" + otherwise + "}", value, description));
}

Parser Parser::Command(const std::string& name, const std::string& summary)
{
    app_->require_subcommand(1);
    return Parser(app_->add_subcommand(name, summary));
}

bool Parser::Given() const
{
    return app_->parsed();
}

} // namespace console
