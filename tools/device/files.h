// SPDX-License-Identifier: MIT
// Reads and writes whole files. An error contains the path and the reason.
#pragma once

#include "little_endian.h"

namespace device
{

Bytes ReadWholeFile(const char* path);
void WriteWholeFile(const char* path, std::span<const uint8_t> bytes);

} // namespace device
