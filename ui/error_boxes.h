// SPDX-License-Identifier: MIT
// Message boxes for the user about failing platform calls, a full queue and refusals of the receiver.
//
// Only the user-interface thread shows boxes. The reader thread posts its boxes to the main window, and the
// user-interface thread shows them: a box in the reader thread would stop reception, and could wait for ever
// for a user-interface thread that waits for the reader.
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/platform.h"

// The thread that may show boxes; set once at start.
extern std::atomic<DWORD> UserInterfaceThread;

// The owner of a box: the first enabled one of active window (none when another program is in front), open
// dialog and main window; null if none is enabled. So the box is modal, and closing it enables no window that
// must stay disabled.
HWND BoxOwner();

// Box with the information icon.
void InfoBox(const wchar_t* caption, const wchar_t* text);

// Box with the system's text for the calling thread's last error ("Error %u" if the system has none). In the
// reader thread the box is posted.
void ShowLastError(const wchar_t* caption);

// The same, but always posted, from either thread: for places in which no box may open, such as a paint. A
// posted caption is not posted again before its box is closed. Only captions in the list of error_boxes.cpp
// can be posted.
void PostLastError(const wchar_t* caption);

// ShowLastError, only when `result` is 0.
void CheckGdiResult(int32_t result, const wchar_t* caption);

// PostLastError, only when `result` is 0 now and was not 0 at the last paint; `failed` remembers this.
// Closing the box causes the next paint, which must not cause the next box.
void CheckPaint(int32_t result, const wchar_t* caption, bool& failed);

// ---- Boxes of the reader thread -----------------------------------------------------------------------

// Message by which posted boxes reach the main window: the kind in wParam, the value in lParam.
constexpr UINT MessagePostedBox = WM_APP + 1;

enum class PostedBox : uint8_t {
    LastError,      // value: caption number * 2^16 + low 16 bits of the error code
    CouldOnlyWrite, // value: bytes written * 2^16 + bytes to write
    RefusedCommand, // value: refused message id * 2^8 + id that was being polled
};

// Reader thread: asks the user-interface thread for a box. Posts nothing while one box is shown and eight
// wait: otherwise a receiver that refuses every command at the speed of a fast line would leave that thread
// no time.
void PostBox(PostedBox kind, uint32_t value);

// User-interface thread, on MessagePostedBox: shows the box, then the boxes that have arrived meanwhile, in
// their order; at most eight wait, further ones are dropped.
void ShowPostedBox(WPARAM kind, LPARAM value);

// "Could only write %u of %u bytes." on the user-interface thread.
void ShowShortWrite(uint32_t written, uint32_t count);

// Sets everything to its state at program start.
void ResetErrorBoxes();

// The text for a refused command; `polled` is the command whose settings had been requested. Provided by
// sirf/refusals.cpp.
constexpr uint32_t RefusalCapacity = 160;
void WriteRefusal(uint8_t refused, uint8_t polled, wchar_t (&text)[RefusalCapacity]);
