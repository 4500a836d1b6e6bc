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

Action DefineCompletion(Parser& parser)
{
    const auto shell = std::make_shared<std::string>();
    parser.NeedsNoPort();
    parser.Option("SHELL", *shell, "bash, zsh or fish").Required().OneOf({"bash", "zsh", "fish"});
    return [shell](Context& context) { PrintCompletion(context, *shell); };
}

} // namespace console
