// SPDX-License-Identifier: MIT
// Checks that the machine code runs on every processor that the image is meant for.
#pragma once

#include "elf_file.h"

namespace device
{

// Refuses Thumb code, and a BX instruction that an ARMv4 processor would come to: the linker puts an
// instruction before each that returns by itself when the caller is ARM code.
void CheckCode(const ElfFile& elf);

} // namespace device
