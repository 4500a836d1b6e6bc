// SPDX-License-Identifier: MIT
// Requests repaints of the main window after a decoded message.
#pragma once

#include <atomic>
#include <cstdint>

// Places of the text page's lines in the main window, in pixels from the top of its client area: line i
// begins at TextPageTop + i * TextLineHeight. User-interface thread writes.
extern std::atomic<int32_t> TextPageTop, TextLineHeight;

// Reader thread, after each message that shows something: requests a paint, without erasing, of the changed
// part of the window's view: the lines that have been replaced, or the chart if it has a new sample. While a
// dialog is open nothing is requested; the first message after it requests all changes.
void RepaintMainWindow();

// Reader thread, around the messages of a run of received bytes: the requests of all of them become one, at
// its end. A request and the paint that follows cost more than all decoding in between.
void CollectRepaints();
void RequestCollectedRepaint();

// Sets everything to its state at program start.
void ResetRepaint();
