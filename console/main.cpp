// SPDX-License-Identifier: MIT
// toravanectl: controls the receiver from a terminal.
#include <exception>

#include "console/command_line.h"
#include "console/system.h"

using namespace console;

namespace
{

int Run(std::vector<std::string> arguments)
{
    Context context;
    CommandLine line;
    try {
        const Action action = line.Parse(std::move(arguments), context.options);
        context.output.json = context.options.json;
        context.output.quiet = context.options.quiet;
        action(context);
        return context.output.End(line.chosen, nullptr);
    } catch (const CLI::ParseError& end) { // --help or --version
        context.output.Raw(end.get_name() == "CallForVersion" ? std::string(end.what()) + '\n' : line.Help());
        return 0;
    } catch (const Failure& failure) {
        context.output.json = context.options.json;
        return context.output.End(line.chosen, &failure);
    } catch (const std::exception& error) { // of a library: no memory, a file system
        const Failure failure = {FailureKind::Failed, error.what()};
        return context.output.End(line.chosen, &failure);
    }
}

} // namespace

int main(int count, char** arguments)
{
    PrepareStandardStreams();
    try {
        return Run(ProgramArguments(count, arguments));
    } catch (const Failure& failure) {
        Output().Error(failure.message);
        return Describe(failure.kind).exitStatus;
    }
}
