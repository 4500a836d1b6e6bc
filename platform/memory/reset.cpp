// SPDX-License-Identifier: MIT
// Sets the system to the state of one that has just started.
#include "platform/memory/memory.h"

namespace memory
{

void ResetSystem()
{
    ResetWindows();
    ResetMenus();
    ResetDrawing();
    ResetHandles();
    ResetFiles();
    ResetRegistry();
    ResetLibraries();
    ResetErrors();
}

} // namespace memory
