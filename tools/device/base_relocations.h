// SPDX-License-Identifier: MIT
// The pointers that the system corrects when it loads the image at another address.
#pragma once

#include "elf_file.h"

namespace device
{

// Addresses of all pointers, ascending. Refuses unknown kinds of relocation, and pointers that are not
// aligned: the system's loader could not correct them.
std::vector<uint32_t> FindPointers(const ElfFile& elf);

// The image's relocation section for pointers at these addresses.
Bytes MakeRelocationSection(const std::vector<uint32_t>& pointers, uint32_t imageBase);

} // namespace device
