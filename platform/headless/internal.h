// SPDX-License-Identifier: MIT
// Shared by the files of the headless platform.
#pragma once

#include "platform/headless/headless.h"
#include "platform/memory/memory.h"

namespace headless
{

void SetNow(uint64_t time); // of the virtual clock; stops at the time limit

void ResetClock();
void ResetBoxes();
void ResetUser();
void ResetPorts();
void ResetFaults();

} // namespace headless
