// The one top-level window: text page or chart, the menu that leads to the dialogs, the actions of the start.
// User-interface thread.
#pragma once

#include <cstdint>

#include "platform/platform.h"

// What the window shows; any key toggles.
enum class GraphModeValue : uint8_t { TextPage = 0, Chart = 1 };
extern GraphModeValue GraphMode;

// Registers the class and creates and shows the window; `show` as the system gave it to the program. False
// when another copy runs, which is brought to the front, or when the system refuses.
bool InitInstance(HINSTANCE instance, int show);
