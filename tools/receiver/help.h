// SPDX-License-Identifier: MIT
// What --help prints around the list of options.
#pragma once

namespace receiver
{

extern const char* const HelpBefore;
extern const char* const HelpAfter;

} // namespace receiver
