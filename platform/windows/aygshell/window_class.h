// SPDX-License-Identifier: MIT
// The shell's own window classes.
#pragma once

#include "platform/windows/aygshell/contract.h"

extern HINSTANCE LibraryInstance;

// Registers a class, if that was not done yet.
void RegisterShellClass(const wchar_t* name, WNDPROC procedure);
