// SPDX-License-Identifier: MIT
#include "graph/chart.h"

#include "graph/graph_settings.h"
#include "graph/recorder.h"
#include "graph/surface.h"
#include "ui/dialog_support.h"
#include "ui/error_boxes.h"
#include "ui/screen_scale.h"

namespace
{

// A memory device context with its bitmap selected into it.
struct MemoryDc {
    HDC dc;
    HBITMAP bitmap;
    HGDIOBJ before; // is selected again before the context is deleted, so that the bitmap can be deleted, too
};
MemoryDc Graph, Background, Tick, Cell;

bool BitBlt1Failed = false, BitBlt2Failed = false;

void SelectBitmap(MemoryDc& memory, HDC screen, HBITMAP bitmap)
{
    memory.dc = CreateCompatibleDC(screen);
    memory.bitmap = bitmap;
    memory.before = memory.dc && bitmap ? SelectObject(memory.dc, bitmap) : nullptr;
}

// Pixels from one row to the next: an odd number of cache lines of 64 bytes. So the pixels of a column are
// spread over the whole cache; with a power of two they would remove each other from it.
int StrideOf(int width)
{
    constexpr int LinePixels = 16;
    return ((width + LinePixels - 1) / LinePixels | 1) * LinePixels;
}

// Makes a picture; the device context and the drawing procedures share its pixels.
void CreatePicture(MemoryDc& memory, Surface& surface, HDC screen, int width, int height)
{
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = StrideOf(width);
    info.bmiHeader.biHeight = -height; // rows from the top
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    void* pixels = nullptr;
    SelectBitmap(memory, screen, CreateDIBSection(screen, &info, DIB_RGB_COLORS, &pixels, nullptr, 0));
    surface = {memory.bitmap ? static_cast<uint32_t*>(pixels) : nullptr, width, height, StrideOf(width)};
}

void Delete(MemoryDc& memory, const wchar_t* caption)
{
    if (memory.before) SelectObject(memory.dc, memory.before);
    if (memory.dc) CheckGdiResult(DeleteDC(memory.dc), caption);
    if (memory.bitmap) DeleteObject(memory.bitmap);
    memory = {};
}

uint16_t ChartSize(int screenPixels)
{
    if (screenPixels < 0) return 0;
    return static_cast<uint16_t>(InPicture(screenPixels < INT16_MAX ? screenPixels : INT16_MAX));
}

// Copies `width` columns from `column` on to the column `to` of the picture on the screen.
BOOL CopyToScreen(HDC dc, int top, int to, int width, int height, int column)
{
    const int left = OnScreen(to), right = OnScreen(to + width);
    if (DotsPerInch() == PictureDotsPerInch)
        return BitBlt(dc, left, top, width, height, Graph.dc, column, 0, SRCCOPY);
    return StretchBlt(dc, left, top, right - left, OnScreen(height), Graph.dc, column, 0, width, height,
                      SRCCOPY);
}

} // namespace

void CreateChart(HWND window, int areaWidth, int areaHeight)
{
    const uint16_t width = ChartSize(areaWidth), height = ChartSize(areaHeight);
    if (width && height) {
        HDC screen = GetDC(window);
        CreatePicture(Graph, GraphBitmap, screen, width, height);
        CreatePicture(Background, BackgroundColumn, screen, width, height);
        CreatePicture(Tick, TickColumn, screen, width, height);
        SelectBitmap(Cell, screen, LoadBitmapW(ProgramInstance, L"6x8"));
        ReleaseDC(window, screen);
        CheckGdiResult(StretchBlt(Graph.dc, 0, 0, width, height, Graph.dc, 0, 0, 1, 1, WHITENESS),
                       L"StretchBlt4");
        FillColumn(BackgroundColumn, 0, ColorWhite); // until the first sample draws them
        FillColumn(TickColumn, 0, ColorWhite);
    }
    GraphWidth.store(width);
    GraphHeight.store(height);
    LoadGraphSettings();
}

void DeleteChart()
{
    GraphWidth.store(0);
    GraphHeight.store(0);
    GraphBitmap = BackgroundColumn = TickColumn = {};
    Delete(Graph, L"DeleteDC1");
    Delete(Background, L"DeleteDC2");
    Delete(Tick, L"DeleteDC3");
    Delete(Cell, L"DeleteDC4");
}

void PaintChart(HDC dc, int top)
{
    const int width = GraphWidth.load(), height = GraphHeight.load(), column = CurrentGraphColumn.load();
    if (!width || !height) return;
    CheckPaint(CopyToScreen(dc, top, 0, width - column, height, column), L"BitBlt1", BitBlt1Failed);
    if (column)
        CheckPaint(CopyToScreen(dc, top, width - column, column, height, 0), L"BitBlt2", BitBlt2Failed);
}
