// SPDX-License-Identifier: MIT
// One procedure for each command, as struct Command wants it; each has a file of its own.
#pragma once

#include "console/command.h"

namespace console
{

Action DefinePorts(CLI::App& app);
Action DefineSettings(CLI::App& app);
Action DefineProbe(CLI::App& app);
Action DefineConvert(CLI::App& app);
Action DefineDate(CLI::App& app);
Action DefineDoctor(CLI::App& app);
Action DefineGet(CLI::App& app);
Action DefineLog(CLI::App& app);
Action DefineMonitor(CLI::App& app);
Action DefineProfile(CLI::App& app);
Action DefineRates(CLI::App& app);
Action DefineRelay(CLI::App& app);
Action DefineCompletion(CLI::App& app);
Action DefineRestart(CLI::App& app);
Action DefineSend(CLI::App& app);
Action DefineSet(CLI::App& app);
Action DefineSwitch(CLI::App& app);
Action DefineVersion(CLI::App& app);

} // namespace console
