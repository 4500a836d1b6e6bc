// SPDX-License-Identifier: MIT
// One procedure for each command, as struct Command needs it; each has a file of its own.
#pragma once

#include "console/command.h"

namespace console
{

Action DefinePorts(Parser& parser);
Action DefineSettings(Parser& parser);
Action DefineProbe(Parser& parser);
Action DefineConvert(Parser& parser);
Action DefineDate(Parser& parser);
Action DefineDoctor(Parser& parser);
Action DefineGet(Parser& parser);
Action DefineLog(Parser& parser);
Action DefineMonitor(Parser& parser);
Action DefineProfile(Parser& parser);
Action DefineRates(Parser& parser);
Action DefineRelay(Parser& parser);
Action DefineCompletion(Parser& parser);
Action DefineRestart(Parser& parser);
Action DefineSend(Parser& parser);
Action DefineSet(Parser& parser);
Action DefineSwitch(Parser& parser);
Action DefineVersion(Parser& parser);

} // namespace console
