// SPDX-License-Identifier: MIT
// Routines of the program that the platform calls: the platform needs an address of host code for each.
#pragma once

#include "platform/platform.h"
#include "tests/device/memory.h"

// A procedure of the host that runs the program's routine. The same routine always gets the same one; 0 gets
// null.
WNDPROC WindowProcedureFor(GuestAddress routine); // also of dialogs
LPTHREAD_START_ROUTINE ThreadProcedureFor(GuestAddress routine);
