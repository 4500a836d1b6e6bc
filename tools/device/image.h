// SPDX-License-Identifier: MIT
// The image that the device's system loads, from the linked program and its compiled resources.
#pragma once

#include "little_endian.h"

#include <string>

namespace device
{

struct Image {
    Bytes file;
    uint32_t importCount, pointerCount;
    std::vector<std::string> libraries; // that it imports from
};

// Refuses what would not load or run: see code_check.h, base_relocations.h, imports.h and resource_tree.h;
// besides thread-local storage, and sections that the image has no place for.
Image MakeImage(std::span<const uint8_t> program, std::span<const uint8_t> compiledResources);

} // namespace device
