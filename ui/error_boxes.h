// SPDX-License-Identifier: MIT
// Message boxes: what a failing platform call, a full queue or the receiver's refusal shows the user.
//
// Only the user-interface thread shows boxes. What the reader thread has to say it posts to the main window,
// and the user-interface thread shows it: a box on the reader thread would stop reception, and could wait for
// ever for a user-interface thread that waits for the reader.
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/platform.h"

// The thread that may show boxes; set once at start.
extern std::atomic<DWORD> UserInterfaceThread;

// Window that a box belongs to: the first of active window (none when another program is in front), open
// dialog and main window that is enabled, so that the box is modal and closing it enables nothing that must
// be disabled. Null when none is.
HWND BoxOwner();

// Box with the information icon.
void InfoBox(const wchar_t* caption, const wchar_t* text);

// Box with the system's text for the calling thread's last error ("Error %u" where it has none). On the
// reader thread the box is posted.
void ShowLastError(const wchar_t* caption);

// The same, posted from either thread: for where no box may open yet, as in a paint. A caption that is posted
// is not posted again before its box is closed. Only captions of the list in error_boxes.cpp can be posted.
void PostLastError(const wchar_t* caption);

// ShowLastError, only when `result` is 0.
void CheckGdiResult(int32_t result, const wchar_t* caption);

// PostLastError, only when `result` is 0 and was not so at the last paint, which `failed` remembers: closing
// the box causes the next one.
void CheckPaint(int32_t result, const wchar_t* caption, bool& failed);

// ---- Boxes of the reader thread -----------------------------------------------------------------------

// Message by which posted boxes reach the main window: the kind in wParam, the value in lParam.
constexpr UINT MessagePostedBox = WM_APP + 1;

enum class PostedBox : uint8_t {
    LastError,      // value: caption number * 2^16 + low 16 bits of the error code
    CouldOnlyWrite, // value: bytes written * 2^16 + bytes that there were
    RefusedCommand, // value: refused message id * 2^8 + id that was being polled
};

// Reader thread: asks the user-interface thread for a box. Posts nothing while one is up and eight wait: a
// receiver that refuses everything at the speed of a fast line would leave that thread no time.
void PostBox(PostedBox kind, uint32_t value);

// User-interface thread, on MessagePostedBox: shows the box, then those that arrived while it was up, in
// their order; at most eight wait, further ones are dropped.
void ShowPostedBox(WPARAM kind, LPARAM value);

// "Could only write %u of %u bytes." on the user-interface thread.
void ShowShortWrite(uint32_t written, uint32_t count);

// Everything as when the program starts.
void ResetErrorBoxes();

// The words for a refused command; `polled` is the command whose settings were being asked for. Provided by
// sirf/refusals.cpp.
constexpr uint32_t RefusalCapacity = 160;
void WriteRefusal(uint8_t refused, uint8_t polled, wchar_t (&text)[RefusalCapacity]);
