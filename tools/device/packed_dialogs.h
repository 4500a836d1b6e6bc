// SPDX-License-Identifier: MIT
// Packs dialog templates for the image (platform/device/packed_template.h).
#pragma once

#include "little_endian.h"

namespace device
{

// Refuses a template that is too large for the program's buffer.
Bytes PackTemplate(std::span<const uint8_t> dialogTemplate);

} // namespace device
