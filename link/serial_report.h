// SPDX-License-Identifier: MIT
// The diagnostics report: a text file with the serial driver's data about a port as it was found.
#pragma once

#include <cstdint>

#include "platform/platform.h"

// Size of a port's label with its terminator.
constexpr uint32_t PortLabelCapacity = 64;

// Writes the report of a port; its label is the file's name. No report is written when the label is empty, or
// when folder and label together are too long. User-interface thread.
void WriteSerialReport(const wchar_t* label, const COMMPROP& properties, const DCB& dcb,
                       const COMMTIMEOUTS& timeouts, DWORD errors, const COMSTAT& status);
