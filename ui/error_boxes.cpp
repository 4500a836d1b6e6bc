// SPDX-License-Identifier: MIT
#include "ui/error_boxes.h"

#include "text/copy.h"
#include "text/format.h"
#include "ui/active_dialog.h"

std::atomic<DWORD> UserInterfaceThread{0};

namespace
{

// Captions of failing calls in the reader thread and in the paint.
constexpr const wchar_t* PostedCaptions[] = {
    L"WriteFile 2", L"WriteFile File", L"CloseHandle File", L"StretchBlt1", L"StretchBlt2", L"StretchBlt5",
    L"BitBlt1",     L"BitBlt2",        L"BitBlt3",          L"Polyline1",   L"Polyline2",   L"Polyline3",
    L"Ellipse1",    L"Ellipse2",       L"Ellipse3",         L"Rectangle",
};
constexpr uint32_t PostedCaptionCount = sizeof PostedCaptions / sizeof *PostedCaptions;

// Set when a caption is posted, cleared when the user has answered the box: a call that fails at every sample
// must not fill the screen with boxes.
std::atomic<uint8_t> CaptionIsPosted[PostedCaptionCount];

// Numbers of boxes that the reader thread has posted, and that the user-interface thread has dealt with
// (shown and closed, or dropped). Each has one writer.
std::atomic<uint32_t> PostedCount, DoneCount;

// Boxes that wait until the shown one is closed; user-interface thread.
struct WaitingBox {
    PostedBox kind;
    uint32_t value;
};
constexpr uint32_t MaxWaitingBoxes = 8;
WaitingBox Waiting[MaxWaitingBoxes];
uint32_t WaitingCount = 0;
bool PostedBoxIsUp = false;

void ShowError(DWORD error, const wchar_t* caption)
{
    wchar_t* systemText = nullptr;
    const DWORD length = FormatMessageW(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
        error, 0, reinterpret_cast<wchar_t*>(&systemText), 0, nullptr);
    if (length && systemText) {
        InfoBox(caption, systemText);
    } else {
        wchar_t number[32];
        Format(number, L"Error %u", static_cast<uint32_t>(error));
        InfoBox(caption, number);
    }
    if (systemText) LocalFree(systemText);
}

void ShowRefusal(uint8_t refused, uint8_t polled)
{
    wchar_t text[RefusalCapacity];
    WriteRefusal(refused, polled, text);
    InfoBox(L"NAcknowledgment", text);
}

bool Post(PostedBox kind, uint32_t value)
{
    HWND window = MainWindow.load();
    return window &&
           PostMessageW(window, MessagePostedBox, static_cast<WPARAM>(kind), static_cast<LPARAM>(value));
}

// A further box may be posted in its place.
void BeDone(const WaitingBox& box)
{
    if (box.kind == PostedBox::LastError) {
        const uint32_t caption = box.value >> 16;
        if (caption < PostedCaptionCount) CaptionIsPosted[caption].store(0);
    } else if (DoneCount.load() != PostedCount.load()) { // other programs' messages do not count
        DoneCount.store(DoneCount.load() + 1);
    }
}

// A dialog may have been opened while a box of the main window was shown. Closing the box then enables and
// activates the main window; but the dialog needs it disabled, and the keyboard for itself.
void ReturnToDialog()
{
    const HWND dialog = ActiveDialogWindow.load(), window = MainWindow.load();
    if (!dialog || !window) return;
    EnableWindow(window, FALSE);
    if (GetActiveWindow() == window) SetFocus(dialog);
}

void Show(const WaitingBox& box)
{
    const uint32_t high = box.value >> 16, low = box.value & 0xFFFF;
    switch (box.kind) {
    case PostedBox::LastError:
        if (high >= PostedCaptionCount) return;
        ShowError(low, PostedCaptions[high]);
        return;
    case PostedBox::CouldOnlyWrite: ShowShortWrite(high, low); return;
    case PostedBox::RefusedCommand:
        ShowRefusal(static_cast<uint8_t>(box.value >> 8), static_cast<uint8_t>(box.value));
        return;
    }
}

} // namespace

HWND BoxOwner()
{
    const HWND candidates[] = {GetActiveWindow(), ActiveDialogWindow.load(), MainWindow.load()};
    for (HWND window : candidates)
        if (window && IsWindowEnabled(window)) return window;
    return nullptr;
}

void InfoBox(const wchar_t* caption, const wchar_t* text)
{
    MessageBoxW(BoxOwner(), text, caption, MB_OK | MB_ICONINFORMATION);
}

void ShowLastError(const wchar_t* caption)
{
    if (GetCurrentThreadId() == UserInterfaceThread.load())
        ShowError(GetLastError(), caption);
    else
        PostLastError(caption);
}

void PostLastError(const wchar_t* caption)
{
    const DWORD error = GetLastError();
    for (uint32_t i = 0; i < PostedCaptionCount; ++i) {
        if (!TextEquals(caption, PostedCaptions[i])) continue;
        if (CaptionIsPosted[i].load()) return;
        CaptionIsPosted[i].store(1);
        Post(PostedBox::LastError, i << 16 | (error & 0xFFFF));
        return;
    }
}

void CheckGdiResult(int32_t result, const wchar_t* caption)
{
    if (!result) ShowLastError(caption);
}

void CheckPaint(int32_t result, const wchar_t* caption, bool& failed)
{
    if (!result && !failed) PostLastError(caption);
    failed = !result;
}

void ShowShortWrite(uint32_t written, uint32_t count)
{
    wchar_t text[64];
    Format(text, L"Could only write %u of %u bytes.", written, count);
    InfoBox(L"PortWriteBuffer", text);
}

void PostBox(PostedBox kind, uint32_t value)
{
    constexpr uint32_t Enough = MaxWaitingBoxes + 1; // one is being shown
    const uint32_t posted = PostedCount.load();
    if (posted - DoneCount.load() >= Enough) return;
    PostedCount.store(posted + 1); // first: the box may have been dealt with before the call returns
    if (!Post(kind, value)) PostedCount.store(posted);
}

void ShowPostedBox(WPARAM kind, LPARAM value)
{
    const WaitingBox arrived = {static_cast<PostedBox>(kind), static_cast<uint32_t>(value)};
    if (WaitingCount == MaxWaitingBoxes) {
        BeDone(arrived);
        return;
    }
    Waiting[WaitingCount++] = arrived;
    if (PostedBoxIsUp) return;
    PostedBoxIsUp = true;
    while (WaitingCount && IsWindow(MainWindow.load())) {
        const WaitingBox box = Waiting[0];
        for (uint32_t i = 1; i < WaitingCount; ++i) Waiting[i - 1] = Waiting[i];
        --WaitingCount;
        Show(box);
        BeDone(box);
        ReturnToDialog();
    }
    WaitingCount = 0;
    PostedBoxIsUp = false;
}

void ResetErrorBoxes()
{
    for (auto& posted : CaptionIsPosted) posted.store(0);
    PostedCount.store(0);
    DoneCount.store(0);
    WaitingCount = 0;
    PostedBoxIsUp = false;
}
