// SPDX-License-Identifier: MIT
#include "tests/device/fault.h"

#include <cstdio>
#include <cstdlib>

#include "tests/device/machine.h"

void DeviceFault(const std::string& what)
{
    std::fflush(stdout);
    std::fprintf(stderr, "device: %s\n%s", what.c_str(), WhereTheProgramIs().c_str());
    std::fflush(stderr);
    std::_Exit(FaultExitCode);
}
