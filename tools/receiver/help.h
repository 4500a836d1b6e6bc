// SPDX-License-Identifier: MIT
// The texts that --help prints before and after the list of options.
#pragma once

namespace receiver
{

extern const char* const HelpBefore;
extern const char* const HelpAfter;

} // namespace receiver
