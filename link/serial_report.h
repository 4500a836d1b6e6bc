// The diagnostics report: a text file that says what the serial driver tells about a port as it was found.
#pragma once

#include "platform/platform.h"

// Writes the report of the port that is selected in the open Communication dialog. User-interface thread.
void WriteSerialReport(const COMMPROP& properties, const DCB& dcb, const COMMTIMEOUTS& timeouts, DWORD errors,
                       const COMSTAT& status);
