// SPDX-License-Identifier: MIT
#include "graph/repaint.h"

#include <bit>
#include <utility>

#include "graph/graph_mode.h"
#include "graph/recorder.h"
#include "platform/platform.h"
#include "ui/active_dialog.h"
#include "ui/page_lines.h"

std::atomic<int32_t> TextPageTop{0}, TextLineHeight{0};

namespace
{

// Reader thread.
uint32_t PaintedSamples = 0;
bool IsCollecting = false, IsWanted = false;

// Rectangle from the first to the last of some lines, as wide as the window.
RECT PlaceOf(uint32_t lines)
{
    const int32_t top = TextPageTop.load(), height = TextLineHeight.load();
    return {0, top + height * std::countr_zero(lines), INT16_MAX,
            top + height * static_cast<int32_t>(std::bit_width(lines))};
}

void Request()
{
    if (ActiveDialogKind.load() != DialogKind::None) return;
    HWND window = MainWindow.load();
    if (!window) return;
    if (GraphMode.load() == GraphModeValue::Chart) {
        const uint32_t samples = GraphSampleCount.load(std::memory_order_relaxed);
        if (samples != PaintedSamples && InvalidateRect(window, nullptr, FALSE)) PaintedSamples = samples;
        return;
    }
    const uint32_t lines = ChangedLines();
    if (!lines) return;
    const RECT place = PlaceOf(lines);
    if (InvalidateRect(window, &place, FALSE)) ForgetChangedLines(); // otherwise the next message tries again
}

} // namespace

void RepaintMainWindow()
{
    if (IsCollecting)
        IsWanted = true;
    else
        Request();
}

void CollectRepaints()
{
    IsCollecting = true;
}

void RequestCollectedRepaint()
{
    IsCollecting = false;
    if (std::exchange(IsWanted, false)) Request();
}

void ResetRepaint()
{
    PaintedSamples = 0;
    IsCollecting = IsWanted = false;
    TextPageTop.store(0);
    TextLineHeight.store(0);
    ForgetChangedLines();
}
