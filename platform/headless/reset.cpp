// SPDX-License-Identifier: MIT
// The whole system as freshly started.
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
