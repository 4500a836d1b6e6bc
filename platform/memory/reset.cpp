// SPDX-License-Identifier: MIT
// The system as freshly started.
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
