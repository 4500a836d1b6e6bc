// SPDX-License-Identifier: MIT
// The emulation library, for the two files that speak to it.
#pragma once

#include <unicorn/unicorn.h>

extern uc_engine* Processor;

// Stops when the library refuses.
void Check(uc_err error, const char* what);
