// SPDX-License-Identifier: MIT
// Names of the program's routines, for messages.
#pragma once

#include <string>

#include "tests/device/memory.h"

// From the linked program that the image was made of; `base` is where the image was loaded.
void LoadSymbols(const std::string& elfPath, GuestAddress base);
