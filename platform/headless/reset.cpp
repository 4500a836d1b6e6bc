// SPDX-License-Identifier: MIT
// Sets the whole system to the state of one that has just started.
#include "platform/headless/internal.h"

void HeadlessReset()
{
    headless::ResetClock();
    memory::ResetScheduler(); // refuses while other threads live
    memory::ResetSystem();
    headless::ResetBoxes();
    headless::ResetUser();
    headless::ResetPorts();
    headless::ResetFaults();
}
