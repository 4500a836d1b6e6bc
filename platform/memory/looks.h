// SPDX-License-Identifier: MIT
// Records of the system in memory that tests use, too.
#pragma once

#include <string>
#include <vector>

#include "platform/memory/system.h"

namespace memory
{

// Dialog template; places in dialog units.
struct TemplateControl {
    int id;
    std::wstring className, text;
    DWORD style;
    int x, y, width, height;
};
struct Template {
    std::wstring caption;
    DWORD style;
    int x, y, width, height;
    std::vector<TemplateControl> controls;
};

// A line of text from a paint, and its upper left corner.
struct TextOut {
    int x, y;
    std::wstring text;
};

// Settings and reports of a serial port's driver.
struct LineState {
    COMMPROP properties;
    DCB dcb;
    COMMTIMEOUTS timeouts;
    DWORD errors;
    COMSTAT status;
};

} // namespace memory
