// SPDX-License-Identifier: MIT
// The program itself, linked in.
#include "platform/start.h"
#include "tests/device/scenario.h"

bool TakeProgramOption(const std::string&, const std::string&)
{
    return false;
}

int RunProgramUnderTest(const wchar_t* commandLine)
{
    return RunProgram(nullptr, commandLine, SW_SHOW);
}

void PrintFigures(const Scenario&) {}
