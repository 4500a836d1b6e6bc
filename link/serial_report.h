// SPDX-License-Identifier: MIT
// The diagnostics report: a text file that says what the serial driver tells about a port as it was found.
#pragma once

#include <cstdint>

#include "platform/platform.h"

// Room for a port's label with its terminator.
constexpr uint32_t PortLabelCapacity = 64;

// Writes the report of the port of that label, which names the file; none when it is empty, or when folder
// and label are too long together. User-interface thread.
void WriteSerialReport(const wchar_t* label, const COMMPROP& properties, const DCB& dcb,
                       const COMMTIMEOUTS& timeouts, DWORD errors, const COMSTAT& status);
