// SPDX-License-Identifier: MIT
// Makes the image that the device's system loads, from the linked program and its compiled resources.
#pragma once

#include "little_endian.h"

#include <string>

namespace device
{

struct Image {
    Bytes file;
    uint32_t importCount, pointerCount;
    std::vector<std::string> libraries; // from which it imports
};

// Refuses programs that would not load or run: see code_check.h, base_relocations.h, imports.h and
// resource_tree.h. Also refuses thread-local storage, and sections for which the image has no place.
Image MakeImage(std::span<const uint8_t> program, std::span<const uint8_t> compiledResources);

} // namespace device
