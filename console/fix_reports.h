// SPDX-License-Identifier: MIT
// Messages that report if the receiver has a fix, of those that may be switched on.
#pragma once

#include <optional>

#include "console/reception.h"

namespace console
{

// No value for a message that does not report it.
std::optional<bool> ReportedFix(const Sentence& sentence);
std::optional<bool> ReportedFix(const Message& message);

} // namespace console
