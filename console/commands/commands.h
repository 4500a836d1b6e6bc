// One procedure for each command, as struct Command wants it; each has a file of its own.
#pragma once

#include "console/command.h"

namespace console
{

Action DefineProbe(CLI::App& app);
Action DefineMonitor(CLI::App& app);
Action DefineLog(CLI::App& app);
Action DefineConvert(CLI::App& app);
Action DefineDate(CLI::App& app);
Action DefineRelay(CLI::App& app);
Action DefineCompletion(CLI::App& app);

} // namespace console
