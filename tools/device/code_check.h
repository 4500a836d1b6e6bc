// SPDX-License-Identifier: MIT
// Checks that the machine code runs on every processor for which the image is made.
#pragma once

#include "elf_file.h"

namespace device
{

// Refuses Thumb code, and a BX instruction that an ARMv4 processor would execute. Before each allowed BX the
// linker puts an instruction that returns if the caller is ARM code.
void CheckCode(const ElfFile& elf);

} // namespace device
