// SPDX-License-Identifier: MIT
#include "console/command_line.h"

#include <algorithm>
#include <functional>

#include "console/commands/commands.h"
#include "console/through_sirf.h"

namespace console
{

namespace
{

constexpr const char* RateVariable = "TORAVANE_RATE";

// The library's own help, with names as a command's synopsis has them, and the place of the common options.
class HelpFormatter : public CLI::Formatter
{
public:
    HelpFormatter()
    {
        label("SUBCOMMAND", "COMMAND");
        label("Positionals", "Arguments");
    }

private:
    std::string make_option_name(const CLI::Option* option, bool isPositional) const override
    {
        const std::string name = CLI::Formatter::make_option_name(option, isPositional);
        return name.substr(0, name.find('{')); // after it: the value of a flag without "="
    }
    std::string make_option_opts(const CLI::Option* option) const override
    {
        if (option->get_positional()) return Repeats(*option) ? "..." : "";
        if (option->get_items_expected_max() == 0 && !option->get_type_name().empty())
            return "[=" + option->get_type_name() + "]";
        return CLI::Formatter::make_option_opts(option);
    }
    std::string make_footer(const CLI::App* app) const override
    {
        return app->get_parent()
                   ? "Options of every command (--port, --rate, --json, ...): toravanectl --help\n"
                   : "";
    }
};

// "toravanectl profile save"
std::string FullName(const CLI::App& app)
{
    const CLI::App* const parent = app.get_parent();
    return (parent ? FullName(*parent) + ' ' : "") + app.get_name();
}

// The library's App::help describes the given command instead, if there is one.
std::string HelpOf(const CLI::App& app)
{
    return app.get_formatter()->make_help(&app, FullName(app), CLI::AppFormatMode::Normal);
}

// Names of the commands within a command, or within the program.
std::vector<std::string> CommandNames(const CLI::App& app)
{
    std::vector<std::string> names;
    for (const CLI::App* sub : app.get_subcommands({})) names.push_back(sub->get_name());
    return names;
}

} // namespace

bool Repeats(const CLI::Option& option)
{
    return option.get_items_expected_max() >= CLI::detail::expected_max_vector_size;
}

std::span<const Command> Commands()
{
    static constexpr Command All[] = {
        {"ports", "list the machine's serial ports", DefinePorts},
        {"settings", "list the settings with their keys, units and ranges", DefineSettings},
        {"probe", "find the receiver by listening, and print protocol and rate", DefineProbe},
        {"version", "print the firmware's version", DefineVersion},
        {"get", "read settings from the receiver", DefineGet},
        {"set", "change a setting, and see that it is changed", DefineSet},
        {"switch", "change protocol and rate, and go along", DefineSwitch},
        {"rates", "measure how often messages come, or set it", DefineRates},
        {"restart", "restart the receiver", DefineRestart},
        {"monitor", "show what the receiver reports: a page on a terminal, else a line for each fix",
         DefineMonitor},
        {"log", "record every byte received", DefineLog},
        {"convert", "make a track of logs: GPX, KML, CSV or JSON", DefineConvert},
        {"profile", "save, compare and restore all settings", DefineProfile},
        {"date", "print the receiver's date, corrected if it lies whole 1024 weeks back", DefineDate},
        {"relay", "pass the receiver's stream on to a pseudo-terminal or to readers on the network",
         DefineRelay},
        {"doctor", "find out what is wrong, and what to do", DefineDoctor},
        {"send", "send a message of your own", DefineSend},
        {"completion", "print the completion script of a shell", DefineCompletion},
    };
    return All;
}

CommandLine::CommandLine()
    : app_("Checks and changes the settings of GPS receivers with SiRF chipsets, from a terminal.",
           "toravanectl")
{
    app_.allow_windows_style_options(false);
    app_.fallthrough();
    app_.require_subcommand(1);
    app_.formatter(std::make_shared<HelpFormatter>());
    app_.set_help_flag("-h,--help", "print this help and end");
    app_.set_version_flag("-V,--version", "toravanectl " TORAVANE_VERSION, "print the version and end");
    Parser whole(&app_, &notes_);
    whole.Option("-p,--port", port_, "serial port; else the only one there is")
        .Environment("TORAVANE_PORT")
        .TypeName("PORT");
    whole.Option("-b,--rate", rate_, "line rate in bits/s, 1200 to 115200; else it is found")
        .Environment(RateVariable)
        .TypeName("RATE")
        .Suggest(RateTexts());
    whole.Option("-t,--timeout", timeout_, "how long an answer of the receiver is waited for (2)")
        .TypeName("SECONDS");
    whole.Flag("--json", flags_.json, "print one JSON object instead of text");
    whole.Flag("-n,--dry-run", flags_.dryRun, "open no port, print what would be sent");
    whole.Flag("-y,--yes", flags_.yes, "yes to what would be asked");
    whole.Flag("-v,--verbose", flags_.verbose, "each sentence and frame on standard error");
    whole.Flag("-q,--quiet", flags_.quiet, "no notes on standard error");
    for (const Command& command : Commands()) {
        CLI::App* const sub = app_.add_subcommand(command.name, command.summary)->group("Commands");
        Parser parser(sub, &notes_);
        actions_.emplace_back(sub, command.define(parser));
    }
    DefineHelp();
}

void CommandLine::DefineHelp()
{
    CLI::App* const help = app_.add_subcommand("help", "print the help of a command")->group("Commands");
    Parser parser(help, &notes_);
    parser.NeedsNoPort();
    Parameter topics =
        parser.Option("COMMAND", helpWords_, "the command; else the program").Suggest(CommandNames(app_));
    for (const CLI::App* sub : app_.get_subcommands({})) {
        const std::vector<std::string> inner = CommandNames(*sub);
        if (!inner.empty()) topics.SuggestAfter(sub->get_name(), inner);
    }
    actions_.emplace_back(help, [this](Context& context) {
        const CLI::App* topic = &app_;
        for (const std::string& word : helpWords_) {
            const auto found =
                topic->get_subcommands([&](const CLI::App* sub) { return sub->get_name() == word; });
            if (found.empty()) FailUnknown(*topic, word);
            topic = found[0];
        }
        context.output.noObject = true;
        context.output.Raw(HelpOf(*topic));
    });
}

const CLI::App& CommandLine::Given() const
{
    const CLI::App* app = &app_;
    for (auto inner = app->get_subcommands(); !inner.empty(); inner = app->get_subcommands()) app = inner[0];
    return *app;
}

void CommandLine::FailUnknown(const CLI::App& within, const std::string& word)
{
    const std::string program = FullName(within);
    const size_t blank = program.find(' ');
    const std::string before = blank == program.npos ? "" : program.substr(blank + 1) + ' ';
    const std::string wrong = word.empty() ? "give a command" : "no command \"" + before + word + '"';
    const bool hasCommands = !CommandNames(within).empty();
    Fail(FailureKind::Usage, wrong + (hasCommands ? "; \"" + program + " --help\" lists them" : ""));
}

void CommandLine::FailParsing(const CLI::ParseError& error) const
{
    const CLI::App& given = Given();
    if (error.get_name() == "RequiredError" && given.get_require_subcommand_min() > 0) {
        const std::vector<std::string> words = app_.remaining(true);
        const std::string word = words.empty() || words[0] == "--" ? "" : words[0];
        if (!word.starts_with('-')) FailUnknown(given, word);
        Fail(FailureKind::Usage, "no option \"" + word + "\" (--help explains)");
    }
    Fail(FailureKind::Usage, std::string(error.what()) + " (--help explains)");
}

Action CommandLine::Parse(std::vector<std::string> arguments, Options& options)
{
    // It may also stand before the command, although only some commands have it.
    const auto isThroughSirf = [](const std::string& argument) {
        return argument == ThroughSirfOption || argument.starts_with(std::string(ThroughSirfOption) + '=');
    };
    const auto end = std::find(arguments.begin(), arguments.end(), "--");
    // The library takes "--port=" for an option without a value, and the next argument for its value.
    for (auto argument = arguments.begin(); argument != end; ++argument)
        if (argument->starts_with("--") && argument->find('=') == argument->size() - 1)
            Fail(FailureKind::Usage, argument->substr(0, argument->size() - 1) + ": the value is empty");
    std::stable_partition(arguments.begin(), end, std::not_fn(isThroughSirf));
    std::reverse(arguments.begin(), arguments.end()); // the order that CLI11 needs
    // The output of a failure needs these, too.
    const auto noteForOutput = [&] {
        options.json = app_.get_option("--json")->count() > 0;
        const std::string name = FullName(Given());
        chosen = name.substr(std::min(name.size(), app_.get_name().size() + 1));
    };
    try {
        app_.parse(std::move(arguments));
    } catch (const CLI::ParseError& error) {
        noteForOutput();
        if (error.get_exit_code() == 0) throw;
        FailParsing(error);
    } catch (const Failure&) { // of a check
        noteForOutput();
        throw;
    }
    options = flags_;
    noteForOutput();
    if (!port_.empty()) options.port = port_;
    TakeRate(options);
    if (!timeout_.empty()) options.timeoutSeconds = ParseSeconds(timeout_, "--timeout");
    if (options.json && options.dryRun)
        Fail(FailureKind::Usage, "--dry-run has no JSON form: leave out --json");
    for (const auto& [sub, run] : actions_)
        if (sub->parsed()) return run;
    return {};
}

void CommandLine::TakeRate(Options& options) const
{
    if (rate_.empty()) return;
    const std::vector<CLI::Option*>& typed = app_.parse_order();
    if (std::find(typed.begin(), typed.end(), app_.get_option("--rate")) != typed.end())
        options.rate = ParseRate(rate_, "--rate");
    else if (!notes_.withoutPort.contains(&Given()))
        options.rate = ParseRate(rate_, RateVariable);
}

std::string CommandLine::Help() const
{
    return HelpOf(Given());
}

} // namespace console
