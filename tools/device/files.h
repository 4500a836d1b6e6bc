// SPDX-License-Identifier: MIT
// Whole files in and out; both refuse with path and reason what cannot be read or written.
#pragma once

#include "little_endian.h"

namespace device
{

Bytes ReadWholeFile(const char* path);
void WriteWholeFile(const char* path, std::span<const uint8_t> bytes);

} // namespace device
