// SPDX-License-Identifier: MIT
#include "console/command_line.h"

#include <algorithm>
#include <functional>

#include "console/commands/commands.h"
#include "console/through_sirf.h"

namespace console
{

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
    app_.set_help_flag("-h,--help", "print this help and end");
    app_.set_version_flag("-V,--version", "toravanectl " TORAVANE_VERSION, "print the version and end");
    app_.add_option("-p,--port", port_, "serial port; else the only one there is")
        ->envname("TORAVANE_PORT")
        ->type_name("PORT");
    app_.add_option("-b,--rate", rate_, "line rate in bits/s, 1200 to 115200; else it is found")
        ->envname("TORAVANE_RATE")
        ->type_name("RATE");
    app_.add_option("-t,--timeout", timeout_, "how long an answer of the receiver is waited for (2)")
        ->type_name("SECONDS");
    app_.add_flag("--json", flags_.json, "print one JSON object instead of text");
    app_.add_flag("-n,--dry-run", flags_.dryRun, "open no port, print what would be sent");
    app_.add_flag("-y,--yes", flags_.yes, "yes to what would be asked");
    app_.add_flag("-v,--verbose", flags_.verbose, "each sentence and frame on standard error");
    app_.add_flag("-q,--quiet", flags_.quiet, "no notes on standard error");
    for (const Command& command : Commands()) {
        CLI::App* const sub = app_.add_subcommand(command.name, command.summary);
        Parser parser(sub);
        actions_.emplace_back(sub, command.define(parser));
    }
    CLI::App* const help = app_.add_subcommand("help", "print the help of a command");
    help->add_option("COMMAND", helpWords_, "the command")->type_name("");
    actions_.emplace_back(help, [this](Context& context) {
        CLI::App* topic = &app_;
        std::string before; // the words that lead to it
        for (const std::string& word : helpWords_) {
            const auto found =
                topic->get_subcommands([&](const CLI::App* sub) { return sub->get_name() == word; });
            if (found.empty()) Fail(FailureKind::Usage, "no command \"" + word + "\"");
            before += (before.empty() ? "" : " ") + topic->get_name();
            topic = found[0];
        }
        context.output.noObject = true;
        context.output.Raw(topic->help(before));
    });
}

Action CommandLine::Parse(std::vector<std::string> arguments, Options& options)
{
    // It may also stand before the command, although only some commands have it.
    const auto isThroughSirf = [](const std::string& argument) {
        return argument == ThroughSirfOption || argument.starts_with(std::string(ThroughSirfOption) + '=');
    };
    const auto end = std::find(arguments.begin(), arguments.end(), "--");
    std::stable_partition(arguments.begin(), end, std::not_fn(isThroughSirf));
    std::reverse(arguments.begin(), arguments.end()); // the order that CLI11 needs
    try {
        app_.parse(std::move(arguments));
    } catch (const CLI::ParseError& error) {
        options.json = flags_.json;
        if (error.get_exit_code() == 0) throw;
        Fail(FailureKind::Usage, std::string(error.what()) + " (--help explains)");
    }
    options = flags_;
    Action action;
    for (const auto& [sub, run] : actions_) {
        if (!sub->parsed()) continue;
        action = run;
        chosen = sub->get_name();
        for (const CLI::App* inner : sub->get_subcommands()) chosen += ' ' + inner->get_name();
    }
    if (!port_.empty()) options.port = port_;
    if (!rate_.empty()) options.rate = ParseRate(rate_);
    if (!timeout_.empty()) options.timeoutSeconds = ParseSeconds(timeout_, "--timeout");
    if (options.json && options.dryRun)
        Fail(FailureKind::Usage, "--dry-run has no JSON form: leave out --json");
    return action;
}

std::string CommandLine::Help() const
{
    return app_.help();
}

} // namespace console
