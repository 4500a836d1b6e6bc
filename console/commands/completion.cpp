// SPDX-License-Identifier: MIT
#include "console/completion.h"
#include "console/commands/commands.h"

namespace console
{

namespace
{

void PrintCompletion(Context& context, const std::string& shell)
{
    RefuseJson(context, "completion");
    context.output.Raw(CompletionScript(shell));
}

} // namespace

Action DefineCompletion(CLI::App& app)
{
    const auto shell = std::make_shared<std::string>();
    app.add_option("SHELL", *shell, "bash, zsh or fish")
        ->required()
        ->check(CLI::IsMember({"bash", "zsh", "fish"}));
    return [shell](Context& context) { PrintCompletion(context, *shell); };
}

} // namespace console
