// SPDX-License-Identifier: MIT
#include "console/parser.h"

#include <CLI/CLI.hpp>

namespace console
{

namespace
{

std::string RefuseEmpty(const std::string& value)
{
    return value.empty() ? "the value is empty" : "";
}

} // namespace

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
    CLI::IsMember isMember(choices);
    isMember.description(""); // the help would show all choices as a part of the type
    option_->check(isMember);
    return Suggest(choices);
}

Parameter& Parameter::Environment(const std::string& variable)
{
    option_->envname(variable);
    return *this;
}

Parameter& Parameter::Suggest(const std::vector<std::string>& words)
{
    notes_->suggestions[option_].words = words;
    return *this;
}

Parameter& Parameter::SuggestAfter(const std::string& first, const std::vector<std::string>& words)
{
    notes_->suggestions[option_].after[first] = words;
    return *this;
}

Parameter& Parameter::Check(std::function<void(const std::string&)> check)
{
    option_->check([check = std::move(check)](const std::string& value) {
        check(value);
        return std::string();
    });
    return *this;
}

Parameter Parser::Added(CLI::Option* option) const
{
    return Parameter(option, notes_);
}

Parameter Parser::Option(const std::string& names, std::string& value, const std::string& description)
{
    return Added(app_->add_option(names, value, description)->check(RefuseEmpty)->type_name(""));
}

Parameter Parser::Option(const std::string& names, std::vector<std::string>& values,
                         const std::string& description)
{
    return Added(app_->add_option(names, values, description)->check(RefuseEmpty)->type_name(""));
}

Parameter Parser::Flag(const std::string& names, bool& given, const std::string& description)
{
    return Added(app_->add_flag(names, given, description));
}

Parameter Parser::Flag(const std::string& name, const std::string& otherwise, std::string& value,
                       const std::string& description)
{
    return Added(app_->add_flag(name + "{" + otherwise + "}", value, description));
}

Parser Parser::Command(const std::string& name, const std::string& summary)
{
    app_->require_subcommand(1);
    return Parser(app_->add_subcommand(name, summary)->group("Commands"), notes_);
}

void Parser::NeedsNoPort()
{
    notes_->withoutPort.insert(app_);
}

bool Parser::Given() const
{
    return app_->parsed();
}

} // namespace console
