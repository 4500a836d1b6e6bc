// SPDX-License-Identifier: MIT
// Completion scripts and the manual page, made of the same description as --help: the options and commands
// that the command line defines.
#pragma once

#include <string>

namespace console
{

// For "bash", "zsh" or "fish".
std::string CompletionScript(const std::string& shell);

// The page in section 1, in the macros of man(7). `description` holds the sections that no option describes
// (exit status, environment and the like) as they are to stand at the end.
std::string ManualPage(const std::string& description);

} // namespace console
