// SPDX-License-Identifier: MIT
// What a decoded message makes the main window paint anew.
#pragma once

#include <atomic>
#include <cstdint>

// Where the text page's lines stand in the main window, pixels from the top of its client area: line i from
// TextPageTop + i * TextLineHeight on. User-interface thread writes.
extern std::atomic<int32_t> TextPageTop, TextLineHeight;

// Reader thread, after each message that shows something: asks for a paint, without erasing, of what has
// changed in the view that the window shows: the lines that have been replaced by others, or the chart, if it
// has a new sample. While a dialog is open nothing is asked for; the next message after it does.
void RepaintMainWindow();

// As when the program starts.
void ResetRepaint();
