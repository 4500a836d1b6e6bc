// SPDX-License-Identifier: MIT
// The image's imports: the slots that the linker kept, and the directory that the system uses to fill them.
#pragma once

#include "elf_file.h"

namespace device
{

struct Range {
    uint32_t place = 0, size = 0; // relative to the image's base
};

struct ImportSection {
    Bytes bytes; // the slots as linked, then the directory
    Range directory, slots;
    uint32_t callCount = 0;
    std::vector<std::string> libraries;
};

// Made from `section` and the symbols described in import_stubs.h. The section begins with one slot for each
// imported call; a zero follows the slots of each library. Refuses slots in another order.
ImportSection MakeImportSection(const ElfFile& elf, const ElfSection& section, uint32_t imageBase);

} // namespace device
