// One procedure for each command, as struct Command wants it; each has a file of its own.
#pragma once

#include "console/command.h"

namespace console
{

Action DefineProbe(CLI::App& app);

} // namespace console
