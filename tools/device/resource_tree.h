// SPDX-License-Identifier: MIT
// The program's resources in the form of the image: a tree by type, name and language. Dialog templates are
// packed and have their own type.
#pragma once

#include "little_endian.h"

namespace device
{

// The resource section of an image, from a compiled resource file, for a section `place` bytes after the
// image's base. Refuses a file without resources, and a resource that occurs twice.
Bytes MakeResourceSection(std::span<const uint8_t> compiled, uint32_t place);

} // namespace device
