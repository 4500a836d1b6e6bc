// SPDX-License-Identifier: MIT
// The image's imports: the slots that the linker kept, and the directory by which the system fills them.
#pragma once

#include "elf_file.h"

namespace device
{

struct Range {
    uint32_t place = 0, size = 0; // place from the image's base
};

struct ImportSection {
    Bytes bytes; // the slots as linked, then the directory
    Range directory, slots;
    uint32_t callCount = 0;
    std::vector<std::string> libraries;
};

// From `section`, which begins with one slot for each imported call, a zero after those of each library, and
// the symbols that import_stubs.h names. Refuses slots in another order.
ImportSection MakeImportSection(const ElfFile& elf, const ElfSection& section, uint32_t imageBase);

} // namespace device
