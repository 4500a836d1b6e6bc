// SPDX-License-Identifier: MIT
// Completion scripts and the manual page. They are made from the same description as --help: the options and
// commands that the command line defines.
#pragma once

#include <string>

namespace console
{

// The shell is "bash", "zsh" or "fish".
std::string CompletionScript(const std::string& shell);

// The page in section 1, in the macros of man(7). `description` contains the sections that no option
// describes, such as exit status and environment; they are added at the end without change.
std::string ManualPage(const std::string& description);

} // namespace console
